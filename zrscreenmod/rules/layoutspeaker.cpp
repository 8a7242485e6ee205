// The arrangements with speakers: beside a strip of the others, and with the speaker tool.
#include "layoutparts.h"

#include <utility>

namespace zr {

namespace {

/// Between the tiles of a strip, and between a speaker and what is beside it.
constexpr int kStripGapPx = 2;

/// A dialog with a side of at most this many pixels is not shown yet.
constexpr int kMinToolDialogPx = 100;
/// What the speaker tool's area keeps free of the dialog's width and height.
constexpr int kToolFramePx = 4;

/// The index, or -1 for one outside the list.
int listed(int index, int count)
{
    return index >= 0 && index < count ? index : -1;
}

/// The second of two speakers: the one that was asked for, else the first other participant.
int otherSpeaker(const LayoutInput& input, int speaker)
{
    const int wanted = listed(input.secondSpeaker, input.count);
    if (wanted >= 0 && wanted != speaker)
        return wanted;
    return listed(speaker == 0 ? 1 : 0, input.count);
}

/// The display list without the one or two speakers.
class Strip
{
public:
    /// @param a, b indices in the list, or -1
    Strip(int count, int a, int b)
        : m_lower(a)
        , m_upper(b)
        , m_size(count - (a >= 0 ? 1 : 0) - (b >= 0 ? 1 : 0))
    {
        if (m_upper < m_lower)
            std::swap(m_lower, m_upper);
    }

    [[nodiscard]] int size() const { return m_size; }

    /// Tiles that the strip is centred by: those of a full page when there is more than one.
    [[nodiscard]] int centredTiles() const { return std::min(m_size, kStripTiles); }

    /// @return the index in the display list
    [[nodiscard]] int at(int place) const
    {
        if (m_lower >= 0 && place >= m_lower)
            ++place;
        if (m_upper >= 0 && place >= m_upper)
            ++place;
        return place;
    }

