// The gallery: arranging the tiles.
#include "qdlgscreen.h"

#include "cplaywidget.h"
#include "meetingmode.h"
#include "paging.h"
#include "qzrscreenconfig.h"

#include <QCoreApplication>
#include <QDebug>

#include <algorithm>
#include <utility>

namespace {

/// Streams of invisible participants are closed this long after an arrangement, so that a page
/// that is turned back soon costs the host nothing.
constexpr int kMuteDelayMs = 1000;
/// Page turns closer to each other than this are one.
constexpr int kPageTurnMs = 400;

} // namespace

void QDlgScreen::scheduleLayout()
{
    if (m_bLayoutScheduled)
        return;
    m_bLayoutScheduled = true;
    QCoreApplication::postEvent(this, new QEvent(kLayoutEvent));
}

void QDlgScreen::flushLayout()
{
    if (m_bLayoutScheduled)
        reLayout();
}

void QDlgScreen::reLayout()
{
    if (m_bInLayout) {
        // From inside a message of this arrangement the host resized the dialog, or ran a loop of
        // its own that took the event of the next arrangement.
        m_bLayoutAgain = true;
        return;
    }
    m_bLayoutScheduled = false;
    if (width() < zr::kMinLayoutWidthPx || !m_bJoinMeetingFinish)
        return;
    const int mode = hub().curScreenMode();
    m_bInLayout = true;
    buildDisplayList();
    if (zr::isGalleryMode(mode) && m_pFocusPerson && hub().gallery.focusPerson != m_pFocusPerson)
        dropFocus();
    if (!zr::isArrangedMode(mode))
        hideAllTiles();
    else if (mode == eLayoutEqualCut && hub().settings.support9EqualCut)
        reLayout9EqualCut();
    else
        reLayoutEqualCut();
    m_bInLayout = false;
    finishLayout();
    if (std::exchange(m_bLayoutAgain, false)) {
        m_bLayoutScheduled = false;
        scheduleLayout();
    }
}

void QDlgScreen::buildDisplayList()
{
    m_vecCurPersons = m_vecPerson;
    if (hub().settings.noVideoFilter) {
        m_vecCurPersons.erase(
            std::remove_if(m_vecCurPersons.begin(), m_vecCurPersons.end(),
                           [this](const tagPersonInfo* p) { return !passesVideoFilter(p); }),
            m_vecCurPersons.end());
    }
    m_iPage = zr::clampPage(m_iPage, static_cast<int>(m_vecCurPersons.size()), tilesPerPage());
}

int QDlgScreen::tilesPerPage() const
{
    const bool nine = hub().curScreenMode() == eLayoutEqualCut && hub().settings.support9EqualCut;
    return nine ? zr::kNineCutTiles : zr::kEqualCutTiles;
}

bool QDlgScreen::passesVideoFilter(const tagPersonInfo* person) const
{
    return person->bPreview || person->bSelf || isShareScreenId(person->userID);
}

zr::LayoutInput QDlgScreen::layoutInput() const
{
    return {size(), static_cast<int>(m_vecCurPersons.size()), m_iPage, hub().curScreenMode()};
}

void QDlgScreen::reLayoutEqualCut()
{
    logDisplayList();
    applyPlacements("equalcut person i:", zr::equalCutPlacements(layoutInput()));
}

void QDlgScreen::reLayout9EqualCut()
{
    logDisplayList();
    applyPlacements("equalcut person i:", zr::nineCutPlacements(layoutInput()));
}

void QDlgScreen::logDisplayList()
{
    // Only the places that somebody else has taken since they were logged: with a thousand
    // participants the whole list would cost more than the arrangement.
    m_vecLoggedSerials.resize(m_vecCurPersons.size());
    for (std::size_t i = 0; i < m_vecCurPersons.size(); ++i) {
        const tagPersonInfo* person = m_vecCurPersons[i];
        if (std::exchange(m_vecLoggedSerials[i], person->serial) != person->serial)
            qDebug() << "xx i:" << i << ",userName:" << person->userName
                     << "0pWidget:" << static_cast<void*>(person->pWidget);
    }
}

void QDlgScreen::applyPlacements(const char* prefix,
                                 const std::vector<zr::TilePlacement>& placements)
{
    // Showing a tile sends a message, from inside which the host may delete participants: every
    // step asks again who is still there.
    std::vector<tagPersonInfo*> persons;
    persons.reserve(placements.size());
    for (const zr::TilePlacement& placement : placements)
        persons.push_back(m_vecCurPersons[static_cast<std::size_t>(placement.index)]);
    hideUnplacedTiles({persons.begin(), persons.end()});

    for (std::size_t i = 0; i < placements.size(); ++i) {
        tagPersonInfo* person = livePerson(persons[i]);
        if (!person)
            continue;
        CPlayWidget* tile = person->pWidget;
        const QRect& rect = placements[i].rect;
        qDebug() << prefix << i << ",userName:" << person->userName
                 << "pWidget:" << static_cast<void*>(tile) << "Geometry:" << rect;
        setPersonStreamType(person, placements[i].grade);
        if (rect.isEmpty()) {
            tile->HidePlay();
            continue;
        }
        if (tile->geometry() != rect)
            tile->setGeometry(rect);
        tile->ShowPlay();
    }
}

