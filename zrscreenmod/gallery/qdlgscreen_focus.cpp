// The gallery: the focus person, clicks on tiles, and the small window.
#include "qdlgscreen.h"

#include "cplaywidget.h"
#include "focusrules.h"
#include "meetingmode.h"
#include "personorder.h"
#include "qzrscreenconfig.h"
#include "speaktool.h"

#include <QApplication>
#include <QDebug>

#include <algorithm>
#include <utility>

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

/// True for the participant who shares, and for what they share.
bool isSponsor(const tagPersonInfo* person, const QString& sponsor)
{
    if (sponsor.isEmpty())
        return false;
    return person->userID == (person->bShare ? sponsoredShareId(sponsor) : sponsor);
}

/// The tile at an address that a signal carried; null when no tile is there.
CPlayWidget* tileAt(const void* address)
{
    const QWidgetList widgets = QApplication::allWidgets();
    const auto found = std::find(widgets.begin(), widgets.end(), address);
    return found == widgets.end() ? nullptr : qobject_cast<CPlayWidget*>(*found);
}

} // namespace

tagPersonInfo* QDlgScreen::personOf(const CPlayWidget* tile) const
{
    return tile ? livePerson(tile->GetPersonInfo()) : nullptr;
}

// --- The focus person -------------------------------------------------------------------------

bool QDlgScreen::setFocusPerson(tagPersonInfo* candidate, int mode)
{
    tagPersonInfo* person = checkedPerson(candidate);
    if (!person) {
        if (!candidate)
            qDebug() << "setFocusPerson userName:";
        return true;
    }
    const bool stays = person == m_focus.person();
    m_focus.choose(person); // from now on, whoever chose before
    if (stays) {
        qDebug() << "pPersonInfo--m_pFocusPerson:" << static_cast<void*>(person)
                 << static_cast<void*>(person);
        return true;
    }
    qDebug() << "setFocusPerson userName:" << person->userName;
    if (mode != 0)
        setMeetingMode(static_cast<eLayoutType>(mode));
    else
        scheduleLayout();
    return true;
}

void QDlgScreen::onModFocusByUserID(QString qstrUserID, bool bVolActive)
{
    // Voice activation suggests a speaker; it does not take the place of a chosen one.
    if (bVolActive && m_focus.chosen())
        return;
    tagPersonInfo* person = findPerson(qstrUserID);
    if (person && bVolActive) {
        m_focus.suggest(person);
    } else if (person) {
        setFocusPerson(person, 0);
    } else if (qstrUserID.isEmpty() && !bVolActive) {
        m_focus.drop(); // nobody's: the arrangements choose again
    } else {
        qDebug() << "onModFocusByUserID, no such userID:" << qstrUserID;
        return;
    }
    scheduleLayout();
}

bool QDlgScreen::isLayoutDictated() const
{
    return hub().settings.layoutFollow || hub().settings.openLayoutCtrl;
}

// --- Who is the speaker -----------------------------------------------------------------------

std::vector<zr::SpeakerKey> QDlgScreen::speakerKeys(bool bNext) const
{
    // A speaker whom an arrangement chose stays while people come and go. Only a new voice takes
    // the place, where the host wants that: ActivateIntoSmallWnd.
    const tagPersonInfo* automatic = bNext ? nullptr : m_focus.automatic();
    const tagPersonInfo* previous = automatic ? automatic : m_focus.previous();
    const tagPersonInfo* talking = findPerson(m_voices.namedId);
    const QString sponsor = hub().shareSponsor();
    std::vector<zr::SpeakerKey> keys;
    keys.reserve(m_vecCurPersons.size());
    for (const tagPersonInfo* person : m_vecCurPersons) {
        zr::SpeakerKey key;
        key.share = person->bShare;
        key.sponsor = isSponsor(person, sponsor);
        key.pinned = person->bAllLook || person->bLockLook;
        key.activated = !automatic && person == m_voices.activated;
        key.talking = !automatic && (person == talking || person == m_voices.before);
        key.previous = person == previous;
        key.host = person->iRoteType == zr::kRoleHost;
        key.self = person->bSelf;
        keys.push_back(key);
    }
    return keys;
}

int QDlgScreen::chooseSpeaker()
{
    if (const tagPersonInfo* chosen = m_focus.chosen())
        return indexOf(chosen);
    if (m_vecCurPersons.empty())
        return -1;
    // Where the host dictates the layout, the order is the host's as well.
    const int index = isLayoutDictated() ? 0 : zr::defaultSpeaker(speakerKeys(false));
    tagPersonInfo* person = m_vecCurPersons[static_cast<std::size_t>(index)];
    if (person != m_focus.person())
        m_focus.suggest(person);
    return index;
}

