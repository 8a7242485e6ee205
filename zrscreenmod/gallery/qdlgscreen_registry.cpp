// The gallery: who is in the meeting.
#include "qdlgscreen.h"

#include "cplaywidget.h"
#include "meetingmode.h"
#include "moderules.h"
#include "paging.h"
#include "platform.h"
#include "qzrscreenconfig.h"
#include "speaktool.h"

#include <QCoreApplication>
#include <QDebug>
#include <QThread>

#include <algorithm>

tagPersonInfo* QDlgScreen::AddPerson(const QString& userId, const QString& userName,
                                     qint64 joinTime, int hostInt, void* pUserData)
{
    if (tagPersonInfo* present = findPerson(userId))
        return present;

    auto record = std::make_unique<tagPersonInfo>();
    tagPersonInfo* person = record.get();
    person->userID = userId;
    person->userName = userName;
    person->bShare = isShareScreenId(userId);
    person->joinTime = joinTime;
    person->iHostInt = hostInt;
    person->pUserData = pUserData;
    person->dwLastFrameTick = platform::tickMs();

    auto* tile = new CPlayWidget(this, false);
    connect(tile, &CPlayWidget::mouseLDClick, this, &QDlgScreen::onLeftBtnDBClick);
    connect(tile, &CPlayWidget::notifyPlayStatusChange, this, &QDlgScreen::onPlayStatusChange);
    connect(tile, &CPlayWidget::mouseLClick, this, &QDlgScreen::onPlayWidgetLBtnClick);
    if (person->bShare) {
        // Queued behind the tile's own slot, which places the picture.
        connect(
            tile, &CPlayWidget::notifyViewCenter, this, [this] { shareRect(); },
            Qt::QueuedConnection);
    }
    tile->SetPersonInfo(person, false);
    person->pWidget = tile;

    m_roster.enter(std::move(record));
    hub().addLivePerson(person);
    onModAddPerson(person);
    return person;
}

void QDlgScreen::onModAddPerson(void* pPerson)
{
    tagPersonInfo* person = checkedPerson(pPerson);
    if (!person)
        return;
    if (person->bShare)
        enterShare(person);
    scheduleLayout();
    testHideMoreMenu();
    if (!m_roster.isEmpty()) // a host may have emptied the gallery from inside a message
        startCheckTimer();
    qDebug() << "onModAddPerson finish, userName:" << person->userName
             << ",pWidget:" << static_cast<void*>(person->pWidget);
}

tagPersonInfo* QDlgScreen::firstShare() const
{
    return m_roster.firstShare(hub().shareSponsor());
}

bool QDlgScreen::isGoneForAll(const void* pPerson) const
{
    // A signal of the hub's reaches every gallery: one of them tells for all.
    const QDlgScreen* teller = sender() == &hub() ? hub().m_pDlgScreen : nullptr;
    return pPerson && (!teller || teller == this) && !hub().livePersons.contains(pPerson);
}

tagPersonInfo* QDlgScreen::checkedPerson(const void* pPerson, const char* ifGone) const
{
    tagPersonInfo* person = livePerson(pPerson);
    if (!person && isGoneForAll(pPerson))
        qDebug() << ifGone;
    return person;
}

void QDlgScreen::enterShare(tagPersonInfo* share)
{
    const int mode = hub().curScreenMode();
    qDebug() << "share screen,userName:" << share->userName << ",userID:" << share->userID
             << ",LockMode:" << hub().modeBeforeFirstShare();
    if (!hub().settings.layoutFollow && !pollingActive())
        setFocusPerson(share,
                       mode == eLayoutSpeakerTool2 ? eLayoutSpeakerTool2 : eLayoutSpeakerTool);
}

