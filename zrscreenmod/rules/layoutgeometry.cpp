#include "layoutgeometry.h"

#include "layoutparts.h"

#include <algorithm>
#include <iterator>

namespace zr {

namespace {

/// Shape of a grid for `minCount` participants and more, up to the next shape.
struct GridShape
{
    int minCount;
    int columns;
    int rows;
    int hGapPx; ///< taken off the width before it is divided among the columns
    int vGapPx; ///< taken off the height before it is divided among the rows
    /// Tiles of a last row that is centred by itself; 0 when it starts under the first column.
    int centredLastRow = 0;
};

/// The shapes of up to six participants, one for each number, in which all galleries are alike.
constexpr GridShape kFirstShapes[] = {
    {1, 1, 1, 0, 0},    //
    {2, 2, 1, 2, 0},    //
    {3, 2, 2, 2, 2, 1}, //
    {4, 2, 2, 2, 2},    //
    {5, 3, 2, 4, 2, 2}, //
    {6, 3, 2, 4, 2},
};

// Intended, although it looks wrong: three rows take off 2 and not 4, so the third row ends two
// pixels lower than the centring assumes; and eight tiles centre their last pair, while the
// seventh of seven stays on the left.
constexpr GridShape kNineCutShapes[] = {
    {7, 3, 3, 4, 2},    //
    {8, 3, 3, 4, 2, 2}, //
    {9, 3, 3, 4, 2},
};

/// One of the adaptive galleries.
struct GalleryGrid
{
    const GridShape* moreShapes; ///< beyond six, ascending by minCount
    const GridShape* end;
    int tilesPerPage;
};

constexpr GalleryGrid kEqualCut{nullptr, nullptr, kEqualCutTiles};
constexpr GalleryGrid kNineCut{std::begin(kNineCutShapes), std::end(kNineCutShapes), kNineCutTiles};

const GridShape& shapeFor(const GalleryGrid& grid, int count)
{
    const GridShape* shape =
        std::begin(kFirstShapes) + std::min<std::ptrdiff_t>(count, std::size(kFirstShapes)) - 1;
    for (const GridShape* more = grid.moreShapes; more != grid.end; ++more) {
        if (count >= more->minCount)
            shape = more;
    }
    return *shape;
}

/// Tiles on a side of a fixed grid; 0 for a mode that is none.
int fixedGridSide(int mode)
{
    switch (mode) {
    case eLayoutGrid4:
        return 2;
    case eLayoutGrid9:
        return 3;
    case eLayoutGrid16:
        return 4;
    default:
        return 0;
    }
}

/// A page of a grid whose neighbouring tiles are `gapPx` apart.
std::vector<TilePlacement> gridPlacements(const GridShape& shape, int gapPx, const PageRange& range,
                                          const LayoutInput& input)
{
    const QSize area = bounded(input.area);
    const QSize tile = fitSize16x9({(area.width() - shape.hGapPx) / shape.columns,
                                    (area.height() - shape.vGapPx) / shape.rows});
    const int stepX = tile.width() + gapPx;
    const int stepY = tile.height() + gapPx;
    const int gridLeft = (area.width() - shape.columns * tile.width() - shape.hGapPx) / 2;
    const int lastRowLeft = (area.width() - shape.centredLastRow * stepX + gapPx) / 2;
    const int top = (area.height() - shape.rows * tile.height() - shape.vGapPx) / 2;
    const int grade = gridStreamType(input.mode, input.count, input.page);

    std::vector<TilePlacement> placements;
    placements.reserve(range.size());
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

std::vector<TilePlacement> galleryPlacements(const GalleryGrid& grid, const LayoutInput& input)
{
    constexpr int kTileGapPx = 2;
    const PageRange range = pageRange(input.page, input.count, grid.tilesPerPage);
    if (range.size() == 0)
        return {};
    return gridPlacements(shapeFor(grid, input.count), kTileGapPx, range, input);
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

std::vector<TilePlacement> fixedGridPlacements(const LayoutInput& input)
{
    const int side = fixedGridSide(input.mode);
    const PageRange range = pageRange(input.page, input.count, side * side);
    if (range.size() == 0)
        return {};
    return gridPlacements({1, side, side, side - 1, side - 1}, 1, range, input);
}

TilePlacement aloneCentred(QSize area, int index)
{
    return {index, centerRect16x9(area), kGradeLarge};
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
