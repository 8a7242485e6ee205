// The gallery: who is in the meeting.
#include "qdlgscreen.h"

#include "cplaywidget.h"
#include "meetingmode.h"
#include "paging.h"
#include "personorder.h"
#include "platform.h"
#include "qzrscreenconfig.h"
#include "speaktool.h"

#include <QCoreApplication>
#include <QDebug>
#include <QThread>

#include <algorithm>

namespace {

/// A retired participant that a thread still works on is looked at again after this time.
constexpr int kRetireRetryMs = 5;

zr::PersonKey personKey(const tagPersonInfo* person)
{
    return {person->bSelf, person->iRoteType, person->joinTime};
}

quint64 nextSerial()
{
    static std::atomic<quint64> last{0};
    return ++last;
}

} // namespace

tagPersonInfo* QDlgScreen::livePerson(const void* pPerson) const
{
    const auto owned = m_mapOwned.find(pPerson);
    return owned == m_mapOwned.end() ? nullptr : owned->second.get();
}

tagPersonInfo* QDlgScreen::findPerson(const QString& userId) const
{
    return m_mapByUserId.value(userId, nullptr);
}

void QDlgScreen::insertByJoinTime(tagPersonInfo* person)
{
    const int position = zr::insertPosition(m_vecPerson, person->joinTime, personKey);
    m_vecPerson.insert(m_vecPerson.begin() + position, person);
}

tagPersonInfo* QDlgScreen::AddPerson(const QString& userId, const QString& userName,
                                     qint64 joinTime, int hostInt, void* pUserData)
{
    if (tagPersonInfo* present = findPerson(userId))
        return present;

    auto record = std::make_unique<tagPersonInfo>();
    tagPersonInfo* person = record.get();
    person->serial = nextSerial();
    person->userID = userId;
    person->userName = userName;
    person->bShare = isShareScreenId(userId);
    person->joinTime = zr::uniqueJoinTime(m_setJoinTime, joinTime);
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

    m_mapOwned.emplace(person, std::move(record));
    m_mapByUserId.insert(userId, person);
    m_setJoinTime.insert(person->joinTime);
    hub().addLivePerson(person);
    m_iShareCount += person->bShare;
    insertByJoinTime(person);
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
    if (!m_vecPerson.empty()) // a host may have emptied the gallery from inside a message
        startCheckTimer();
    qDebug() << "onModAddPerson finish, userName:" << person->userName
             << ",pWidget:" << static_cast<void*>(person->pWidget);
}

tagPersonInfo* QDlgScreen::firstShare() const
{
    if (m_iShareCount == 0)
        return nullptr;
    if (tagPersonInfo* sponsored = findPerson(sponsoredShareId(hub().shareSponsor())))
        return sponsored;
    const auto isShare = [](const tagPersonInfo* p) { return p->bShare; };
    const auto share = std::find_if(m_vecPerson.begin(), m_vecPerson.end(), isShare);
    return share == m_vecPerson.end() ? nullptr : *share;
}