int QDlgScreen::chooseNextSpeaker(int speaker) const
{
    return zr::nextSpeaker(speakerKeys(true), speaker);
}

int QDlgScreen::indexOf(const tagPersonInfo* person) const
{
    const auto found = std::find(m_vecCurPersons.begin(), m_vecCurPersons.end(), person);
    return found == m_vecCurPersons.end() ? -1 : static_cast<int>(found - m_vecCurPersons.begin());
}

void QDlgScreen::admitVoice(std::vector<zr::TilePlacement>& placements, int large) const
{
    const tagPersonInfo* voice = m_voices.activated;
    if (voice && voice != m_focus.person() && !voice->bSelf)
        zr::admitToStrip(placements, indexOf(voice), large);
}

void QDlgScreen::seatLayoutCtrl(std::vector<tagPersonInfo*>& persons) const
{
    if (!hub().settings.openLayoutCtrl)
        return;
    tagPersonInfo* speaker = m_voices.activated;
    if (!speaker)
        speaker = findPerson(m_voices.namedId);
    zr::takeSeats<tagPersonInfo>(
        persons, {{firstShare(), hub().settings.shareIdx}, {speaker, hub().settings.speakerIdx}});
}

// --- Clicks -----------------------------------------------------------------------------------

void QDlgScreen::onPlayWidgetLBtnClick(CPlayWidget* tile)
{
    if (tagPersonInfo* person = personOf(tile))
        clickPerson(person);
}

void QDlgScreen::onNotifyClickExtPlayWidget(void* pTile)
{
    // The extended screen's tile shows a record of its own.
    const CPlayWidget* tile = tileAt(pTile);
    const tagPersonInfo* shown = tile ? tile->GetPersonInfo() : nullptr;
    if (tagPersonInfo* person = shown ? findPerson(shown->userID) : livePerson(pTile))
        clickPerson(person);
}

void QDlgScreen::clickPerson(tagPersonInfo* clicked)
{
    hub().broadcast(ZRMSG_TILE_CLICK, 0, 0);
    notifyLButtonClick();
    // From here on the host may have deleted anybody from inside a message.
    tagPersonInfo* person = livePerson(clicked);
    if (!person)
        return;
    const tagPersonInfo* speaker = m_focus.person();
    zr::ClickInput input;
    input.mode = hub().curScreenMode();
    input.dictated = hub().settings.layoutFollow;
    input.onSpeaker = person == speaker;
    input.speakerHasStream = speaker && speaker->bPreview;
    input.personHasPicture = person->bPreview || person->camera.isOn(hub().nowMs());
    switch (zr::clickEffect(input)) {
    case zr::ClickEffect::None:
        return;
    case zr::ClickEffect::Keep:
        hub().broadcast(ZRMSG_FOCUS_KEPT, 0, 0);
        return;
    case zr::ClickEffect::Select:
        m_focus.select(person);
        break;
    case zr::ClickEffect::Move:
    case zr::ClickEffect::MoveStream:
        changePersonToFocus(person->pWidget);
        break;
    }
    if (livePerson(person))
        hub().broadcast(ZRMSG_FOCUS_PERSON, person);
}

bool QDlgScreen::changePersonToFocus(CPlayWidget* tile)
{
    tagPersonInfo* person = personOf(tile);
    const tagPersonInfo* before = m_focus.person();
    if (!person || person == before)
        return false;
    const bool streamMoves = before && before->bPreview;
    const bool leavesPin = before && (before->bAllLook || before->bLockLook);
    const bool pinnedForAll = before && before->bAllLook;
    const QByteArray oldId = before ? before->userID.toLocal8Bit() : QByteArray();
    const QByteArray newId = person->userID.toLocal8Bit();
    setFocusPerson(person, 0);
    if (streamMoves) {
        hub().broadcast(ZRMSG_FOCUS_STREAM, reinterpret_cast<quintptr>(newId.constData()), 1);
        hub().broadcast(ZRMSG_FOCUS_STREAM, reinterpret_cast<quintptr>(oldId.constData()), 0);
    }
    if (leavesPin)
        onLookToast(pinnedForAll);
    return true;
}

