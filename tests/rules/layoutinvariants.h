// What every arrangement owes, whatever its numbers are. Shared by all layout tests.
#pragma once

#include "layoutgeometry.h"
#include "meetingmode.h"
#include "paging.h"

#include <QString>

#include <algorithm>
#include <climits>
#include <functional>
#include <vector>

/// What one arrangement may or has to do besides the common rules. Oddities that are meant are
/// named here by the test, and nothing else is allowed.
struct LayoutRules
{
    int tilesPerPage = 0;         ///< besides those on every page
    std::vector<int> onEveryPage; ///< shown in the same place whatever the page is
    int unseenFrom = INT_MAX;     ///< from this index on nobody has a tile, but who is above
    QSize overhang{0, 0};         ///< how far tiles may reach out to the right and below
    bool largeTilesFill = false;  ///< those on every page are not 16:9
};

inline QString describe(const zr::TilePlacement& p)
{
    return QStringLiteral("tile %1 at (%2, %3) %4x%5 grade %6")
        .arg(p.index)
        .arg(p.rect.x())
        .arg(p.rect.y())
        .arg(p.rect.width())
        .arg(p.rect.height())
        .arg(p.grade);
}

/// 16:9 up to the pixel that truncation loses, or so close that the fit leaves it alone.
inline bool isFitted16x9(const QSize& size)
{
    const int widthExcess = size.width() * 9 - size.height() * 16;
    return size.width() / 16 == size.height() / 9 || (widthExcess > -9 && widthExcess < 16);
}

inline bool contains(const std::vector<int>& all, int index)
{
    return std::find(all.begin(), all.end(), index) != all.end();
}

/// @return what is wrong with the tiles of one page; empty when nothing is.
inline QString pageFault(const std::vector<zr::TilePlacement>& page, const zr::LayoutInput& input,
                         const LayoutRules& rules)
{
    const QRect allowed(QPoint(0, 0), input.area + rules.overhang);
    for (auto tile = page.begin(); tile != page.end(); ++tile) {
        if (tile->index < 0 || tile->index >= input.count)
            return describe(*tile) + QStringLiteral(" is not in the list");
        if (tile->grade < zr::kGradeSmall || tile->grade > zr::kGradeLarge)
            return describe(*tile) + QStringLiteral(" has no such grade");
        if (std::any_of(page.begin(), tile,
                        [tile](const auto& before) { return before.index == tile->index; }))
            return describe(*tile) + QStringLiteral(" is listed twice");
        if (tile->rect.isEmpty())
            continue;
        if (!allowed.contains(tile->rect))
            return describe(*tile) + QStringLiteral(" leaves the dialog");
        const bool fills = rules.largeTilesFill && contains(rules.onEveryPage, tile->index);
        if (!fills && !isFitted16x9(tile->rect.size()))
            return describe(*tile) + QStringLiteral(" is not 16:9");
        const auto other = std::find_if(page.begin(), tile, [tile](const auto& before) {
            return before.rect.intersects(tile->rect);
        });
        if (other != tile)
            return describe(*tile) + QStringLiteral(" overlaps ") + describe(*other);
    }
    return {};
}

using Arrangement = std::function<std::vector<zr::TilePlacement>(const zr::LayoutInput&)>;

/// Checks all pages of a list, the ones before and after it included, and that each participant
/// has a tile on exactly one of them, or where the rules say so on every one or none.
/// @return what is wrong; empty when nothing is.
inline QString listFault(const Arrangement& arrange, zr::LayoutInput input,
                         const LayoutRules& rules)
{
    const QString where = QStringLiteral("%1x%2, %3 participants, speakers %4 and %5: ")
                              .arg(input.area.width())
                              .arg(input.area.height())
                              .arg(input.count)
                              .arg(input.speaker)
                              .arg(input.secondSpeaker);
    const int paged = input.count - static_cast<int>(rules.onEveryPage.size());
    const int pages = zr::pageCount(paged, rules.tilesPerPage);
    std::vector<int> shown(static_cast<std::size_t>(std::max(input.count, 0)), 0);
    for (input.page = -1; input.page <= pages; ++input.page) {
        const auto page = arrange(input);
        const QString fault = pageFault(page, input, rules);
        if (!fault.isEmpty())
            return where + QStringLiteral("page %1: ").arg(input.page) + fault;
        for (const auto& tile : page) {
            if (tile.rect.isEmpty())
                continue;
            const bool outside = input.page < 0 || input.page >= pages;
            if (outside && !contains(rules.onEveryPage, tile.index))
                return where + QStringLiteral("page %1 has ").arg(input.page) + describe(tile);
            ++shown[static_cast<std::size_t>(tile.index)];
        }
    }
    // A dialog that is hardly visible need not have room for everybody.
    const bool roomy = input.area.width() >= zr::kMinLayoutWidthPx && input.area.height() >= 50;
    for (int index = 0; index < input.count; ++index) {
        const int times = shown[static_cast<std::size_t>(index)];
        const bool everywhere = contains(rules.onEveryPage, index);
        const int most = everywhere ? pages + 2 : index < rules.unseenFrom ? 1 : 0;
        if (times > most || (roomy && times < most))
            return where + QStringLiteral("participant %1 is on %2 pages").arg(index).arg(times);
    }
    return {};
}
