// The gallery: pinned participants, audio, voice activation, and the "more" menu.
#include "qdlgscreen.h"

#include "cplaywidget.h"
#include "meetingmode.h"
#include "moderules.h"
#include "qzrscreenconfig.h"
#include "speaktool.h"

#include <QCursor>
#include <QDebug>

#include <utility>

void QDlgScreen::applyLook(tagPersonInfo* person, bool bOn)
{
    zr::PinInput input;
    input.pins = bOn;
    input.dictated = hub().settings.layoutFollow;
    input.onSpeaker = person == m_focus.person();
    input.fromMenu = person == m_pMorePerson;
    input.mode = hub().curScreenMode();
    input.lookMode = m_iLookMode;
    const zr::PinEffect effect = zr::pinEffect(input);
    tagPersonInfo* shown = std::exchange(m_share.shown, nullptr);
    if (bOn)
        clearLooks(person);
    if (effect.choosesSpeaker)
        setFocusPerson(person, 0);
    if (effect.mode != 0)
        setMeetingMode(static_cast<eLayoutType>(effect.mode));
    m_iLookMode = hub().curScreenMode();
    // Somebody else's pin ends: who fills the dialog stays there. Messages came in between.
    if (m_iLookMode == eLayoutShare && !m_share.shown)
        m_share.shown = livePerson(shown);
    updatePersonDisplayInfo(person);
}

void QDlgScreen::clearLooks(const tagPersonInfo* except)
{
    for (tagPersonInfo* person : m_roster.all()) {
        if (person == except || !(person->bAllLook || person->bLockLook))
            continue;
        person->bAllLook = false;
        person->bLockLook = false;
        updatePersonDisplayInfo(person);
    }
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
    const tagPersonInfo* person = findPerson(m_voices.namedId);
    if (!person)
        person = m_voices.activated;
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
    tagPersonInfo* before = m_voices.activated;
    m_voices.activate(findPerson(qstrUserID));
    for (tagPersonInfo* person : m_roster.all())
        setSpeaking(person, person == m_voices.activated);
    nameWhoSpeaks();
    if (!m_voices.activated)
        return;
    ActivateIntoSmallWnd(m_voices.activated, before);
    const int mode = hub().curScreenMode();
    if (m_voices.activated != before && !zr::isSpeakerToolMode(mode)
        && (hub().settings.openLayoutCtrl || zr::isSpeakerMode(mode)))
        scheduleLayout();
}

void QDlgScreen::setCurrentSpeakingPerson(const QString& userId)
{
    if (m_voices.namedId == userId)
        return;
    m_voices.namedId = userId;
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
