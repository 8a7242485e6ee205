// The gallery: the order in which participants are shown.
#include "qdlgscreen.h"

#include "displayorder.h"
#include "meetingmode.h"
#include "personorder.h"
#include "qzrscreenconfig.h"

#include <QDebug>

#include <algorithm>
#include <utility>

namespace {

/// What can be heard and seen of the participants changes without an arrangement; it is looked at
/// this often.
constexpr int kCheckPeriodMs = 1000;

/// The id of the participant whose screen this is; the other way round than sponsoredShareId.
QString sharerId(const QString& shareId)
{
    const QString prefix = sponsoredShareId({});
    return shareId.mid(shareId.indexOf(prefix) + prefix.size());
}

} // namespace

// --- The display list -------------------------------------------------------------------------

bool QDlgScreen::passesVideoFilter(const tagPersonInfo* person) const
{
    return person->camera.isOn(hub().nowMs()) || person->bSelf || person->bShare
           || person == m_focus.chosen();
}

std::vector<tagPersonInfo*> QDlgScreen::sortedPersons() const
{
    const bool filter = hub().settings.noVideoFilter;
    const qint64 nowMs = hub().nowMs();
    std::vector<tagPersonInfo*> persons;
    std::vector<zr::OrderKey> keys;
    persons.reserve(m_roster.all().size());
    keys.reserve(m_roster.all().size());
    for (tagPersonInfo* person : m_roster.all()) {
        if (filter && !passesVideoFilter(person))
            continue;
        zr::OrderKey key;
        key.share = person->bShare;
        key.host = person->iRoteType == zr::kRoleHost;
        key.self = person->bSelf;
        key.muted = person->bMute;
        key.picture = person->camera.isOn(nowMs);
        key.joinTime = person->joinTime;
        if (!m_mapCustomizedPersons.isEmpty())
            key.customized = m_mapCustomizedPersons.value(person->userID, -1);
        persons.push_back(person);
        keys.push_back(key);
    }
    std::vector<tagPersonInfo*> sorted;
    sorted.reserve(persons.size());
    for (const int index : zr::displayOrder(keys))
        sorted.push_back(persons[static_cast<std::size_t>(index)]);
    return sorted;
}

bool QDlgScreen::SortCurrentPersons(bool bJustTestSorting)
{
    std::vector<tagPersonInfo*> sorted = sortedPersons();
    const bool changed = sorted != m_vecSorted;
    if (bJustTestSorting)
        return changed;
    m_vecSorted = std::move(sorted);
    m_vecCurPersons = m_vecSorted;
    seatLayoutCtrl(m_vecCurPersons);
    for (tagPersonInfo* person : m_vecSorted) {
        if (person->iRoteType == zr::kRoleHost)
            person->bPrePreview = false;
    }
    return changed;
}

void QDlgScreen::nameShares()
{
    if (m_roster.shareCount() == 0)
        return;
    // The caption of a share names who shares.
    const tagPersonInfo* sponsor = findPerson(hub().shareSponsor());
    for (tagPersonInfo* share : m_roster.all()) {
        if (!share->bShare || m_share.named.count(share) != 0)
            continue;
        const tagPersonInfo* sharer = findPerson(sharerId(share->userID));
        if (!sharer)
            sharer = sponsor;
        const QString name = sharer ? sharer->userName : QString();
        if (name == share->userName)
            continue;
        hub().setPersonName(share, name);
        updatePersonDisplayInfo(share);
    }
}

void QDlgScreen::buildDisplayList()
{
    nameShares();
    nameWhoSpeaks(); // who may have been renamed, or have gone
    // What was clicked or chosen in a gallery becomes the speaker, filtered out or not.
    if (m_focus.selected() && zr::isSpeakerMode(arrangedMode()))
        m_focus.choose(m_focus.selected());
    if (std::exchange(m_share.focusDue, false))
        focusOnShare();
    SortCurrentPersons(false);
    chooseSpeakers();
    if (pollingActive())
        TestShowPoll(m_vecCurPersons);
    clampPage();
    presumeCameras();
}

void QDlgScreen::presumeCameras()
{
    // Pages may be skipped, or left again before the host has answered. Who turns out to have a
    // camera on the page that is shown must not pass those before it, of whom nothing is known:
    // they would come to the page in turn, and go once they are known.
    const qint64 nowMs = hub().nowMs();
    const bool pair = zr::largeTiles(arrangedMode()) > 1;
    int before = m_iPage * tilesPerPage();
    for (int i = 0; before > 0 && i < static_cast<int>(m_vecCurPersons.size()); ++i) {
        if (i == m_iSpeaker || (pair && i == m_iNextSpeaker))
            continue; // who is on no page
        m_vecCurPersons[static_cast<std::size_t>(i)]->camera.presumeOn(nowMs);
        --before;
    }
}

void QDlgScreen::chooseSpeakers()
{
    const bool speakers = zr::isSpeakerMode(arrangedMode());
    m_iSpeaker = speakers ? chooseSpeaker() : -1;
    m_iNextSpeaker = m_iSpeaker >= 0 ? chooseNextSpeaker(m_iSpeaker) : -1;
}

void QDlgScreen::onDisplayOrder(bool bKeepFocusPerson)
{
    qDebug() << "onDisplayOrder0 m_vecPerson.size():" << m_roster.all().size();
    if (!bKeepFocusPerson)
        m_share.focusDue = true;
    scheduleLayout(); // which orders the participants
}

// --- Places that the host gives ---------------------------------------------------------------

void QDlgScreen::SetCustomizeSorting(std::map<int, std::string> grpSorting)
{
    m_mapCustomizedPersons.clear();
    for (const auto& [position, userId] : grpSorting) {
        const QString id = QString::fromStdString(userId);
        if (!m_mapCustomizedPersons.contains(id))
            m_mapCustomizedPersons.insert(id, m_mapCustomizedPersons.size());
    }
    qDebug() << "SetCustomizeSorting, m_mapCustomizedPersons size:"
             << m_mapCustomizedPersons.size();
    scheduleLayout();
}

bool QDlgScreen::IsPersonInCustomizeSort(ST_PersonInfo* person)
{
    const tagPersonInfo* live = checkedPerson(person);
    return live && m_mapCustomizedPersons.contains(live->userID);
}

// --- Looking for a new order ------------------------------------------------------------------

void QDlgScreen::startCheckTimer()
{
    if (m_iCheckTimerId != 0)
        return;
    m_iCheckTimerId = startTimer(kCheckPeriodMs, Qt::CoarseTimer);
    if (m_iCheckTimerId == 0)
        qDebug() << "xxxxx cannot startCheckTimer";
}

void QDlgScreen::checkOrder()
{
    // There is no order to compare with before joining, and nothing to be done about another one
    // while the dialog is too narrow for an arrangement.
    if (!m_bJoinMeetingFinish || width() < zr::kMinLayoutWidthPx
        || zr::isSpeakerToolMode(hub().curScreenMode()))
        return;
    if (!SortCurrentPersons(true))
        return;
    qDebug() << "SortCurrentPersons on timer";
    emit hub().notifyDisplayOrder(false);
}

// --- A share and the focus --------------------------------------------------------------------

void QDlgScreen::focusOnShare()
{
    tagPersonInfo* share = firstShare();
    if (!share)
        return;
    if (hub().settings.layoutFollow)
        m_focus.drop();
    else if (!m_focus.person() && !m_focus.selected())
        setFocusPerson(share, 0); // in the mode at hand, whose arrangement is under way
}
