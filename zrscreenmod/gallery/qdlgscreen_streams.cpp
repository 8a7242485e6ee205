// The gallery: whose stream is open, and at which grade.
#include "qdlgscreen.h"

#include "cplaywidget.h"
#include "qzrscreenconfig.h"
#include "speaktool.h"

#include <QDebug>

#include <algorithm>
#include <utility>

namespace {

/// Coarse timers fire early by as much as this in the second that they run.
constexpr qint64 kTimerSlackMs = 50;

/// A stream that is opened again begins at the host's grade, so that the tile's is asked for anew.
void forgetStream(tagPersonInfo* person)
{
    person->iStreamStatus = kStreamNone;
    person->iSentStreamType = 0;
    person->bStreamTypeChanged = person->iStreamType != 0;
}

} // namespace

// --- Previews: the host reports which streams are open ----------------------------------------

void QDlgScreen::setPreview(void* pPerson, bool bPreview)
{
    tagPersonInfo* person = checkedPerson(pPerson, "xxxx QDlgScreen::setPreview testDelPerson");
    if (!person)
        return;
    qDebug() << "userID:" << person->userID << ",userName:" << person->userName
             << ",pInfo->bPrePreview:" << person->bPrePreview << ",bPreview:" << bPreview;
    const bool changed = person->bPreview != bPreview;
    if (!person->bSelf && (changed || !person->bVideoStatusChange)) {
        person->bPrePreview = changed;
        qDebug() << "notifyDisplayOrder userName:" << person->userName
                 << ",set bVideoStatusChange=true, bPreview:" << bPreview;
    }
    setStreamOpen(*person, bPreview);
    if (!bPreview)
        forgetStream(person);
    const qint64 nowMs = hub().nowMs();
    const bool hadCamera = person->camera.isOn(nowMs);
    person->camera.report(bPreview, nowMs);
    const bool cameraChanged = person->camera.isOn(nowMs) != hadCamera;
    if (person->camera.tellAgainMs() >= 0)
        startMuteTimer();
    updatePersonDisplayInfo(person);
    if (cameraChanged && hub().settings.noVideoFilter)
        scheduleLayout();
    // Last, since the extended screen is another unit's: it may end with a message to its host.
    emit hub().notifyExtPreview(person->userID, bPreview);
}

void QDlgScreen::onNotifyExtUserLeft(const QString& userId)
{
    // While the participant was there nobody was told to close the stream, or it was opened there
    // though the host had been told to close it.
    tagPersonInfo* const person = findPerson(userId);
    if (!person || !m_bJoinMeetingFinish || isTileVisible(person))
        return;
    person->iPlayState = kPlayUnknown;
    person->hideDueMs = hub().nowMs() + zr::kHideDelayMs;
    startMuteTimer();
}

void QDlgScreen::onModPreview(void* pPerson, bool bPreview)
{
    setPreview(pPerson, bPreview);
}

// --- Grades -----------------------------------------------------------------------------------

void QDlgScreen::setPersonStreamType(tagPersonInfo* person, int iStreamType)
{
    // Only recorded: the host is asked when the next frame arrives, once for all the arrangements
    // that came in between.
    if (!checkedPerson(person))
        return;
    const int before = std::exchange(person->iStreamType, iStreamType);
    person->bStreamTypeChanged = true;
    qDebug() << "iStreamType:" << iStreamType << ",userName:" << person->userName;
    if (before != iStreamType) // its tile's elements are small or large accordingly
        updatePersonDisplayInfo(person);
}

void QDlgScreen::passStreamType(tagPersonInfo* person)
{
    // The last frames of a stream that closes, or is about to, ask for nothing: the next one's
    // will.
    const bool open = person->bPreview || !person->bVideoStatusChange;
    if (!person->bStreamTypeChanged || !open || !isTileVisible(person))
        return;
    person->bStreamTypeChanged = false;
    if (person->iStreamType == person->iSentStreamType)
        return;
    qDebug() << "userName:" << person->userName << ",streamType:" << person->iStreamType;
    if (!person->bSelf && !person->userName.isEmpty())
        switchStream(person, person->iStreamType);
}