void QDlgScreen::hideAllTiles()
{
    hideUnplacedTiles({});
}

void QDlgScreen::hideUnplacedTiles(const std::set<const tagPersonInfo*>& placed)
{
    // Tiles that keep their place are not hidden in between: the picture must not flicker when
    // somebody is renamed.
    for (const tagPersonInfo* person : m_vecPerson) {
        if (placed.count(person) == 0)
            person->pWidget->HidePlay();
    }
}

void QDlgScreen::finishLayout()
{
    testHideMoreMenu();
    changePersonVideoMute(false);
    if (m_iMuteTimerId != 0)
        killTimer(m_iMuteTimerId);
    m_iMuteTimerId = startTimer(kMuteDelayMs, Qt::CoarseTimer);
    shareRect();
}

bool QDlgScreen::setMeetingMode(eLayoutType mode)
{
    qDebug() << "xxxxxd setMeetingMode:" << static_cast<int>(mode);
    if (hub().curScreenMode() == eLayoutShare && mode != eLayoutShare)
        m_pShareScreenPerson = nullptr;
    hub().setCurScreenMode(mode);
    scheduleLayout();
    if (mode != eLayoutShare) {
        qDebug() << "notifyDisplayOrder";
        emit hub().notifyDisplayOrder(false);
    }
    return true;
}

void QDlgScreen::onMeetingMode(int iMode)
{
    qDebug() << "xxxxxxxx onMeetingMode iMode:" << iMode;
    setMeetingMode(static_cast<eLayoutType>(iMode));
}

void QDlgScreen::onModSwitchMode(int eType)
{
    onMeetingMode(eType);
}

void QDlgScreen::onDisplayOrder(bool bKeepFocusPerson)
{
    Q_UNUSED(bKeepFocusPerson)
    qDebug() << "onDisplayOrder0 m_vecPerson.size():" << m_vecPerson.size();
    scheduleLayout();
}

// --- Pages ------------------------------------------------------------------------------------

bool QDlgScreen::acceptPageTurn()
{
    if (m_pageTurnClock.isValid() && m_pageTurnClock.elapsed() < kPageTurnMs)
        return false;
    m_pageTurnClock.start();
    return true;
}

void QDlgScreen::turnToPage(int page)
{
    if (page == m_iPage)
        return;
    m_iPage = page;
    reLayout();
}

bool QDlgScreen::pageNext(bool bWrap)
{
    if (!acceptPageTurn())
        return false;
    const int pages = zr::pageCount(static_cast<int>(m_vecCurPersons.size()), tilesPerPage());
    if (m_iPage + 1 < pages)
        turnToPage(m_iPage + 1);
    else if (bWrap)
        turnToPage(0);
    return true;
}

bool QDlgScreen::pagePre()
{
    if (!acceptPageTurn())
        return false;
    if (m_iPage > 0)
        turnToPage(m_iPage - 1);
    return true;
}

void QDlgScreen::SetCustomizeSorting(std::map<int, std::string> grpSorting)
{
    m_mapCustomizedPersons.clear();
    for (const auto& [position, userId] : grpSorting)
        m_mapCustomizedPersons.emplace(position, QString::fromStdString(userId));
    qDebug() << "SetCustomizeSorting, m_mapCustomizedPersons size:"
             << m_mapCustomizedPersons.size();
}

// --- What is where ----------------------------------------------------------------------------

bool QDlgScreen::isTileVisible(const tagPersonInfo* person) const
{
    return person->pWidget->isShowing();
}

bool QDlgScreen::isPersonVisible(const QString& userId)
{
    flushLayout();
    const tagPersonInfo* person = findPerson(userId);
    return person && isTileVisible(person);
}

QRect QDlgScreen::shareRect()
{
    const tagPersonInfo* share = m_pShareScreenPerson;
    if (!share)
        share = firstShare();
    QRect rect;
    // A tile without a picture yet has no rectangle to tell.
    const bool shown = share && isTileVisible(share) && share->pWidget->hasVideoRect();
    if (shown) {
        rect = QRect(share->pWidget->mapToGlobal(QPoint(0, 0)), share->pWidget->size());
        share->pWidget->MapVideoRect(rect);
    }
    if (rect != m_rcShareReported) {
        m_rcShareReported = rect;
        // A participant who was maximised stands in the share's place, and is none.
        const bool isShare = shown && isShareScreenId(share->userID);
        hub().broadcast(ZRMSG_SHARE_RECT_CHANGED, isShare ? 1 : 0, 0);
    }
    return rect;
}

void QDlgScreen::refreshShareTiles()
{
    for (const tagPersonInfo* person : m_vecPerson) {
        if (isShareScreenId(person->userID)) {
            person->pWidget->RefreshPlayInfo();
            person->pWidget->update();
        }
    }
}
