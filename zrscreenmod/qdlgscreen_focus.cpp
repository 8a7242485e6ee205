// The gallery: the focus person, clicks on tiles, previews and stream grades.
#include "qdlgscreen.h"

#include "cplaywidget.h"
#include "meetingmode.h"
#include "qzrscreenconfig.h"

#include <QDebug>

namespace {

/// A tile is maximised only where there is another one to come back to.
constexpr std::size_t kMinCountToMaximise = 2;

/// Class of a meeting mode, as the double-click message carries it.
unsigned long long layoutClass(int mode)
{
    if (zr::isSpeakerMode(mode))
        return 6;
    return zr::isGalleryMode(mode) ? 5 : 7;
}

} // namespace

tagPersonInfo* QDlgScreen::personOf(const CPlayWidget* tile) const
{
    return tile ? livePerson(tile->GetPersonInfo()) : nullptr;
}

void QDlgScreen::dropFocus()
{
    m_pPreFocusPerson = m_pFocusPerson;
    if (m_pAutoFocusPerson == m_pFocusPerson)
        m_pAutoFocusPerson = nullptr;
    m_pFocusPerson = nullptr;
    hub().gallery.focusPerson = nullptr;
}

bool QDlgScreen::setFocusPerson(tagPersonInfo* person, int mode)
{
    if (!person) {
        qDebug() << "setFocusPerson userName:";
        return true;
    }
    if (person == m_pFocusPerson) {
        qDebug() << "pPersonInfo--m_pFocusPerson:" << static_cast<void*>(person)
                 << static_cast<void*>(m_pFocusPerson);
        return true;
    }
    if (m_pFocusPerson)
        dropFocus();
    m_pFocusPerson = person;
    hub().gallery.focusPerson = person;
    qDebug() << "setFocusPerson userName:" << person->userName;
    if (mode != 0)
        setMeetingMode(static_cast<eLayoutType>(mode));
    return true;
}

void QDlgScreen::onModFocusByUserID(QString qstrUserID, bool bVolActive)
{
    // Voice activation suggests a speaker; it does not take the place of a chosen one.
    if (bVolActive && m_pFocusPerson && m_pFocusPerson != m_pAutoFocusPerson)
        return;
    tagPersonInfo* person = findPerson(qstrUserID);
    if (!person) {
        qDebug() << "onModFocusByUserID, no such userID:" << qstrUserID;
        return;
    }
    setFocusPerson(person, 0);
    if (bVolActive)
        m_pAutoFocusPerson = person;
    scheduleLayout();
}

void QDlgScreen::onPlayWidgetLBtnClick(CPlayWidget* tile)
{
    if (tagPersonInfo* person = personOf(tile))
        m_pSelectedPerson = person;
    hub().broadcast(ZRMSG_TILE_CLICK, 0, 0);
    notifyLButtonClick();
}

void QDlgScreen::onLeftBtnDBClick(CPlayWidget* tile)
{
    const int mode = hub().curScreenMode();
    hub().broadcast(ZRMSG_DBLCLICK_LAYOUT, layoutClass(mode), 0);
    if (!personOf(tile) || hub().settings.layoutFollow || zr::isSpeakerToolMode(mode))
        return;
    if (m_pFocusPerson) {
        const bool bIsShare = isShareScreenId(m_pFocusPerson->userID);
        qDebug() << "bIsShare:" << bIsShare;
        if (tile != m_pFocusPerson->pWidget) {
            if (!bIsShare)
                onPlayWidgetLBtnClick(tile);
            return;
        }
        qDebug() << "pFocusPerson->pWidget:" << static_cast<void*>(m_pFocusPerson->pWidget)
                 << ",pPlayWnd:" << static_cast<void*>(tile);
    }
    if (m_vecCurPersons.size() < kMinCountToMaximise)
        return;
    const bool maximised =
        m_pShareScreenPerson && m_pShareScreenPerson->pWidget == tile && mode == eLayoutShare;
    if (maximised) {
        setMeetingMode(static_cast<eLayoutType>(hub().gallery.savedMode));
        return;
    }
    if (mode != eLayoutShare)
        hub().gallery.savedMode = mode;
    m_pShareScreenPerson = personOf(tile);
    setMeetingMode(eLayoutShare);
}

