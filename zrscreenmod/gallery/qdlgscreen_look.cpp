// The gallery: pinned participants, audio, voice activation, and the "more" menu.
#include "qdlgscreen.h"

#include "cplaywidget.h"
#include "meetingmode.h"
#include "qzrscreenconfig.h"
#include "speaktool.h"
#include "volumelevel.h"

#include <QCursor>
#include <QDebug>

#include <utility>

namespace {

constexpr int kMaxVolume = 100;

} // namespace

void QDlgScreen::applyLook(tagPersonInfo* person, bool bOn)
{
    const int mode = hub().curScreenMode();
    const bool follow = hub().settings.layoutFollow;
    tagPersonInfo* shown = std::exchange(m_pShareScreenPerson, nullptr);
    if (bOn) {
        for (tagPersonInfo* other : m_vecPerson) {
            if (other == person || !(other->bAllLook || other->bLockLook))
                continue;
            other->bAllLook = false;
            other->bLockLook = false;
            updatePersonDisplayInfo(other);
        }
        if (follow)
            setMeetingMode(eLayoutEqualCut);
        else if (person != m_pFocusPerson)
            setFocusPerson(person, zr::isStripMode(mode) ? mode : eLayoutSpeakerRight);
        else {
            storeFocus(person, false); // chosen from now on, whoever chose before
            setMeetingMode(eLayoutSpeakerRight);
        }
    } else if (person == m_pMorePerson) {
        const int saved = m_iLookMode == eLayoutShare ? eLayoutSpeakerRight : m_iLookMode;
        if (follow)
            setMeetingMode(eLayoutEqualCut);
        else if (mode != saved)
            setMeetingMode(static_cast<eLayoutType>(saved));
    }
    m_iLookMode = hub().curScreenMode();
    // Somebody else's pin ends: who fills the dialog stays there. Messages came in between.
    if (m_iLookMode == eLayoutShare && !m_pShareScreenPerson)
        m_pShareScreenPerson = livePerson(shown);
    updatePersonDisplayInfo(person);
}

bool QDlgScreen::setAllLook(void* pPerson, bool bAllLook)
{
    tagPersonInfo* person = checkedPerson(pPerson);
    if (!person)
        return false;
    qDebug() << "userName,bAllLock:" << person->userName << bAllLook;
    person->bAllLook = bAllLook;
    applyLook(person, bAllLook);
    return true;
}

bool QDlgScreen::setLockLookPerson(void* pPerson, bool bLock)
{
    tagPersonInfo* person = checkedPerson(pPerson);
    if (!person)
        return false;
    qDebug() << "userName:" << person->userName << ",bLock:" << bLock;
    person->bLockLook = bLock;
    applyLook(person, bLock);
    return true;
}

void QDlgScreen::onModAllLook(void* pPerson, bool bAllLook)
{
    setAllLook(pPerson, bAllLook);
}

void QDlgScreen::onModLookLock(void* pPerson, bool bLockLook)
{
    setLockLookPerson(pPerson, bLockLook);
}

void QDlgScreen::onLookToast(bool bAll)
{
    if (!hub().settings.extendScreen)
        hub().broadcast(bAll ? ZRMSG_LOOK_TOAST_ALL : ZRMSG_LOOK_TOAST_NOT_ALL, 0, 0);
}

// --- Audio ------------------------------------------------------------------------------------

bool QDlgScreen::setMute(void* pPerson, bool bMute)
{
    tagPersonInfo* person = checkedPerson(pPerson);
    if (!person)
        return false;
    const bool changed = person->bMute != bMute;
    person->bMute = bMute;
    qDebug() << "setMute,userName:" << person->userName << ",bVolMute" << bMute
             << ",userID:" << person->userID;
    if (changed)
        updatePersonDisplayInfo(person);
    return changed;
}

void QDlgScreen::onModAudioMute(void* pPerson, bool bMute)
{
    setMute(pPerson, bMute);
}

void QDlgScreen::onModVolume(void* pPerson, int iVolume)
{
    tagPersonInfo* person = checkedPerson(pPerson);
    if (person && noteVolume(*person, iVolume))
        updatePersonDisplayInfo(person);
}

bool QDlgScreen::noteVolume(tagPersonInfo& person, int iVolume)
{
    const int volume = qBound(0, iVolume, kMaxVolume);
    return zr::volumeLevel(person.iVolume.exchange(volume)) != zr::volumeLevel(volume);
}

void QDlgScreen::onModPersonHandup(void* pPerson, bool bHandUp)
{
    tagPersonInfo* person = checkedPerson(pPerson);
    if (!person || person->bHandUp == bHandUp)
        return;
    person->bHandUp = bHandUp;
    updatePersonDisplayInfo(person);
}