void QDlgScreen::applyLeave(zr::LeaveEffect effect)
{
    switch (effect) {
    case zr::LeaveEffect::None:
        break;
    case zr::LeaveEffect::NextShare:
        if (hub().curScreenMode() == eLayoutShare && !m_share.shown)
            m_share.shown = firstShare();
        break;
    case zr::LeaveEffect::BeforeShare:
        setMeetingMode(static_cast<eLayoutType>(hub().modeBeforeFirstShare()));
        break;
    case zr::LeaveEffect::BeforeMaximised:
        leaveMaximised();
        break;
    case zr::LeaveEffect::AfterPin:
        setMeetingMode(static_cast<eLayoutType>(m_iLookMode));
        break;
    }
}

bool QDlgScreen::DelPerson(tagPersonInfo* person)
{
    if (!person)
        return true;
    qDebug() << "DelPerson, userName:" << person->userName << ",userID:" << person->userID;
    zr::LeaveInput leaving;
    leaving.share = person->bShare;
    leaving.maximised = person == m_share.shown && hub().curScreenMode() == eLayoutShare;
    leaving.inTool = zr::isSpeakerToolMode(hub().curScreenMode()) && m_pSpeakTool
                     && m_pSpeakTool->boundPerson() == person;
    const bool wasFocus = person == m_focus.person();
    // A host that has the stream open must close it; nobody opens the local user's or a share's.
    if (person->bPreview && !person->bSelf)
        hub().broadcast(ZRMSG_PERSON_REMOVED, person);
    if (!livePerson(person))
        return true; // the host deleted it again from inside the message
    if (person->bAllLook || person->bLockLook)
        m_iLookMode = zr::modeAfterPin(m_iLookMode);
    if (wasFocus && !person->bShare && person->bLockLook)
        setMeetingMode(static_cast<eLayoutType>(m_iLookMode));
    if (m_pMorePerson == person) {
        m_pMorePerson = nullptr;
        hub().broadcast(ZRMSG_MORE_MENU_CLOSED, 0, 0);
    }
    if (!livePerson(person))
        return true;
    forgetPerson(person);
    retirePerson(person);
    leaving.otherShare = hub().hasLiveShare(); // on whichever screen
    leaving.last = m_roster.isEmpty();
    applyLeave(zr::leaveEffect(leaving));

    const int left = static_cast<int>(m_roster.all().size());
    m_iPage = zr::pageAfterRemoval(hub().curScreenMode(), m_iPage, left);
    if (m_roster.isEmpty()) {
        clearGallery();
        if (hub().livePersons.isEmpty()) // else the mode is another screen's as well
            hub().setCurScreenMode(eLayoutEqualCut);
    } else {
        qDebug() << "notifyDisplayOrder";
        emit hub().notifyDisplayOrder(false);
    }
    return true;
}

void QDlgScreen::onModDelPerson(void* pPerson)
{
    if (!pPerson) {
        qDebug() << "onModDelPerson<=0";
        return;
    }
    if (tagPersonInfo* person = checkedPerson(pPerson))
        DelPerson(person);
}

void QDlgScreen::forgetPerson(const tagPersonInfo* person)
{
    m_focus.forget(person);
    m_voices.forget(person);
    m_share.forget(person);
    if (m_pMorePerson == person)
        m_pMorePerson = nullptr;
    const auto remove = [person](std::vector<tagPersonInfo*>& list) {
        list.erase(std::remove(list.begin(), list.end(), person), list.end());
    };
    // The tool stays where it is, maybe in the user's hand: the next arrangement has somebody else
    // for it, or hides it.
    if (m_pSpeakTool && m_pSpeakTool->boundPerson() == person)
        m_pSpeakTool->bindPerson(nullptr);
    remove(m_vecSorted);
    remove(m_vecCurPersons);
}