void QDlgScreen::switchStream(tagPersonInfo* person, int streamType)
{
    if (!checkedPerson(person))
        return;
    qDebug() << "switchStream,userName:" << person->userName << ",streamType:" << streamType;
    if (person->bShare) {
        qDebug() << "switchStream isShareScreen";
        return;
    }
    person->iSentStreamType = streamType;
    person->camera.tellGrade(hub().nowMs());
    hub().broadcast(static_cast<unsigned long>(streamType), person);
}

void QDlgScreen::setPersonDefStreamType(void* pPerson)
{
    tagPersonInfo* person = livePerson(pPerson);
    if (!person) {
        qDebug() << "setPersonDefStreamType pPerson == nullptr";
        return;
    }
    qDebug() << "0iStreamType:" << person->iStreamType << ",iDefType:" << person->iDefType
             << ",userName:" << person->userName;
    person->iStreamType = person->iDefType;
    person->bStreamTypeChanged = false;
    updatePersonDisplayInfo(person);
    qDebug() << "1iStreamType:" << person->iStreamType << ",iDefType:" << person->iDefType
             << ",userName:" << person->userName;
    switchStream(person, person->iDefType);
}

// --- Who is seen ------------------------------------------------------------------------------

void QDlgScreen::reportHidden(tagPersonInfo* person)
{
    forgetStream(person);
    hub().setPersonShown(person, false);
}

void QDlgScreen::changePersonVideoMute(bool bMute)
{
    qDebug() << "start changePersonVideoMute";
    const qint64 nowMs = hub().nowMs();
    const auto isDue = [this, nowMs](const tagPersonInfo* person) {
        const qint64 dueMs = tellDueMs(person);
        return dueMs >= 0 && dueMs <= nowMs + kTimerSlackMs;
    };
    const std::vector<tagPersonInfo*> persons = m_roster.all(); // a message may change the list
    for (tagPersonInfo* candidate : persons) {
        tagPersonInfo* person = livePerson(candidate);
        if (!person)
            continue;
        if (isTileVisible(person)) {
            person->hideDueMs = -1;
            if (person->iPlayState != kPlayShown || isDue(person)) {
                qDebug() << "openPreview2,userName:" << person->userName;
                hub().setPersonShown(person, true);
            }
            continue;
        }
        if (person->hideDueMs < 0)
            person->hideDueMs = nowMs + zr::kHideDelayMs;
        if (bMute && isDue(person)) {
            qDebug() << (person->iPlayState == kPlayUnknown ? "closePreview1,userName:"
                                                            : "closePreview2,userName:")
                     << person->userName;
            reportHidden(person);
        }
    }
    startMuteTimer();
    qDebug() << "end changePersonVideoMute";
}

qint64 QDlgScreen::tellDueMs(const tagPersonInfo* person) const
{
    if (isTileVisible(person))
        return person->iPlayState == kPlayShown ? person->camera.tellAgainMs() : -1;
    if (hub().isExtUser(person->userID))
        return -1;
    return person->iPlayState == kPlayHidden ? person->camera.tellAgainMs() : person->hideDueMs;
}

void QDlgScreen::startMuteTimer()
{
    // Each tile has a time of its own: arrangements in quick succession must not put off the report
    // of who has been gone for long.
    qint64 nextMs = -1;
    for (const tagPersonInfo* person : m_roster.all()) {
        const qint64 dueMs = tellDueMs(person);
        if (dueMs >= 0 && (nextMs < 0 || dueMs < nextMs))
            nextMs = dueMs;
    }
    if (m_iMuteTimerId != 0 && nextMs == m_muteDueMs)
        return;
    if (m_iMuteTimerId != 0)
        killTimer(m_iMuteTimerId);
    m_muteDueMs = nextMs;
    const auto waitMs = static_cast<int>(std::max<qint64>(nextMs - hub().nowMs(), 0));
    m_iMuteTimerId = nextMs < 0 ? 0 : startTimer(waitMs, Qt::CoarseTimer);
}

void QDlgScreen::muteInvisiblePerson(bool bMute)
{
    if (!bMute) {
        changePersonVideoMute(false);
        return;
    }
    const std::vector<tagPersonInfo*> persons = m_roster.all();
    for (tagPersonInfo* candidate : persons) {
        tagPersonInfo* person = livePerson(candidate);
        if (!person || isTileVisible(person) || person->iPlayState == kPlayHidden
            || hub().isExtUser(person->userID))
            continue;
        qDebug() << "closePreviewWhenSelfShare,userName:" << person->userName;
        reportHidden(person);
    }
}
