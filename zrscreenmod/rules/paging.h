// Pages of the display list: how long they are, which one to show, and when one may be turned.
// Every function takes any arguments.
#pragma once

#include <QtGlobal>

namespace zr {

/// Page turns closer to the last accepted one than this are refused.
constexpr int kPageTurnMs = 400;

/// Tiles that stand outside the paged part of an arrangement: 1 beside a strip, 2 above one.
[[nodiscard]] int largeTiles(int mode);

/// Tiles on a page of the paged part, as many as the arrangement really has; 0 for an arrangement
/// that has no pages. The share's mode shows the adaptive gallery while there is no share: ask for
/// that one's then.
/// @param nineCut the adaptive gallery is the one with nine tiles
[[nodiscard]] int tilesPerPage(int mode, bool nineCut);

/// Pages that `count` tiles fill; 0 for none, and where there are no pages.
[[nodiscard]] int pageCount(int count, int tilesPerPage);

/// The page, or the nearest one that has tiles; 0 when there is none.
[[nodiscard]] int clampPage(int page, int count, int tilesPerPage);

/// The page to show after a participant has left, for the arrangements with a strip: one back when
/// the strip's page has just become empty. Other modes keep the page.
/// @param remaining participants that are left, the large tiles' ones included
[[nodiscard]] int pageAfterRemoval(int mode, int page, int remaining);

/// clampPage for a strip: the speaker stands in the list, but takes no place of the strip.
/// @param count of the whole display list @param speaker its index there; outside the list none
[[nodiscard]] int clampPageAroundSpeaker(int page, int count, int speaker);

/// The page that follows. From the last one on it is the first one with `wrap`, else the last. An
/// arrangement without pages leaves the page, which is kept for the next one that has some.
[[nodiscard]] int nextPage(int page, int pages, bool wrap);

/// The page before, from the first one on the first one; without pages as nextPage.
[[nodiscard]] int previousPage(int page, int pages);

/// How long a poll shows a page: at least a second, and at most what a timer can count.
[[nodiscard]] int pollPeriodMs(int periodS);

/// The page that a poll shows after `ticks` ticks; 0 without pages.
[[nodiscard]] int pollPage(int ticks, int pages);

/// Where on a track the bar lies that stands for the page among so many that dots have no room.
struct PageBar
{
    int topPx;
    int heightPx;
};

/// The bar is as long a part of the track as the page is of all pages, but at least kMinPageBarPx
/// long, and goes from one end of the track to the other.
constexpr int kMinPageBarPx = 24;
[[nodiscard]] PageBar pageBar(int page, int pages, int trackPx);

/// Lets page turns through that are far enough from the last accepted one. The clock is the
/// caller's: milliseconds that never go back.
class PageTurnGate
{
public:
    /// @return false for a turn that comes too early.
    [[nodiscard]] bool accept(qint64 nowMs);

private:
    bool m_bTurned = false;
    qint64 m_lastMs = 0;
};

} // namespace zr