void QDlgScreen::onLeftBtnDBClick(CPlayWidget* tile)
{
    tagPersonInfo* clicked = personOf(tile);
    const int mode = hub().curScreenMode();
    hub().broadcast(ZRMSG_DBLCLICK_LAYOUT, layoutClass(mode), 0);
    tagPersonInfo* person = livePerson(clicked);
    // Pages that turn by themselves leave no time to click, and would turn under a maximised tile.
    const bool blocked = hub().settings.layoutFollow || pollingActive();
    if (!person || blocked || zr::isSpeakerToolMode(mode))
        return;
    if (const tagPersonInfo* speaker = m_focus.person()) {
        qDebug() << "bIsShare:" << speaker->bShare;
        if (person != speaker) {
            if (!speaker->bShare)
                onPlayWidgetLBtnClick(tile);
            return;
        }
        qDebug() << "pFocusPerson->pWidget:" << static_cast<void*>(speaker->pWidget)
                 << ",pPlayWnd:" << static_cast<void*>(tile);
    }
    if (m_vecCurPersons.size() < kMinCountToMaximise)
        return;
    const bool maximised = mode == eLayoutShare && person == m_share.shown;
    if (maximised)
        return leaveMaximised();
    m_share.maximisedInGallery =
        mode == eLayoutShare && (m_share.maximisedInGallery || !m_share.shown);
    m_share.shown = person;
    setMeetingMode(eLayoutShare);
}

void QDlgScreen::leaveMaximised()
{
    const bool inGallery = m_share.maximisedInGallery;
    m_share.leaveMode();
    setMeetingMode(inGallery ? eLayoutShare
                             : static_cast<eLayoutType>(hub().modeBeforeShareMode()));
}

// --- Small window: the strip beside the speaker, or the speaker tool --------------------------

bool QDlgScreen::isToolInUse() const
{
    return zr::isSpeakerToolMode(hub().curScreenMode()) || m_bSelfShareFloat;
}

void QDlgScreen::floatSpeakTool()
{
    if (!m_bSelfShareFloat || zr::isSpeakerToolMode(hub().curScreenMode()))
        return;
    const int index = zr::floatingSpeaker(speakerKeys(true));
    tagPersonInfo* person =
        m_pSpeakTool && index >= 0 ? m_vecCurPersons[static_cast<std::size_t>(index)] : nullptr;
    if (!person)
        return hideSpeakTool();
    if (!person->pWidget->isShowing()) // else the tile's grade counts
        setPersonStreamType(person, zr::kGradeSmall);
    showSpeakTool(person);
}

bool QDlgScreen::IsBindToSmallWnd(ST_PersonInfo* candidate)
{
    const tagPersonInfo* person = checkedPerson(candidate);
    if (!person || m_bHideSmallWnd)
        return false;
    if (isToolInUse())
        return m_pSpeakTool && m_pSpeakTool->isToolVisible()
               && m_pSpeakTool->boundPerson() == person;
    // Of two speakers neither is in the strip.
    return zr::isSpeakerMode(hub().curScreenMode()) && person->pWidget->isShowing()
           && person->iStreamType == zr::kGradeSmall;
}

bool QDlgScreen::isPersonVisibleInSmallWnd(const QString& userId)
{
    flushLayout();
    return IsBindToSmallWnd(findPerson(userId));
}

int QDlgScreen::GetSmallWndId() const
{
    const bool open = m_pSpeakTool && m_pSpeakTool->isToolVisible();
    return open ? m_pSpeakTool->toolId() : 0;
}

void QDlgScreen::ActivateIntoSmallWnd(ST_PersonInfo* newActivatedPerson,
                                      ST_PersonInfo* oldActivatedPerson)
{
    tagPersonInfo* person = checkedPerson(newActivatedPerson);
    if (!person || person == oldActivatedPerson || person == m_focus.person())
        return;
    zr::VoiceInput input;
    input.mode = hub().curScreenMode();
    input.activation = hub().settings.voiceActivation;
    input.dictated = isLayoutDictated();
    input.chosenSpeaker = m_focus.chosen() != nullptr;
    input.self = person->bSelf;
    switch (zr::voiceEffect(input)) {
    case zr::VoiceEffect::None:
        return;
    case zr::VoiceEffect::Speaker:
        m_focus.suggest(person);
        break;
    case zr::VoiceEffect::SmallWindow:
        break; // the arrangement admits who speaks
    }
    scheduleLayout();
}

void QDlgScreen::onSetHideSmallWnd(bool bHide)
{
    if (m_bHideSmallWnd == bHide)
        return;
    m_bHideSmallWnd = bHide;
    scheduleLayout();
}

int QDlgScreen::showSmallWndWhenRestore(bool bShow)
{
    // While the client is minimised the tool would float over other programs.
    m_bSmallWndMinimised = !bShow;
    scheduleLayout();
    flushLayout();
    return 1;
}

// --- Own share, extended screen ---------------------------------------------------------------

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
    if (bDeviceChange) {
        // A monitor came or went: another primary screen may want other images, and the tool may
        // stand where there is no screen any more.
        hub().getImgPrefix();
        m_bPlaceTool = true;
    }
    scheduleLayout();
}
