// Whether a participant's camera is on, as far as the host's reports tell.
#pragma once

#include <QtGlobal>

#include <vector>

namespace zr {

/// Streams of invisible participants are closed this long after the arrangement that left them
/// so: a page that is turned back soon costs the host nothing.
constexpr qint64 kHideDelayMs = 1000;
/// A message that a host has not answered after this time will not be answered. Longer than any
/// answer takes: an answer that counts as none costs the participant their place.
constexpr qint64 kAnswerLimitMs = 8000;

/// Messages to which answers may still come.
class PendingAnswers
{
public:
    void add(qint64 nowMs);
    /// Attributes a report to the oldest message. @return whether there was one
    bool take(qint64 nowMs);
    [[nodiscard]] bool isWaiting(qint64 nowMs) const;

private:
    std::vector<qint64> m_sentMs; ///< in order, without those that were too old at the last add
};

/// Tells a camera that goes off from a stream that closes because the module asked for that. Hosts
/// answer late or never, every message or only those that change something, and not always in the
/// order in which they were asked. A report that a stream is closed therefore counts as the answer
/// to a "hidden", or to another grade, for which some close the stream and open it again, for as
/// long as one may come; the camera is off only where the host reports more.
///
/// Times are milliseconds of one clock that never goes back.
class CameraState
{
public:
    /// The host is told that the participant is visible, or not.
    void tellShown(qint64 nowMs);
    void tellHidden(qint64 nowMs);
    /// The host is asked for a grade.
    void tellGrade(qint64 nowMs);
    /// Takes a camera of which nothing is known for on, until the host has been asked and has
    /// answered, or was given the time for it.
    void presumeOn(qint64 nowMs);
    /// The host reports the stream as open or closed, asked or not.
    void report(bool bOpen, qint64 nowMs);

    [[nodiscard]] bool isOn(qint64 nowMs) const;
    /// When what was told last is to be told again, since the reports contradict it; -1 for never.
    [[nodiscard]] qint64 tellAgainMs() const { return m_tellAgainMs; }

private:
    enum class Told
    {
        Nothing,
        Shown,
        Hidden,
    };
    enum class Known
    {
        Nothing,
        Asked, ///< the participant was shown, and not hidden before an answer could come
        Reported,
    };
    void reportOpen(qint64 nowMs);
    void reportClosed(qint64 nowMs);

    Told m_told = Told::Nothing;
    Known m_known = Known::Nothing;
    bool m_bOn = false;
    qint64 m_doubtEndMs = -1; ///< off from then on, unless an open stream is reported
    qint64 m_tellAgainMs = -1;
    qint64 m_toldHiddenMs = 0;
    PendingAnswers m_shown;
    PendingAnswers m_hidden;
    PendingAnswers m_grades;
};

} // namespace zr
