#include "camerastate.h"

#include <algorithm>

namespace zr {

namespace {

/// A host that has closed a stream for another grade opens it again before this time is over.
constexpr qint64 kReopenLimitMs = kAnswerLimitMs / 2;

} // namespace

void PendingAnswers::add(qint64 nowMs)
{
    const auto waiting = [nowMs](qint64 sentMs) { return sentMs + kAnswerLimitMs > nowMs; };
    m_sentMs.erase(m_sentMs.begin(), std::find_if(m_sentMs.begin(), m_sentMs.end(), waiting));
    m_sentMs.push_back(nowMs);
}

bool PendingAnswers::take(qint64 nowMs)
{
    const auto oldest = std::find_if(m_sentMs.begin(), m_sentMs.end(), [nowMs](qint64 sentMs) {
        return sentMs + kAnswerLimitMs > nowMs;
    });
    const bool found = oldest != m_sentMs.end();
    m_sentMs.erase(m_sentMs.begin(), found ? oldest + 1 : oldest);
    return found;
}

bool PendingAnswers::isWaiting(qint64 nowMs) const
{
    return !m_sentMs.empty() && m_sentMs.back() + kAnswerLimitMs > nowMs;
}

void CameraState::tellShown(qint64 nowMs)
{
    m_told = Told::Shown;
    m_tellAgainMs = -1;
    const bool presumed = m_known == Known::Nothing && m_bOn;
    if (presumed || m_doubtEndMs >= 0)
        m_doubtEndMs = nowMs + kAnswerLimitMs;
    m_known = std::max(m_known, Known::Asked);
    m_shown.add(nowMs);
}

void CameraState::tellHidden(qint64 nowMs)
{
    // A host that had not opened the stream yet has no reason to any more: what is in doubt stays.
    m_bOn = isOn(nowMs);
    m_doubtEndMs = -1;
    if (m_known == Known::Asked && m_shown.isWaiting(nowMs))
        m_known = Known::Nothing; // nor to answer
    m_told = Told::Hidden;
    m_tellAgainMs = -1;
    m_toldHiddenMs = nowMs;
    m_hidden.add(nowMs);
}

void CameraState::tellGrade(qint64 nowMs)
{
    m_grades.add(nowMs);
}

void CameraState::presumeOn(qint64 nowMs)
{
    const bool awaited = m_known == Known::Asked && m_shown.isWaiting(nowMs);
    if (m_bOn || !(awaited || m_known == Known::Nothing))
        return;
    m_bOn = true;
    m_doubtEndMs = awaited ? nowMs + kAnswerLimitMs : -1;
}

void CameraState::report(bool bOpen, qint64 nowMs)
{
    m_tellAgainMs = -1;
    if (bOpen)
        reportOpen(nowMs);
    else
        reportClosed(nowMs);
}

void CameraState::reportOpen(qint64 nowMs)
{
    m_bOn = true;
    m_known = Known::Reported;
    m_doubtEndMs = -1;
    const bool answers = m_shown.take(nowMs);
    if (m_told != Told::Hidden)
        return;
    // A late answer to "shown" is followed by the one to "hidden". Any other stream that opens
    // while nobody sees it must be closed again, such as that of a camera that was switched on.
    m_tellAgainMs = answers && m_hidden.isWaiting(nowMs) ? m_toldHiddenMs + kAnswerLimitMs
                                                         : nowMs + kHideDelayMs;
}

void CameraState::reportClosed(qint64 nowMs)
{
    const bool mayReopen = m_grades.isWaiting(nowMs);
    if (!m_hidden.take(nowMs) && !m_grades.take(nowMs)) {
        m_bOn = false;
        m_known = Known::Reported;
        m_doubtEndMs = -1;
        m_shown.take(nowMs);
    } else if (m_told == Told::Shown) {
        // Either an answer, or the camera of a host that answers less. The next report of an open
        // stream tells; where none is to be expected, it is asked for once more. For another grade
        // some hosts open the stream again by themselves.
        m_doubtEndMs = nowMs + kAnswerLimitMs;
        if (!m_shown.isWaiting(nowMs))
            m_tellAgainMs = mayReopen ? nowMs + kReopenLimitMs : nowMs;
    }
}

bool CameraState::isOn(qint64 nowMs) const
{
    return m_bOn && (m_doubtEndMs < 0 || nowMs < m_doubtEndMs);
}

} // namespace zr
