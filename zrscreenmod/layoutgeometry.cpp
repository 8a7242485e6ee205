#include "layoutgeometry.h"

#include "zrscreenmod.h"

#include <algorithm>
#include <iterator>

namespace zr {

namespace {

/// Between neighbouring tiles of an adaptive gallery.
constexpr int kTileGapPx = 2;

/// Shape of an adaptive gallery for `minCount` participants and more, up to the next shape.
struct GridShape
{
    int minCount;
    int columns;
    int rows;
    int hGapPx; ///< taken off the width before it is divided among the columns
    int vGapPx; ///< taken off the height before it is divided among the rows
    /// Tiles of a last row that is centred by itself; 0 when it starts under the first column.
    int centredLastRow;
};

/// Shapes of one gallery, ascending by minCount, beginning with 1.
struct GalleryGrid
{
    const GridShape* begin;
    const GridShape* end;
    int tilesPerPage;
};

constexpr GridShape kEqualCutShapes[] = {
    {1, 1, 1, 0, 0, 0}, //
    {2, 2, 1, 2, 0, 0}, //
    {3, 2, 2, 2, 2, 1}, //
    {4, 2, 2, 2, 2, 0}, //
    {5, 3, 2, 4, 2, 2}, //
    {6, 3, 2, 4, 2, 0},
};

// Intended, although it looks wrong: three rows take off 2 and not 4, so the third row ends two
// pixels lower than the centring assumes; and eight tiles centre their last pair, while the
// seventh of seven stays on the left.
constexpr GridShape kNineCutShapes[] = {
    {1, 1, 1, 0, 0, 0}, //
    {2, 2, 1, 2, 0, 0}, //
    {3, 2, 2, 2, 2, 1}, //
    {4, 2, 2, 2, 2, 0}, //
    {5, 3, 2, 4, 2, 2}, //
    {6, 3, 2, 4, 2, 0}, //
    {7, 3, 3, 4, 2, 0}, //
    {8, 3, 3, 4, 2, 2}, //
    {9, 3, 3, 4, 2, 0},
};

constexpr GalleryGrid kEqualCut{std::begin(kEqualCutShapes), std::end(kEqualCutShapes),
                                kEqualCutTiles};
constexpr GalleryGrid kNineCut{std::begin(kNineCutShapes), std::end(kNineCutShapes), kNineCutTiles};

QSize bounded(QSize size)
{
    return {std::clamp(size.width(), 0, kMaxSidePx), std::clamp(size.height(), 0, kMaxSidePx)};
}

const GridShape& shapeFor(const GalleryGrid& grid, int count)
{
    const GridShape* next =
        std::upper_bound(grid.begin, grid.end, count,
                         [](int n, const GridShape& shape) { return n < shape.minCount; });
    return *std::prev(next);
}

/// The half-open range of list indices on a page; empty for a page outside the list.
struct PageRange
{
    int first;
    int last;
};

PageRange pageRange(int page, int count, int tilesPerPage)
{
    const qint64 first = static_cast<qint64>(page) * tilesPerPage;
    if (page < 0 || first >= count)
        return {0, 0};
    return {static_cast<int>(first),
            static_cast<int>(std::min<qint64>(first + tilesPerPage, count))};
}

std::vector<TilePlacement> galleryPlacements(const GalleryGrid& grid, const LayoutInput& input)
{
    const PageRange range = pageRange(input.page, input.count, grid.tilesPerPage);
    if (range.first == range.last)
        return {};

    const QSize area = bounded(input.area);
    const GridShape& shape = shapeFor(grid, input.count);
    const QSize tile = fitSize16x9({(area.width() - shape.hGapPx) / shape.columns,
                                    (area.height() - shape.vGapPx) / shape.rows});
    const int stepX = tile.width() + kTileGapPx;
    const int stepY = tile.height() + kTileGapPx;
    const int gridLeft = (area.width() - shape.columns * tile.width() - shape.hGapPx) / 2;
    const int lastRowLeft = (area.width() - shape.centredLastRow * stepX + kTileGapPx) / 2;
    const int top = (area.height() - shape.rows * tile.height() - shape.vGapPx) / 2;
    const int grade = gridStreamType(input.mode, input.count, input.page);

    std::vector<TilePlacement> placements;
    placements.reserve(static_cast<std::size_t>(range.last - range.first));
    for (int index = range.first; index < range.last; ++index) {
        const int column = (index - range.first) % shape.columns;
        const int row = (index - range.first) / shape.columns;
        const bool ownCentre = shape.centredLastRow > 0 && row == shape.rows - 1;
        const QPoint corner{(ownCentre ? lastRowLeft : gridLeft) + stepX * column,
                            top + stepY * row};
        placements.push_back({index, QRect(corner, tile), grade});
    }
    return placements;
}

} // namespace

QSize fitSize16x9(QSize size)
{
    const int width = std::max(size.width(), 0);
    const int height = std::max(size.height(), 0);
    if (width / 16 > height / 9)
        return {static_cast<int>(height * 16.0 / 9.0), height};
    if (width / 16 < height / 9)
        return {width, static_cast<int>(width * 9.0 / 16.0)};
    return {width, height};
}

QRect fitRect16x9(const QRect& rect)
{
    return {rect.topLeft(), fitSize16x9(rect.size())};
}

QRect centerRect16x9(QSize dialog)
{
    const QSize area = bounded(dialog);
    const QSize fitted = fitSize16x9(area);
    return {QPoint((area.width() - fitted.width()) / 2, (area.height() - fitted.height()) / 2),
            fitted};
}

std::vector<TilePlacement> equalCutPlacements(const LayoutInput& input)
{
    return galleryPlacements(kEqualCut, input);
}

std::vector<TilePlacement> nineCutPlacements(const LayoutInput& input)
{
    return galleryPlacements(kNineCut, input);
}

int gridStreamType(int mode, int count, int page)
{
    switch (mode) {
    case eLayoutEqualCut:
        return page <= 0 && count < 3 ? kGradeLarge : kGradeGrid;
    case eLayout6Cut:
    case eLayout8Cut:
    case eLayoutGrid4:
        return kGradeGrid;
    default:
        return kGradeSmall;
    }
}

} // namespace zr