    /// Appends the tiles of a page, from `first` on `step` after `step`.
    void place(int page, const QRect& first, QPoint step,
               std::vector<TilePlacement>* placements) const
    {
        const PageRange range = pageRange(page, m_size, kStripTiles);
        for (int i = range.first; i < range.last; ++i)
            placements->push_back({at(i), first.translated(step * (i - range.first)), kGradeSmall});
    }

private:
    int m_lower;
    int m_upper;
    int m_size;
};

/// Where a centred row of tiles begins. Uses the tiles of a full page, so that the last page's do
/// not jump.
int rowStart(int lengthPx, int tiles, int tilePx)
{
    return (lengthPx - (tiles * (tilePx + kStripGapPx) - kStripGapPx)) / 2;
}

/// A rectangle by its edges, of which the right and the lower one are inclusive.
QRect byEdges(int left, int top, int right, int bottom)
{
    return {QPoint(left, top), QPoint(right, bottom)};
}

/// A speaker's rectangle and the strip beside it.
struct SpeakerRects
{
    QRect speaker;
    QRect firstOfStrip;
    QPoint stripStep;
};

// Intended in the three functions below: the speaker's right and lower edges are set as if they
// were exclusive and are inclusive, which makes it a pixel larger; it takes all the height (on the
// right) or width (below, on top) that the strip leaves, and the tile fits the picture.

SpeakerRects stripOnTheRight(QSize area, int tiles)
{
    const QSize tile = fitSize16x9({area.width() / 6 - 2, (area.height() - 10) / 6});
    const QSize speaker = fitSize16x9({area.width() - tile.width(), area.height()});
    const QRect rect = byEdges(0, 0, speaker.width(), area.height());
    const QPoint corner(rect.right() + kStripGapPx, rowStart(area.height(), tiles, tile.height()));
    return {rect, {corner, tile}, {0, tile.height() + kStripGapPx}};
}

QSize horizontalStripTile(QSize area)
{
    return fitSize16x9({area.width() / 6 - 2, area.height() / 6 - 2});
}

SpeakerRects stripBelow(QSize area, int tiles)
{
    const QSize tile = horizontalStripTile(area);
    const int aboveStrip = 5 * area.height() / 6;
    const QSize speaker = fitSize16x9({area.width(), aboveStrip - 1});
    const QPoint corner(rowStart(area.width(), tiles, tile.width()), aboveStrip + 1);
    return {byEdges(0, 0, area.width(), speaker.height()),
            {corner, tile},
            {tile.width() + kStripGapPx, 0}};
}

SpeakerRects stripOnTop(QSize area, int tiles)
{
    const QSize tile = horizontalStripTile(area);
    const QPoint corner(rowStart(area.width(), tiles, tile.width()), 1);
    return {byEdges(0, tile.height() + kStripGapPx, area.width(), area.height()),
            {corner, tile},
            {tile.width() + kStripGapPx, 0}};
}

} // namespace

std::vector<TilePlacement> speakerPlacements(const LayoutInput& input)
{
    const int speaker = listed(input.speaker, input.count);
    if (speaker < 0 && !input.polling)
        return {};
    if (input.count < 2 && !input.polling)
        return {aloneCentred(input.area, speaker)};

    const QSize area = bounded(input.area);
    const Strip strip(std::max(input.count, 0), speaker, -1);
    SpeakerRects rects;
    switch (input.mode) {
    case eLayoutSpeakerRight:
        rects = stripOnTheRight(area, strip.centredTiles());
        break;
    case eLayoutSpeakerBottom:
        rects = stripBelow(area, strip.centredTiles());
        break;
    case eLayoutSpeakerTop:
        rects = stripOnTop(area, strip.centredTiles());
        break;
    default:
        return {};
    }

    std::vector<TilePlacement> placements;
    if (speaker >= 0)
        placements.push_back({speaker, rects.speaker, kGradeLarge});
    strip.place(input.page, rects.firstOfStrip, rects.stripStep, &placements);
    return placements;
}

std::vector<TilePlacement> speaker4Placements(const LayoutInput& input)
{
    const int speaker = listed(input.speaker, input.count);
    if (speaker < 0 && !input.polling)
        return {};
    if (input.count < 2 && !input.polling)
        return {aloneCentred(input.area, speaker)};

    const int second = speaker >= 0 ? otherSpeaker(input, speaker) : -1;
    const Strip strip(std::max(input.count, 0), speaker, second);
    const QSize area = bounded(input.area);
    // Two speakers without a strip have the whole height.
    const int aboveStrip = strip.size() > 0 ? 5 * area.height() / 6 : area.height();

    std::vector<TilePlacement> placements;
    const QSize large = fitSize16x9({area.width() / 2 - 1, 4 * area.height() / 6});
    const QRect first(QPoint((area.width() - 2 * large.width() - kStripGapPx) / 2,
                             (aboveStrip - large.height()) / 2),
                      large);
    if (speaker >= 0)
        placements.push_back({speaker, first, kGradeLarge});
    // Intended: the right edge is inclusive, so that one pixel is left between the two.
    if (second >= 0)
        placements.push_back(
            {second, QRect(QPoint(first.right() + kStripGapPx, first.top()), large), kGradeLarge});

    const QSize small = fitSize16x9({(area.width() - 10) / 6, area.height() / 6});
    const QPoint corner(rowStart(area.width(), strip.centredTiles(), small.width()), aboveStrip);
    strip.place(input.page, {corner, small}, {small.width() + kStripGapPx, 0}, &placements);
    return placements;
}

std::vector<TilePlacement> speakerToolPlacements(const LayoutInput& input, const QRect& toolArea)
{
    const int speaker = listed(input.speaker, input.count);
    if (speaker < 0)
        return {};
    const QRect whole(QPoint(0, 0), bounded(input.area));
    // The screen's area, in the place of a dialog's that is not shown yet, is larger.
    return {{speaker, input.count > 1 ? whole : toolArea & whole, kGradeLarge}};
}

QRect speakerToolArea(QSize dialog, QSize screen)
{
    const QSize area = bounded(dialog);
    const bool isDialog = area.width() > kMinToolDialogPx && area.height() > kMinToolDialogPx;
    const QSize reference = isDialog ? area : bounded(screen);
    const QSize fitted = fitSize16x9(reference - QSize(kToolFramePx, kToolFramePx));
    return {QPoint((area.width() - fitted.width()) / 2, (area.height() - fitted.height()) / 2),
            fitted};
}

} // namespace zr