bool QDlgScreen::isGoneForAll(const void* pPerson) const
{
    // A signal of the hub's reaches every gallery: one of them tells for all.
    const QDlgScreen* teller = sender() == &hub() ? hub().m_pDlgScreen : nullptr;
    return pPerson && (!teller || teller == this)
           && !hub().isLivePerson(static_cast<const tagPersonInfo*>(pPerson));
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

void QDlgScreen::leaveShare()
{
    if (hub().curScreenMode() == eLayoutShare && !m_pShareScreenPerson)
        m_pShareScreenPerson = firstShare();
    // As long as the meeting has a share, on whichever screen, its arrangement stays.
    if (!hub().hasLiveShare())
        setMeetingMode(static_cast<eLayoutType>(hub().modeBeforeFirstShare()));
}

bool QDlgScreen::DelPerson(tagPersonInfo* person)
{
    if (!person)
        return true;
    qDebug() << "DelPerson, userName:" << person->userName << ",userID:" << person->userID;
    const bool isShare = person->bShare;
    const bool wasFocus = person == m_pFocusPerson;
    const bool wasMaximised =
        !isShare && person == m_pShareScreenPerson && hub().curScreenMode() == eLayoutShare;
    const bool wasInTool = !isShare && zr::isSpeakerToolMode(hub().curScreenMode()) && m_pSpeakTool
                           && m_pSpeakTool->boundPerson() == person;
    // A host that has the stream open must close it; nobody opens the local user's or a share's.
    if (person->bPreview && !person->bSelf)
        hub().broadcast(ZRMSG_PERSON_REMOVED, person);
    if (!livePerson(person))
        return true; // the host deleted it again from inside the message
    if (m_iLookMode == eLayoutShare && (person->bAllLook || person->bLockLook))
        m_iLookMode = eLayoutSpeakerRight; // there is nothing to maximise once the pin has gone
    if (wasFocus && !isShare && person->bLockLook)
        setMeetingMode(static_cast<eLayoutType>(m_iLookMode));
    if (m_pMorePerson == person) {
        m_pMorePerson = nullptr;
        hub().broadcast(ZRMSG_MORE_MENU_CLOSED, 0, 0);
    }
    if (!livePerson(person))
        return true;
    forgetPerson(person);
    retirePerson(person);
    if (isShare)
        leaveShare();
    else if (wasMaximised)
        leaveMaximised();

    m_iPage =
        zr::pageAfterRemoval(hub().curScreenMode(), m_iPage, static_cast<int>(m_vecPerson.size()));
    if (m_vecPerson.empty()) {
        clearGallery();
        if (!hub().hasLivePersons()) // else the mode is another screen's as well
            hub().setCurScreenMode(eLayoutEqualCut);
    } else if (wasInTool && !firstShare()) {
        setMeetingMode(static_cast<eLayoutType>(m_iLookMode)); // which asks for a new order
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
    // Every gallery hears of it; the participant is one's.
    if (tagPersonInfo* person = checkedPerson(pPerson))
        DelPerson(person);
}

void QDlgScreen::forgetPerson(const tagPersonInfo* person)
{
    for (tagPersonInfo** slot :
         {&m_pFocusPerson, &m_pAutoFocusPerson, &m_pPreFocusPerson, &m_pSelectedPerson,
          &m_pShareScreenPerson, &m_pMorePerson, &m_pVoicePerson, &m_pPreVoicePerson}) {
        if (*slot == person)
            *slot = nullptr;
    }
    const auto remove = [person](std::vector<tagPersonInfo*>& list) {
        list.erase(std::remove(list.begin(), list.end(), person), list.end());
    };
    // The tool stays where it is, maybe in the user's hand: the next arrangement has somebody else
    // for it, or hides it.
    if (m_pSpeakTool && m_pSpeakTool->boundPerson() == person)
        m_pSpeakTool->bindPerson(nullptr);
    remove(m_vecPerson);
    remove(m_vecSorted);
    remove(m_vecCurPersons);
}

void QDlgScreen::retirePerson(tagPersonInfo* person)
{
    hub().removeLivePerson(person);
    m_setJoinTime.erase(person->joinTime);
    m_mapByUserId.remove(person->userID);
    const bool isShare = person->bShare;
    if (isShare)
        --m_iShareCount;
    m_setNamedShares.erase(person);
    const auto owned = m_mapOwned.find(person);
    CPlayWidget* tile = person->pWidget;
    tile->disconnect(this);
    tile->HidePlay();
    // The record goes behind every event that was queued with its address, and behind the event
    // that is under way: the deletion may have come from a click on the tile itself.
    m_vecRetired.push_back({std::move(owned->second), tile});
    m_mapOwned.erase(owned);
    if (isShare) // whose name others may show
        emit hub().sigRefreshPlayDlg();
    QCoreApplication::postEvent(this, new QEvent(kFreeRetiredEvent), Qt::LowEventPriority);
}

void QDlgScreen::freeRetired()
{
    if (m_vecRetired.empty())
        return;
    if (hub().broadcastDepth() > 0) {
        // The host runs a loop of its own from inside a message, maybe of the very tile.
        m_retireTimer.start(kRetireRetryMs, this);
        return;
    }
    const auto inUse = [](const RetiredPerson& retired) {
        return retired.record->pins.load(std::memory_order_acquire) > 0;
    };
    const auto unused = std::partition(m_vecRetired.begin(), m_vecRetired.end(), inUse);
    for (auto it = unused; it != m_vecRetired.end(); ++it)
        delete it->tile;
    m_vecRetired.erase(unused, m_vecRetired.end());
    if (!m_vecRetired.empty())
        m_retireTimer.start(kRetireRetryMs, this);
}

void QDlgScreen::clearGallery()
{
    while (!m_vecPerson.empty()) {
        tagPersonInfo* person = m_vecPerson.back();
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
    const bool wasMaximised = m_pShareScreenPerson && !m_pShareScreenPerson->bShare;
    clearGallery();
    static_cast<MeetingState&>(*this) = {};
    nameWhoSpeaks();
    // Messages from here on. Screens share a meeting: it ends with the last participant.
    if (!hub().hasLivePersons())
        hub().endMeeting();
    else if (wasMaximised)
        leaveMaximised();
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
            m_setNamedShares.insert(person);
    }
    qDebug() << "xxx updatePersonInfo, userName:" << person->userName << ",bSelf:" << bSelf
             << ",iRoteType:" << iRoteType;
    updatePersonDisplayInfo(person);
    m_vecPerson.erase(std::find(m_vecPerson.begin(), m_vecPerson.end(), person));
    insertByJoinTime(person);
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
