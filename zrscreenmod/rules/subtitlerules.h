// The rules of the subtitle list: what is shown of a sentence, how high it stands, and when the
// list follows the newest one. Values in, values out.
#pragma once

#include <QPointF>
#include <QString>

namespace zr {

/// The sentences that the store and the list keep.
constexpr int kMaxSubtitles = 64;
/// An item is no higher, so that the heights of all of them add up to an int.
constexpr int kMaxSubtitleItemPx = 1 << 24;

/// Sizes of the subtitle list, in pixels.
struct SubtitleMetrics
{
    int avatarPx = 0;      ///< diameter, and the least height of an item
    int spacingPx = 0;     ///< below every item
    int gapPx = 0;         ///< between avatar and text
    int leftPx = 0;        ///< left of the avatar
    int lineHeightPx = 0;  ///< a line of text without leading
    int lineSpacingPx = 0; ///< from line to line
};

/// What is shown of a sentence: its line breaks become line separators, other control characters
/// spaces. Of one beyond 300,000 code units only the start is shown: pixels are calculated with 26
/// bits.
QString shownSentence(const QString& sentence);

/// Where an item's text begins, from the left.
int subtitleTextLeft(const SubtitleMetrics& metrics);
/// Where an item's text begins, from the top: its first line is level with the avatar.
double subtitleTextTop(const SubtitleMetrics& metrics);

/// How many lines a text takes that is broken anywhere. One where there is no room for text.
/// @param textWidthPx of the text in one line
int subtitleLines(int textWidthPx, int roomPx);

/// The height of an item with so many lines.
int subtitleItemHeight(int lines, const SubtitleMetrics& metrics);

/// Finds a place in a table for any number: the table repeats without end in both directions.
int repeatedIndex(int index, int count);

/// What an update of the list means for its position.
enum class FollowStep
{
    Fits,   ///< all of it is in view
    ToEnd,  ///< its end was in view: follow it
    Reading ///< the user has scrolled back
};

/// @param listPx       height of the list
/// @param newBottomPx  where the content ends after the update
/// @param positionPx   where the content begins, 0 or less
/// @param oldContentPx height of the content before the update
FollowStep followStep(int listPx, int newBottomPx, double positionPx, int oldContentPx);

/// How far the content can be scrolled.
int scrollRange(int contentPx, int listPx);

/// Where the content begins for a scroll position. What is pulled past the ends shows; nothing
/// moves sideways.
QPointF scrolledPosition(const QPointF& contentPosition, const QPointF& overshoot);

} // namespace zr