// --- Previews and stream grades ---------------------------------------------------------------

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
    emit hub().notifyExtPreview(person->userID, bPreview);
    const bool changed = person->bPreview != bPreview;
    person->bPreview = bPreview;
    if (!person->bSelf && (changed || !person->bVideoStatusChange)) {
        person->bPrePreview = changed;
        qDebug() << "notifyDisplayOrder userName:" << person->userName
                 << ",set bVideoStatusChange=true, bPreview:" << bPreview;
    }
    person->bVideoStatusChange = true;
    if (!bPreview)
        person->iStreamStatus = kStreamNone;
    person->pWidget->RefreshPlayInfo();
    if (changed && hub().settings.noVideoFilter)
        scheduleLayout();
}

void QDlgScreen::onModPreview(void* pPerson, bool bPreview)
{
    setPreview(pPerson, bPreview);
}

void QDlgScreen::setPersonStreamType(tagPersonInfo* person, int iStreamType)
{
    // Only recorded: the host is asked when the next frame arrives, once for all the arrangements
    // that came in between.
    if (!livePerson(person))
        return;
    person->iStreamType = iStreamType;
    person->bStreamTypeChanged = true;
    qDebug() << "iStreamType:" << iStreamType << ",userName:" << person->userName;
}

void QDlgScreen::switchStream(tagPersonInfo* person, int streamType)
{
    qDebug() << "switchStream,userName:" << person->userName << ",streamType:" << streamType;
    if (isShareScreenId(person->userID)) {
        qDebug() << "switchStream isShareScreen";
        return;
    }
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
    qDebug() << "1iStreamType:" << person->iStreamType << ",iDefType:" << person->iDefType
             << ",userName:" << person->userName;
    switchStream(person, person->iDefType);
}

void QDlgScreen::changePersonVideoMute(bool bMute)
{
    qDebug() << "start changePersonVideoMute";
    const std::vector<tagPersonInfo*> persons = m_vecPerson; // a message may change the list
    for (tagPersonInfo* candidate : persons) {
        tagPersonInfo* person = livePerson(candidate);
        if (!person)
            continue;
        const bool visible = isTileVisible(person);
        if (visible && person->iPlayState != kPlayShown) {
            qDebug() << "openPreview2,userName:" << person->userName;
            hub().setPersonShown(person, true);
        } else if (!visible && bMute && person->iPlayState != kPlayHidden) {
            qDebug() << "closePreview2,userName:" << person->userName;
            person->iStreamStatus = kStreamNone;
            hub().setPersonShown(person, false);
        }
    }
    qDebug() << "end changePersonVideoMute";
}

void QDlgScreen::muteInvisiblePerson(bool bMute)
{
    if (!bMute)
        return;
    const std::vector<tagPersonInfo*> persons = m_vecPerson;
    for (tagPersonInfo* candidate : persons) {
        tagPersonInfo* person = livePerson(candidate);
        if (!person || isTileVisible(person) || person->iPlayState == kPlayHidden)
            continue;
        qDebug() << "closePreviewWhenSelfShare,userName:" << person->userName;
        hub().setPersonShown(person, false);
    }
}

// --- Small window, own share, extended screen -------------------------------------------------

void QDlgScreen::onSetHideSmallWnd(bool bHide)
{
    m_bHideSmallWnd = bHide;
    scheduleLayout();
}

int QDlgScreen::showSmallWndWhenRestore(bool bShow)
{
    if (bShow)
        scheduleLayout();
    return 1;
}

int QDlgScreen::OnPopSelfShareWnd(bool bFloat, bool bMuteVideo)
{
    m_bSelfShareFloat = bFloat;
    scheduleLayout();
    flushLayout();
    muteInvisiblePerson(bMuteVideo);
    return 1;
}

void QDlgScreen::OnSwitchExtendScreen(bool bExtendScreen, bool bDeviceChange)
{
    qDebug() << "OnSwitchExtendScreen bExtendScreen:" << bExtendScreen
             << ",bDeviceChange:" << bDeviceChange;
    hub().settings.extendScreen = bExtendScreen;
    scheduleLayout();
}

bool QDlgScreen::isPersonVisibleInSmallWnd(const QString&) const
{
    return false; // the gallery has no small window open
}
