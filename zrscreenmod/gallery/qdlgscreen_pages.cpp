// The gallery: pages, the controls that turn them, and pages that turn by themselves.
#include "qdlgscreen.h"

#include "meetingmode.h"
#include "qdlgnovideo.h"
#include "qzrscreenconfig.h"

#include <QDebug>
#include <QKeyEvent>
#include <QWheelEvent>

#include <algorithm>
#include <utility>

namespace {

/// A step of a mouse wheel in the unit of QWheelEvent, eighths of a degree.
constexpr int kWheelStep = 120;
/// Between an arrow and the gallery's edge; a base size.
constexpr int kControlMarginPx = 24;

bool isPageKey(int key)
{
    return key == Qt::Key_PageUp || key == Qt::Key_PageDown || key == Qt::Key_Left
           || key == Qt::Key_Right;
}

} // namespace

// --- Pages ------------------------------------------------------------------------------------

int QDlgScreen::tilesPerPage() const
{
    return zr::tilesPerPage(arrangedMode(), hub().settings.support9EqualCut);
}

int QDlgScreen::pageCount() const
{
    if (!m_bJoinMeetingFinish)
        return 0; // nothing is arranged
    const int paged = static_cast<int>(m_vecCurPersons.size()) - zr::largeTiles(arrangedMode());
    return zr::pageCount(paged, tilesPerPage());
}

void QDlgScreen::clampPage()
{
    const int perPage = tilesPerPage();
    if (perPage == 0)
        return; // the page comes back with an arrangement that has some
    const int mode = arrangedMode();
    const int count = static_cast<int>(m_vecCurPersons.size());
    if (zr::isStripMode(mode))
        m_iPage = zr::clampPageAroundSpeaker(m_iPage, count, m_iSpeaker);
    else
        m_iPage = zr::clampPage(m_iPage, count - zr::largeTiles(mode), perPage);
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
    if (!m_pageGate.accept(m_pageClock()))
        return false;
    flushLayout();
    turnToPage(zr::nextPage(m_iPage, pageCount(), bWrap));
    return true;
}

bool QDlgScreen::pagePre()
{
    if (!m_pageGate.accept(m_pageClock()))
        return false;
    flushLayout();
    turnToPage(zr::previousPage(m_iPage, pageCount()));
    return true;
}

// --- What the user turns them with ------------------------------------------------------------

void QDlgScreen::scalePageControls()
{
    m_pageControls.rescale(hub().imgPrefix(), hub().scaled(kControlMarginPx));
}

void QDlgScreen::updatePageControls()
{
    m_pageControls.show(m_iPage, pageCount());
}

void QDlgScreen::updateNoVideo()
{
    const bool nobody = m_bJoinMeetingFinish && m_vecSorted.empty() && !m_roster.isEmpty();
    if (nobody == (m_pNoVideo != nullptr))
        return;
    if (nobody) {
        m_pNoVideo = new QDlgNoVideo(this);
        m_pNoVideo->setGeometry(rect());
    } else {
        delete std::exchange(m_pNoVideo, nullptr);
    }
}

void QDlgScreen::onClickPageCtl(QWidget* control)
{
    if (m_pageControls.isBack(control))
        pagePre();
    else if (m_pageControls.isForward(control))
        pageNext(true);
}

void QDlgScreen::wheelEvent(QWheelEvent* event)
{
    // A touchpad turns by fractions of a step.
    m_iWheelRest += event->angleDelta().y();
    const int steps = m_iWheelRest / kWheelStep;
    m_iWheelRest %= kWheelStep;
    if (steps != 0)
        onWheel(steps);
    event->accept();
}

void QDlgScreen::onWheel(int iStep)
{
    if (iStep > 0)
        pagePre();
    else if (iStep < 0)
        pageNext(false);
}

void QDlgScreen::keyPressEvent(QKeyEvent* event)
{
    if (isPageKey(event->key()) && pageCount() > 1)
        onKey(event->key());
    else
        event->ignore(); // a dialog would close itself on Escape: other keys are the frame's
}

void QDlgScreen::onKey(int iKey)
{
    if (!isPageKey(iKey))
        return;
    if (iKey == Qt::Key_PageUp || iKey == Qt::Key_Left)
        pagePre();
    else
        pageNext(false);
}

// --- Pages that turn by themselves ------------------------------------------------------------

bool QDlgScreen::pollingActive() const
{
    return hub().settings.pollingOpen && tilesPerPage() > 0;
}

void QDlgScreen::onOpenLayoutPoll()
{
    if (m_iPollTimerId != 0)
        killTimer(m_iPollTimerId);
    m_iPollTimerId = 0;
    m_iPollTick = 0;
    if (pollingActive())
        scheduleLayout(); // which starts the timer where there is something to turn
    else
        emit hub().notifyDisplayOrder(false);
}

void QDlgScreen::TestShowPoll(std::vector<tagPersonInfo*>& persons)
{
    // The speakers stay, at the head of what is shown, while the strip turns.
    std::vector<tagPersonInfo*> large;
    for (const int index : {m_iSpeaker, zr::largeTiles(arrangedMode()) > 1 ? m_iNextSpeaker : -1}) {
        if (index >= 0)
            large.push_back(persons[static_cast<std::size_t>(index)]);
    }
    const auto isLarge = [&large](const tagPersonInfo* person) {
        return std::find(large.begin(), large.end(), person) != large.end();
    };
    persons.erase(std::remove_if(persons.begin(), persons.end(), isLarge), persons.end());

    const int perPage = tilesPerPage();
    const int count = static_cast<int>(persons.size());
    const int first = zr::pollPage(m_iPollTick, zr::pageCount(count, perPage)) * perPage;
    persons.erase(persons.begin() + std::min(first + perPage, count), persons.end());
    persons.erase(persons.begin(), persons.begin() + first);
    persons.insert(persons.begin(), large.begin(), large.end());
    m_iSpeaker = m_iSpeaker >= 0 ? 0 : -1;
    m_iNextSpeaker = m_iSpeaker >= 0 ? chooseNextSpeaker(m_iSpeaker) : -1;
    m_iPage = 0;
    for (const tagPersonInfo* person : persons)
        qDebug() << "xxx userID:" << person->userID
                 << ",pWidget:" << static_cast<void*>(person->pWidget)
                 << ",qstrUserName:" << person->userName;
}

void QDlgScreen::updatePollTimer()
{
    const int paged = static_cast<int>(m_vecSorted.size()) - zr::largeTiles(arrangedMode());
    const bool due = pollingActive() && zr::pageCount(paged, tilesPerPage()) > 1;
    if (due == (m_iPollTimerId != 0))
        return;
    if (m_iPollTimerId != 0)
        killTimer(m_iPollTimerId);
    m_iPollTimerId =
        due ? startTimer(zr::pollPeriodMs(hub().settings.pollingPeriodS), Qt::CoarseTimer) : 0;
}