void QDlgScreen::retirePerson(tagPersonInfo* person)
{
    hub().livePersons.remove(person);
    CPlayWidget* tile = person->pWidget;
    tile->disconnect(this);
    tile->HidePlay();
    // The record goes behind every event that was queued with its address, and behind the event
    // that is under way: the deletion may have come from a click on the tile itself.
    const std::shared_ptr<tagPersonInfo> record = m_roster.leave(person);
    m_reaper.add(record->pins, [record, tile] { delete tile; });
    if (person->bShare) // whose name others may show
        emit hub().sigRefreshPlayDlg();
    QCoreApplication::postEvent(this, new QEvent(kFreeRetiredEvent), Qt::LowEventPriority);
}

void QDlgScreen::clearGallery()
{
    while (!m_roster.isEmpty()) {
        tagPersonInfo* person = m_roster.all().back();
        forgetPerson(person);
        retirePerson(person);
    }
    killTimers();
    hideSpeakTool();
    m_iPage = 0;
    updatePageControls();
    updateNoVideo();
}

int QDlgScreen::ProcessExitMeeting()
{
    qDebug() << "QDlgScreen::ProcessExitMeeting()";
    QCoreApplication::removePostedEvents(this, kLayoutEvent);
    m_bLayoutScheduled = false;
    zr::LeaveInput leaving;
    leaving.share = m_roster.shareCount() > 0;
    // Who was maximised in the gallery of that mode leaves the mode itself as it is.
    leaving.maximised = m_share.isMaximised() && !m_share.maximisedInGallery;
    leaving.last = true;
    clearGallery();
    static_cast<MeetingState&>(*this) = {};
    nameWhoSpeaks();
    // Messages from here on. Screens share a meeting: it ends with the last participant.
    leaving.otherShare = hub().hasLiveShare();
    if (hub().livePersons.isEmpty())
        hub().endMeeting();
    else
        applyLeave(zr::leaveEffect(leaving));
    shareRect(); // a share at the same place in the next meeting is news to the host
    return 1;
}

void QDlgScreen::setJoinMeetingFinish(bool bFinish)
{
    m_bJoinMeetingFinish = bFinish;
    buildDisplayList();
    if (bFinish)
        emit hub().notifyDisplayOrder(false);
    for (const tagPersonInfo* person : m_vecCurPersons)
        qDebug() << "\tsetJoinMeetingFinish userID:" << person->userID
                 << "\tuserName:" << person->userName << "\t\tjoinTime:" << person->joinTime;
}

bool QDlgScreen::updatePersonInfo(void* pPerson, bool bSelf, int iRoteType, const QString& name,
                                  int roleExtra)
{
    tagPersonInfo* person = checkedPerson(pPerson);
    if (!person)
        return false;
    person->bSelf = bSelf;
    person->bLocalVideo = bSelf && !person->bShare;
    person->iRoteType = iRoteType;
    person->iRoleExtra = roleExtra;
    if (!name.isEmpty()) {
        hub().setPersonName(person, name);
        if (person->bShare)
            m_share.named.insert(person);
    }
    qDebug() << "xxx updatePersonInfo, userName:" << person->userName << ",bSelf:" << bSelf
             << ",iRoteType:" << iRoteType;
    updatePersonDisplayInfo(person);
    m_roster.reorder(person);
    qDebug() << "reposPlayWnd, userName:" << person->userName;
    scheduleLayout();
    return true;
}

void QDlgScreen::onModPersonInfo(void* pPerson, bool bSelf, int iRoleType, QString qstrName,
                                 int iIdentity)
{
    updatePersonInfo(pPerson, bSelf, iRoleType, qstrName, iIdentity);
}

void QDlgScreen::onNotifyUpdateUserInfo(void* pPlayHdl, void* pPerson)
{
    const tagPersonInfo* person = checkedPerson(pPerson);
    if (!pPlayHdl || !person)
        return;
    hub().broadcast(ZRMSG_PERSON_INFO_UPDATED, reinterpret_cast<quintptr>(pPlayHdl),
                    static_cast<long long>(reinterpret_cast<qintptr>(person->pUserData)));
}
