// The arrangements with one large tile and small ones at its right and below it.
#include "layoutparts.h"

namespace zr {

namespace {

/// A 16:9 area cut into `parts` parts each way: the large tile covers all but the last column and
/// the last row, which the small ones fill.
struct CutArea
{
    QRect frame;
    int parts;

    [[nodiscard]] int smallTiles() const { return 2 * parts - 1; }

    /// Tiles keep a pixel off the lines of the cut.
    [[nodiscard]] QRect tile(int column, int row, int spannedParts) const
    {
        const QPoint corner(column * frame.width() / parts + 1, row * frame.height() / parts + 1);
        return fitRect16x9(
            {frame.topLeft() + corner, QSize(spannedParts * frame.width() / parts - 2,
                                             spannedParts * frame.height() / parts - 2)});
    }

    /// @param place 0 for the large tile; from 1 on down the right column, then along the last row
    [[nodiscard]] QRect rectAt(int place) const
    {
        const int last = parts - 1;
        if (place == 0)
            return tile(0, 0, last);
        if (place <= last)
            return tile(last, place - 1, 1);
        if (place <= smallTiles())
            return tile(place - parts, last, 1);
        return {};
    }
};

std::vector<TilePlacement> cutPlacements(const LayoutInput& input, int parts, int first)
{
    const CutArea cut{centerRect16x9(input.area), parts};
    const bool alone = input.count == 1 && !input.polling;

    // Intended: everybody up to the end of the list is placed, not only as many as there are
    // tiles. The empty rectangle hides the others.
    std::vector<TilePlacement> placements;
    placements.reserve(static_cast<std::size_t>(input.count - first));
    for (int index = first; index < input.count; ++index) {
        const int place = index - first;
        placements.push_back(
            {index, alone ? cut.frame : cut.rectAt(place), place == 0 ? kGradeLarge : kGradeSmall});
    }
    return placements;
}

} // namespace

std::vector<TilePlacement> sixCutPlacements(const LayoutInput& input)
{
    const PageRange range = pageRange(input.page, input.count, kEqualCutTiles);
    return range.size() > 0 ? cutPlacements(input, 3, range.first) : std::vector<TilePlacement>{};
}

std::vector<TilePlacement> eightCutPlacements(const LayoutInput& input)
{
    return input.count > 0 ? cutPlacements(input, 4, 0) : std::vector<TilePlacement>{};
}

} // namespace zr
