#include "paging.h"

#include "layoutgeometry.h"
#include "meetingmode.h"

#include <algorithm>
#include <limits>

namespace zr {

int largeTiles(int mode)
{
    if (mode == eLayoutSpeaker4)
        return 2;
    return isStripMode(mode) ? 1 : 0;
}

int tilesPerPage(int mode, bool nineCut)
{
    switch (mode) {
    case eLayoutEqualCut:
        return nineCut ? kNineCutTiles : kEqualCutTiles;
    case eLayout6Cut:
        return kEqualCutTiles;
    case eLayoutSpeakerRight:
    case eLayoutSpeakerBottom:
    case eLayoutSpeakerTop:
    case eLayoutSpeaker4:
        return kStripTiles;
    case eLayoutGrid4:
        return 4;
    case eLayoutGrid9:
        return 9;
    case eLayoutGrid16:
        return 16;
    default:
        return 0;
    }
}

int pageCount(int count, int tilesPerPage)
{
    if (count <= 0 || tilesPerPage <= 0)
        return 0;
    return (count - 1) / tilesPerPage + 1;
}

int clampPage(int page, int count, int tilesPerPage)
{
    return std::clamp(page, 0, std::max(pageCount(count, tilesPerPage) - 1, 0));
}

int pageAfterRemoval(int mode, int page, int remaining)
{
    const int large = largeTiles(mode);
    if (large == 0)
        return page;
    const bool emptied =
        static_cast<qint64>(page) * kStripTiles == static_cast<qint64>(remaining) - large;
    return emptied ? std::max(page - 1, 0) : page;
}

int clampPageAroundSpeaker(int page, int count, int speaker)
{
    const bool listed = speaker >= 0 && speaker < count;
    return clampPage(page, listed ? count - 1 : count, kStripTiles);
}

int nextPage(int page, int pages, bool wrap)
{
    if (pages <= 0)
        return page;
    const int last = pages - 1;
    if (page < last)
        return std::max(page, -1) + 1;
    return wrap ? 0 : last;
}

int previousPage(int page, int pages)
{
    return pages <= 0 ? page : std::clamp(page, 1, pages) - 1;
}

int pollPeriodMs(int periodS)
{
    constexpr int kMaxPeriodS = std::numeric_limits<int>::max() / 1000;
    return std::clamp(periodS, 1, kMaxPeriodS) * 1000;
}

int pollPage(int ticks, int pages)
{
    return pages > 0 ? std::max(ticks, 0) % pages : 0;
}

PageBar pageBar(int page, int pages, int trackPx)
{
    const int track = std::max(trackPx, 0);
    const int height = std::min(std::max(track / std::max(pages, 1), kMinPageBarPx), track);
    const int last = std::max(pages - 1, 1);
    const qint64 top = static_cast<qint64>(track - height) * std::clamp(page, 0, last) / last;
    return {static_cast<int>(top), height};
}

bool PageTurnGate::accept(qint64 nowMs)
{
    if (m_bTurned && nowMs - m_lastMs < kPageTurnMs)
        return false;
    m_bTurned = true;
    m_lastMs = nowMs;
    return true;
}

} // namespace zr
