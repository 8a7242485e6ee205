// Where the elements of a tile's overlay lie and what they say.
#pragma once

#include "nametext.h"

#include <QRect>
#include <QSize>
#include <QString>

#include <array>
#include <vector>

namespace zr {

/// Below this width a tile has the small elements also where it is the only one. A base size, as
/// all are: it counts twice on a high-resolution screen.
constexpr int kSmallTileWidthPx = 320;

/// Whom everybody is asked to watch, or whom the local user keeps in view.
enum class LookMark
{
    None,
    AllLook,
    LockLook,
    Unlabelled, ///< takes its place, but is not painted
};

/// All that an overlay shows depends on, apart from the tile's size.
struct OverlayState
{
    bool bPerson = false; ///< without a participant nothing is shown
    bool bShare = false;
    bool bPaused = false;  ///< a shared screen that is paused
    bool bPicture = false; ///< the picture shows, else the avatar covers it
    bool bSelf = false;
    bool bSpeaking = false;
    bool bBorder = false; ///< a dark border where no other is
    bool bSpinner = false;
    bool bMute = false;
    bool bCamera = false; ///< on, though its picture may not show yet; for tileDescription
    bool bSmall = false;  ///< one of several tiles
    bool bNoMenu = false; ///< without the "more" button
    bool bFrozen = false; ///< the picture is to stay as it is; for the tile
    bool bHand = false;
    bool bLargerText = false;
    int iRole = 0;
    int iColor = 0;       ///< index of the avatar's colour; see avatarColor
    int iAudioLevel = 1;  ///< see volumeLevel
    int iNetLevel = 5;    ///< 0 (none) to 5 (best)
    int iBubbleColor = 0; ///< as iColor
    LookMark look = LookMark::None;
    QString name;       ///< as the record has it
    QString resolution; ///< for developers; empty when it is not to be shown
    QString watermark;  ///< of a shared screen
    QString bubble;     ///< what the participant says; empty when there is nothing to show

    bool operator==(const OverlayState& other) const;
};

/// The elements, in the order in which they are painted.
enum class OverlayPart
{
    Cover,   ///< variant: a Cover
    Avatar,  ///< variant: the colour
    Badge,   ///< variant: the role
    NameBar, ///< its dark ground
    Audio,   ///< the microphone; variant: 0 muted, else the level
    Name,
    Network, ///< variant: the level
    Spinner, ///< with a tint of the whole tile
    More,
    Paused,
    Caption, ///< of a shared screen
    Watermark,
    Resolution,
    Look,
    Hand,
    Bubble, ///< one line, or two with a line break between; variant: the colour of its dot
    Border, ///< variant: a Border; textRect is what it leaves
    Count,
};

enum class Cover : int
{
    Bars, ///< what the picture leaves of the tile
    Full,
};

enum class Border : int
{
    Dark,
    Speaking,
};

/// An element; absent when its rectangle is empty.
struct OverlayElement
{
    QRect rect;
    QRect textRect;
    QString text;
    int fontPx = 0;
    int variant = 0;

    bool isShown() const { return !rect.isEmpty(); }
    bool operator==(const OverlayElement& other) const;
    bool operator!=(const OverlayElement& other) const { return !(*this == other); }
};

struct OverlayLayout
{
    QSize size;
    bool bSmall = false; ///< with the small elements
    std::array<OverlayElement, static_cast<std::size_t>(OverlayPart::Count)> elements;

    const OverlayElement& at(OverlayPart part) const
    {
        return elements[static_cast<std::size_t>(part)];
    }
    OverlayElement& at(OverlayPart part) { return elements[static_cast<std::size_t>(part)]; }
};

/// Sizes of the images that take part in the layout. A missing image is empty and takes no place.
struct OverlayImageSizes
{
    QSize audio;
    QSize more;
    QSize hand;
    QSize spinner;
};

/// What the layout is made from besides the state.
struct OverlayMetrics
{
    QSize tile;
    bool bHighResolution = false;
    std::array<OverlayImageSizes, 2> images; ///< large and small
    TextWidth width;                         ///< of a text in the overlay's font
};

// --- Texts; empty for what has none ---
QString roleName(int role);
QString lookText(LookMark look);
/// Follows one's own name.
QString selfSuffix();
/// Follows the name of who shares a screen.
QString shareSuffix();

/// The network is so weak that it is shown; one's own never is.
bool isWeakNetwork(const OverlayState& state);

/// Elements that a very small tile has no room for are left out. All rectangles lie inside the
/// tile.
OverlayLayout layoutOverlay(const OverlayState& state, const OverlayMetrics& metrics);

/// What has to be painted anew to come from one layout to another of the same size. The rectangles
/// may overlap.
std::vector<QRect> changedRects(const OverlayLayout& before, const OverlayLayout& after);

/// The strips along the edges that a border covers.
std::array<QRect, 4> borderRects(const QSize& tile, int widthPx);

} // namespace zr
