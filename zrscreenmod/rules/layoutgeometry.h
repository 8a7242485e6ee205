// Where the tiles of a page go: pure integer arithmetic on the dialog's client area. All lengths
// are pixels and every division truncates toward zero.
//
// Every function takes any arguments: negative sides and counts are taken as 0, sides above
// kMaxSidePx as kMaxSidePx, an index outside the list as none, and a page outside the list has no
// tiles but those of the speakers.
#pragma once

#include "zrtypes.h"

#include <QRect>
#include <QSize>

#include <vector>

namespace zr {

/// The longest side that a widget can have (QWIDGETSIZE_MAX).
constexpr int kMaxSidePx = (1 << 24) - 1;

/// Stream grades: the resolution class that a tile needs.
constexpr int kGradeSmall = 2;
constexpr int kGradeGrid = 3;
constexpr int kGradeLarge = 4;

/// Tiles per page of the adaptive galleries, and of the strips beside a speaker.
constexpr int kEqualCutTiles = 6;
constexpr int kNineCutTiles = 9;
constexpr int kStripTiles = 6;

/// One tile of the current page.
struct TilePlacement
{
    int index;  ///< in the display list
    QRect rect; ///< in the dialog; empty for a tile that there is no room for
    int grade;  ///< kGradeSmall, kGradeGrid or kGradeLarge
};

/// What an arrangement depends on.
struct LayoutInput
{
    QSize area;                 ///< the dialog's client size
    int count = 0;              ///< participants in the whole display list, not on the page
    int page = 0;               ///< 0-based
    int mode = eLayoutEqualCut; ///< the meeting mode, which decides the grade
    bool polling = false;       ///< pages turn by themselves: a lone tile keeps its place
    int speaker = -1;           ///< the speaker's index in the display list; -1 without one
    int secondSpeaker = -1;     ///< of two large tiles the second; -1 takes the first other one
};

/// Shrinks a size to 16:9. The sides are compared by their truncated quotients w/16 and h/9, and
/// equal quotients leave the size as it is: 641 x 360 stays 641 x 360. Neither side ever grows.
[[nodiscard]] QSize fitSize16x9(QSize size);

/// fitSize16x9 of a rectangle, whose top left corner stays.
[[nodiscard]] QRect fitRect16x9(const QRect& rect);

/// fitSize16x9 of a dialog, centred in it.
[[nodiscard]] QRect centerRect16x9(QSize dialog);

/// The adaptive gallery: up to six tiles of one size on each page. The shape of the grid follows
/// the whole list, so that a partly filled last page keeps it.
[[nodiscard]] std::vector<TilePlacement> equalCutPlacements(const LayoutInput& input);

/// The adaptive gallery with up to nine tiles on each page. With three rows the last one may end
/// up to two pixels below the dialog.
[[nodiscard]] std::vector<TilePlacement> nineCutPlacements(const LayoutInput& input);

/// One large tile, with five small ones at its right and below it. Everybody behind the page is
/// placed too, on an empty rectangle with the small grade: the next arrangement that shows them
/// decides anew.
[[nodiscard]] std::vector<TilePlacement> sixCutPlacements(const LayoutInput& input);

/// One large tile, with seven small ones at its right and below it. It has no pages: from the ninth
/// on, everybody is placed on an empty rectangle, as above.
[[nodiscard]] std::vector<TilePlacement> eightCutPlacements(const LayoutInput& input);

/// The speaker with a strip of small tiles at the right, below or on top (modes 6, 7, 8). The
/// speaker fills what the strip leaves and is not 16:9. Without a speaker the strip stands alone
/// while polling, and otherwise there are no tiles. The right edge of the speaker or of the strip
/// may lie up to two pixels outside the dialog, the lower edge of the speaker one.
[[nodiscard]] std::vector<TilePlacement> speakerPlacements(const LayoutInput& input);

/// Two speakers side by side above a strip (mode 9), centred in what it leaves; the tiles of the
/// strip are a sixth of the height. Without a first speaker as above.
[[nodiscard]] std::vector<TilePlacement> speaker4Placements(const LayoutInput& input);

/// Squares of 2, 3 or 4 tiles a side (modes 11, 12, 13), which keep their shape. Other modes have
/// no tiles.
[[nodiscard]] std::vector<TilePlacement> fixedGridPlacements(const LayoutInput& input);

/// One tile alone, centred in the dialog: a shared screen, a single participant.
[[nodiscard]] TilePlacement aloneCentred(QSize area, int index);

/// Where the speaker stands when the next one floats in the speaker tool (modes 4 and 5): the
/// whole dialog, or, alone, the area that speakerToolArea gives, as far as it is in the dialog. No
/// tile without a speaker.
[[nodiscard]] std::vector<TilePlacement> speakerToolPlacements(const LayoutInput& input,
                                                               const QRect& toolArea);

/// The 16:9 area that belongs to the speaker tool's modes, centred in the dialog. A dialog of at
/// most 100 pixels a side is not one yet: the screen takes its place.
[[nodiscard]] QRect speakerToolArea(QSize dialog, QSize screen);

/// Stream grade of the tiles of a grid, in any meeting mode (`eLayoutType`). Both adaptive
/// galleries ask by pages of six: only the first page of at most two participants is large.
[[nodiscard]] int gridStreamType(int mode, int count, int page);

} // namespace zr