void QDlgScreen::UpdateUserNetStatus(QString qstrUserID, int dir, bool bIsWeak, int nNetStatus)
{
    tagPersonInfo* person = findPerson(qstrUserID);
    if (!person) {
        qDebug() << "UpdateUserNetStatus, no such userID:" << qstrUserID;
        return;
    }
    person->pWidget->UpdateNetStatus(dir, bIsWeak, nNetStatus);
}

void QDlgScreen::updatePersonDisplayInfo(ST_PersonInfo* candidate)
{
    if (tagPersonInfo* person = checkedPerson(candidate))
        emit hub().participantChanged(person);
}

void QDlgScreen::nameWhoSpeaks()
{
    if (!m_pSpeakTool)
        return;
    const tagPersonInfo* person = findPerson(m_qstrCurrentSpeaking);
    if (!person)
        person = m_pVoicePerson;
    m_pSpeakTool->setSpeaking(person ? person->userName : QString());
}

// --- Who speaks -------------------------------------------------------------------------------

void QDlgScreen::setSpeaking(tagPersonInfo* person, bool bSpeaking)
{
    if (person->bSpeaking == bSpeaking)
        return;
    person->bSpeaking = bSpeaking;
    updatePersonDisplayInfo(person);
    // Where the host gives the speaker a seat, another speaker is another order.
    if (hub().settings.speakerIdx >= 0 && hub().settings.openLayoutCtrl)
        scheduleLayout();
}

void QDlgScreen::OnSetVoiceActivateUser(QString qstrUserID)
{
    tagPersonInfo* before = m_pVoicePerson;
    if (before)
        m_pPreVoicePerson = before;
    m_pVoicePerson = findPerson(qstrUserID);
    for (tagPersonInfo* person : m_vecPerson)
        setSpeaking(person, person == m_pVoicePerson);
    nameWhoSpeaks();
    if (!m_pVoicePerson)
        return;
    ActivateIntoSmallWnd(m_pVoicePerson, before);
    const int mode = hub().curScreenMode();
    if (m_pVoicePerson != before && !zr::isSpeakerToolMode(mode)
        && (hub().settings.openLayoutCtrl || zr::isSpeakerMode(mode)))
        scheduleLayout();
}

void QDlgScreen::setCurrentSpeakingPerson(const QString& userId)
{
    if (m_qstrCurrentSpeaking == userId)
        return;
    m_qstrCurrentSpeaking = userId;
    nameWhoSpeaks();
    if (findPerson(userId)
        && (zr::isSpeakerMode(hub().curScreenMode()) || hub().settings.openLayoutCtrl))
        scheduleLayout();
}

// --- Clicks on the overlay, and the "more" menu -----------------------------------------------

void QDlgScreen::onClickAudioCtl(void* pPerson)
{
    const tagPersonInfo* person = checkedPerson(pPerson);
    if (pPerson ? !person : hub().m_pDlgScreen && hub().m_pDlgScreen != this)
        return; // another gallery's, or gone; for nobody's, one speaks for all
    if (person)
        qDebug() << "clickAudio userName:" << person->userName
                 << ",pPerson->bMute:" << person->bMute;
    hub().broadcast(ZRMSG_CLICK_AUDIO, person);
}

void QDlgScreen::onClickMore(void* pPerson, int igPosRight)
{
    tagPersonInfo* person = checkedPerson(pPerson);
    if (!person)
        return;
    qDebug() << "role,bself,bLockLook:" << person->iRoteType << person->bSelf << person->bLockLook;
    m_pMorePerson = person;
    m_rcMoreTile = person->pWidget->geometry();
    hub().broadcast(ZRMSG_CLICK_MORE, static_cast<unsigned long long>(igPosRight),
                    static_cast<long long>(reinterpret_cast<qintptr>(person->pUserData)));
}

void QDlgScreen::onHandleHandup(void* pPerson)
{
    if (const tagPersonInfo* person = checkedPerson(pPerson))
        hub().broadcast(ZRMSG_CLICK_HANDUP, person);
}

void QDlgScreen::testHideMoreMenu()
{
    if (!m_pMorePerson)
        return;
    if (!livePerson(m_pMorePerson)) {
        qDebug() << "xxx testDelPerson";
        m_pMorePerson = nullptr;
        return;
    }
    // The menu stands where the tile was when it was opened.
    const CPlayWidget* tile = m_pMorePerson->pWidget;
    if (tile->isVisible() && tile->geometry() == m_rcMoreTile
        && tile->rect().contains(tile->mapFromGlobal(QCursor::pos())))
        return;
    m_pMorePerson = nullptr;
    hub().broadcast(ZRMSG_MORE_MENU_CLOSED, 0, 0);
}

bool QDlgScreen::isMouseOnBtnMore() const
{
    for (const tagPersonInfo* person : m_vecCurPersons) {
        if (person->pWidget->IsMouseOnBtnMore())
            return true;
    }
    return false;
}
