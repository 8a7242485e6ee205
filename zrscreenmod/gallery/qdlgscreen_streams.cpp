// The gallery: whose stream is open, and at which grade.
#include "qdlgscreen.h"

#include "cplaywidget.h"
#include "qzrscreenconfig.h"
#include "speaktool.h"

#include <QDebug>

#include <utility>

namespace {

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
    if (!pPerson)
        return;
    tagPersonInfo* person = livePerson(pPerson);
    if (!person) {
        qDebug() << "xxxx QDlgScreen::setPreview testDelPerson";
        return;
    }
    qDebug() << "userID:" << person->userID << ",userName:" << person->userName
             << ",pInfo->bPrePreview:" << person->bPrePreview << ",bPreview:" << bPreview;
    const bool changed = person->bPreview != bPreview;
    person->bPreview = bPreview;
    if (!person->bSelf && (changed || !person->bVideoStatusChange)) {
        person->bPrePreview = changed;
        qDebug() << "notifyDisplayOrder userName:" << person->userName
                 << ",set bVideoStatusChange=true, bPreview:" << bPreview;
    }
    person->bVideoStatusChange = true;
    const bool pictureChanged = notePicture(person, bPreview);
    if (!bPreview)
        forgetStream(person);
    else if (person->iPlayState == kPlayHidden && !isTileVisible(person))
        expectMute(person);
    updatePersonDisplayInfo(person);
    if (pictureChanged && hub().settings.noVideoFilter)
        scheduleLayout();
    // Last, since the extended screen is another unit's: it may end with a message to its host.
    emit hub().notifyExtPreview(person->userID, bPreview);
}

bool QDlgScreen::notePicture(tagPersonInfo* person, bool bPreview)
{
    // A stream that the gallery itself has had closed says nothing about the camera.
    const bool had = person->bPicture;
    person->bPicture = bPreview || (had && person->iPlayState == kPlayHidden);
    return person->bPicture != had;
}

void QDlgScreen::expectMute(tagPersonInfo* person)
{
    // Nobody sees the participant, and the stream may be open though the host was told to close it.
    person->iPlayState = kPlayUnknown;
    if (m_iMuteTimerId == 0)
        startMuteTimer();
}

void QDlgScreen::onNotifyExtUserLeft(const QString& userId)
{
    // While the participant was there nobody was told to close the stream.
    tagPersonInfo* const person = findPerson(userId);
    if (person && m_bJoinMeetingFinish && !isTileVisible(person))
        expectMute(person);
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
    if (!livePerson(person))
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
    if (!livePerson(person))
        return;
    qDebug() << "switchStream,userName:" << person->userName << ",streamType:" << streamType;
    if (person->bShare) {
        qDebug() << "switchStream isShareScreen";
        return;
    }
    person->iSentStreamType = streamType;
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
    const std::vector<tagPersonInfo*> persons = m_vecPerson; // a message may change the list
    for (tagPersonInfo* candidate : persons) {
        tagPersonInfo* person = livePerson(candidate);
        if (!person)
            continue;
        if (isTileVisible(person)) {
            if (person->iPlayState != kPlayShown) {
                qDebug() << "openPreview2,userName:" << person->userName;
                hub().setPersonShown(person, true);
            } else if (bMute && !person->bPreview && std::exchange(person->bPicture, false)
                       && hub().settings.noVideoFilter) {
                // The camera was switched off while nobody saw it.
                scheduleLayout();
            }
        } else if (bMute && person->iPlayState != kPlayHidden && !hub().isExtUser(person->userID)) {
            qDebug() << (person->iPlayState == kPlayShown ? "closePreview2,userName:"
                                                          : "closePreview1,userName:")
                     << person->userName;
            reportHidden(person);
        }
    }
    qDebug() << "end changePersonVideoMute";
}

void QDlgScreen::muteInvisiblePerson(bool bMute)
{
    if (!bMute) {
        changePersonVideoMute(false);
        return;
    }
    const std::vector<tagPersonInfo*> persons = m_vecPerson;
    for (tagPersonInfo* candidate : persons) {
        tagPersonInfo* person = livePerson(candidate);
        if (!person || isTileVisible(person) || person->iPlayState == kPlayHidden
            || hub().isExtUser(person->userID))
            continue;
        qDebug() << "closePreviewWhenSelfShare,userName:" << person->userName;
        reportHidden(person);
    }
}
