// The gallery: arranging the tiles.
#include "qdlgscreen.h"

#include "cplaywidget.h"
#include "meetingmode.h"
#include "platform.h"
#include "qtparent.h"
#include "qzrscreenconfig.h"
#include "speaktool.h"

#include <QCoreApplication>
#include <QDebug>
#include <QScopedValueRollback>

#include <algorithm>
#include <utility>

namespace {

/// Between the tool and the dialog's edges; a base size.
constexpr int kScreenMarginPx = 24;

/// The speakers, who come before the strip.
int largeCount(const std::vector<zr::TilePlacement>& placements)
{
    return static_cast<int>(
        std::count_if(placements.begin(), placements.end(),
                      [](const zr::TilePlacement& tile) { return tile.grade == zr::kGradeLarge; }));
}

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
    if (width() < zr::kMinLayoutWidthPx)
        return;
    if (m_bJoinMeetingFinish) {
        arrange();
        finishLayout();
    }
    updatePageControls();
    updateNoVideo();
    updatePollTimer();
    if (std::exchange(m_bLayoutAgain, false)) {
        m_bLayoutScheduled = false;
        scheduleLayout();
    }
}

void QDlgScreen::arrange()
{
    const QScopedValueRollback<bool> inLayout(m_bInLayout, true);
    const int mode = hub().curScreenMode();
    if (mode != std::exchange(m_iLaidOutMode, mode))
        m_iPollTick = 0;
    if (zr::isGalleryMode(arrangedMode()))
        m_focus.rest();
    buildDisplayList();
    arrangeTiles();
    floatSpeakTool();
}

int QDlgScreen::arrangedMode() const
{
    // Without a share its mode is the adaptive gallery in every respect, pages included.
    const int mode = hub().curScreenMode();
    return mode == eLayoutShare && !m_share.shown && m_roster.shareCount() == 0 ? eLayoutEqualCut
                                                                                : mode;
}

void QDlgScreen::arrangeTiles()
{
    const int mode = arrangedMode();
    if (!isToolInUse())
        hideSpeakTool();
    switch (mode) {
    case eLayoutEqualCut:
        return hub().settings.support9EqualCut ? reLayout9EqualCut() : reLayoutEqualCut();
    case eLayout6Cut:
        return reLayout6Cut();
    case eLayout8Cut:
        return reLayout8Cut();
    case eLayoutSpeakerTool:
    case eLayoutSpeakerTool2:
        return reLayoutSpeakerTool();
    case eLayoutSpeakerRight:
    case eLayoutSpeakerBottom:
    case eLayoutSpeakerTop:
        return reLayoutSpeaker(static_cast<eLayoutType>(mode));
    case eLayoutSpeaker4:
        return reLayoutSpeaker4();
    case eLayoutShare:
        return reLayoutShare();
    case eLayoutGrid4:
    case eLayoutGrid9:
    case eLayoutGrid16:
        return reLayoutFixedGrid();
    case eLayoutSingle:
        return reLayoutSingle();
    default: // no mode: nothing is shown
        return applyPlacements("", {});
    }
}

// --- The modes --------------------------------------------------------------------------------

zr::LayoutInput QDlgScreen::layoutInput() const
{
    zr::LayoutInput input;
    input.area = size();
    input.count = static_cast<int>(m_vecCurPersons.size());
    input.page = m_iPage;
    input.mode = hub().curScreenMode(); // which decides the grades, also of what it borrows
    input.polling = pollingActive();
    input.speaker = m_iSpeaker;
    input.secondSpeaker = m_iNextSpeaker;
    return input;
}

std::vector<QDlgScreen::PlacedPerson>
QDlgScreen::placed(const std::vector<zr::TilePlacement>& placements) const
{
    std::vector<PlacedPerson> persons;
    persons.reserve(placements.size());
    for (const zr::TilePlacement& placement : placements)
        persons.push_back({m_vecCurPersons[static_cast<std::size_t>(placement.index)],
                           placement.rect, placement.grade});
    return persons;
}

void QDlgScreen::reLayoutEqualCut()
{
    logDisplayList();
    applyPlacements("equalcut person i:", placed(zr::equalCutPlacements(layoutInput())));
}

void QDlgScreen::reLayout9EqualCut()
{
    logDisplayList();
    applyPlacements("equalcut person i:", placed(zr::nineCutPlacements(layoutInput())));
}

void QDlgScreen::reLayout6Cut()
{
    applyPlacements("6cut person i:", placed(zr::sixCutPlacements(layoutInput())));
}

void QDlgScreen::reLayout8Cut()
{
    applyPlacements("8cut person i:", placed(zr::eightCutPlacements(layoutInput())));
}

void QDlgScreen::reLayoutSpeaker(eLayoutType mode)
{
    const char* prefix = "speaker 1  person i:";
    if (mode == eLayoutSpeakerBottom)
        prefix = "speaker 2  person i:";
    else if (mode == eLayoutSpeakerTop)
        prefix = "speaker 3  person i:";
    std::vector<zr::TilePlacement> placements = zr::speakerPlacements(layoutInput());
    if (m_bHideSmallWnd && m_iSpeaker >= 0)
        placements = {zr::aloneCentred(size(), m_iSpeaker)};
    admitVoice(placements, zr::largeTiles(mode));
    applyPlacements(prefix, placed(placements), largeCount(placements));
}

void QDlgScreen::reLayoutSpeaker4()
{
    std::vector<zr::TilePlacement> placements = zr::speaker4Placements(layoutInput());
    const int large = zr::largeTiles(eLayoutSpeaker4);
    if (m_bHideSmallWnd)
        placements.resize(std::min(placements.size(), static_cast<std::size_t>(large)));
    admitVoice(placements, large);
    applyPlacements("speaker 4  person i:", placed(placements), largeCount(placements));
}

void QDlgScreen::reLayoutShare()
{
    if (!m_share.shown)
        m_share.shown = firstShare();
    const zr::TilePlacement tile = zr::aloneCentred(size(), 0);
    applyPlacements("share person i:", {{m_share.shown, tile.rect, tile.grade}});
}

void QDlgScreen::reLayoutFixedGrid()
{
    applyPlacements("grid person i:", placed(zr::fixedGridPlacements(layoutInput())));
}

void QDlgScreen::reLayoutSingle()
{
    std::vector<zr::TilePlacement> placements;
    if (!m_vecCurPersons.empty())
        placements.push_back(zr::aloneCentred(size(), 0));
    applyPlacements("single person i:", placed(placements));
}

void QDlgScreen::reLayoutSpeakerTool()
{
    const QSize screen(platform::screenWidthPx(), platform::screenHeightPx());
    const QRect area = zr::speakerToolArea(size(), screen);
    std::vector<PlacedPerson> placements = placed(zr::speakerToolPlacements(layoutInput(), area));
    // The next speaker has a picture in the tool and no tile.
    tagPersonInfo* next = nullptr;
    if (m_pSpeakTool && m_iNextSpeaker >= 0)
        next = m_vecCurPersons[static_cast<std::size_t>(m_iNextSpeaker)];
    if (next)
        placements.push_back({next, QRect(), zr::kGradeSmall});
    applyPlacements("speakertool person i:", placements);
    if (livePerson(next))
        showSpeakTool(next);
    else
        hideSpeakTool();
}

// --- Applying an arrangement ------------------------------------------------------------------

void QDlgScreen::logDisplayList()
{
    // Only the page's places that somebody else has taken since they were logged: with a thousand
    // participants the whole list would cost more than the arrangement.
    const auto perPage = static_cast<std::size_t>(tilesPerPage());
    const std::size_t first = static_cast<std::size_t>(m_iPage) * perPage;
    m_vecLoggedSerials.resize(perPage);
    for (std::size_t i = first; i < std::min(first + perPage, m_vecCurPersons.size()); ++i) {
        const tagPersonInfo* person = m_vecCurPersons[i];
        if (std::exchange(m_vecLoggedSerials[i - first], person->serial) != person->serial)
            qDebug() << "xx i:" << i << ",userName:" << person->userName
                     << "0pWidget:" << static_cast<void*>(person->pWidget);
    }
}

void QDlgScreen::applyPlacements(const char* prefix, const std::vector<PlacedPerson>& placements,
                                 int large)
{
    hideUnplacedTiles(placements);
    for (std::size_t i = 0; i < placements.size(); ++i) {
        // Showing a tile sends a message, from inside which the host may delete participants:
        // every step asks again who is still there.
        const auto& [candidate, rect, grade] = placements[i];
        tagPersonInfo* person = livePerson(candidate);
        if (!person)
            continue;
        CPlayWidget* tile = person->pWidget;
        if (rect.isEmpty()) {
            // There may be as many as participants: only what changes costs something.
            if (person->iStreamType != grade)
                setPersonStreamType(person, grade);
            continue;
        }
        const bool moved = tile->geometry() != rect;
        const bool appears = !tile->isShowing();
        if (appears)
            m_pageControls.raiseWithNextShow();
        if (moved || appears) {
            const int counted = static_cast<int>(i) - large;
            (counted < 0 ? qDebug() << "large" : qDebug() << prefix << counted)
                << ",userName:" << person->userName << "pWidget:" << static_cast<void*>(tile)
                << "Geometry:" << rect;
        }
        setPersonStreamType(person, grade);
        if (moved)
            tile->setGeometry(rect);
        tile->ShowPlay();
    }
}

void QDlgScreen::hideUnplacedTiles(const std::vector<PlacedPerson>& placements)
{
    // Tiles that keep their place are not hidden in between: the picture must not flicker when
    // somebody is renamed.
    for (const tagPersonInfo* person : m_roster.all()) {
        if (!person->pWidget->isShowing())
            continue;
        const bool stays = std::any_of(
            placements.begin(), placements.end(), [person](const PlacedPerson& placement) {
                return placement.person == person && !placement.rect.isEmpty();
            });
        if (!stays)
            person->pWidget->HidePlay();
    }
}

void QDlgScreen::finishLayout()
{
    testHideMoreMenu();
    changePersonVideoMute(false);
    shareRect();
}

// --- The mode ---------------------------------------------------------------------------------

bool QDlgScreen::setMeetingMode(eLayoutType mode)
{
    qDebug() << "xxxxxd setMeetingMode:" << static_cast<int>(mode);
    enterMode(mode);
    if (mode != eLayoutShare) {
        qDebug() << "notifyDisplayOrder";
        emit hub().notifyDisplayOrder(false);
    }
    return true;
}

void QDlgScreen::enterMode(int mode)
{
    if (zr::isSpeakerToolMode(mode))
        m_bPlaceTool = true; // also in a mode that is there already
    hub().setCurScreenMode(mode);
    scheduleLayout();
}

void QDlgScreen::onCurScreenMode(int mode)
{
    if (mode != eLayoutShare)
        m_share.leaveMode();
    if (zr::isSpeakerToolMode(mode))
        m_bPlaceTool = true;
    scheduleLayout();
}

void QDlgScreen::onMeetingMode(int iMode)
{
    qDebug() << "xxxxxxxx onMeetingMode iMode:" << iMode;
    setMeetingMode(static_cast<eLayoutType>(iMode));
}

void QDlgScreen::onModSwitchMode(int eType)
{
    // Every gallery hears it: each orders its own participants, and none asks the others to.
    qDebug() << "xxxxxxxx onMeetingMode iMode:" << eType;
    if (hub().curScreenMode() != eType)
        return;
    enterMode(eType);
    if (eType != eLayoutShare)
        onDisplayOrder(false);
}

// --- The speaker tool -------------------------------------------------------------------------

void QDlgScreen::setSpeakTool(std::unique_ptr<SpeakTool> tool)
{
    m_pSpeakTool = std::move(tool);
    scheduleLayout();
}

void QDlgScreen::showSpeakTool(tagPersonInfo* person)
{
    if (m_bSpeakToolHidden || m_bHideSmallWnd || m_bSmallWndMinimised) {
        hideSpeakTool();
        return;
    }
    if (m_pSpeakTool->boundPerson() != person) {
        m_pSpeakTool->bindPerson(person);
        if (m_pSpeakTool->boundPerson() != person)
            return; // deleted by the host, from inside the message that it is shown
    }
    if (std::exchange(m_bPlaceTool, false)) {
        m_pSpeakTool->moveTool(zr::speakToolPosition(
            platform::globalRect(*this), m_pSpeakTool->toolSize(), hub().scaled(kScreenMarginPx)));
    }
    if (!m_pSpeakTool->isToolVisible())
        m_pSpeakTool->showTool();
}

void QDlgScreen::hideSpeakTool()
{
    if (!m_pSpeakTool)
        return;
    if (m_pSpeakTool->isToolVisible())
        m_pSpeakTool->hideTool();
    if (m_pSpeakTool->boundPerson())
        m_pSpeakTool->bindPerson(nullptr);
}

void QDlgScreen::onModHideSpeakTool(bool)
{
    m_bSpeakToolHidden = true;
    scheduleLayout();
}

void QDlgScreen::onModShowSpeakTool(bool)
{
    m_bSpeakToolHidden = false;
    m_bPlaceTool = true;
    scheduleLayout();
}

// --- What is where ----------------------------------------------------------------------------

bool QDlgScreen::isTileVisible(const tagPersonInfo* person) const
{
    return person->pWidget->isShowing()
           || (m_pSpeakTool && m_pSpeakTool->boundPerson() == person
               && m_pSpeakTool->showsPicture());
}

bool QDlgScreen::isPersonVisible(const QString& userId)
{
    flushLayout();
    const tagPersonInfo* person = findPerson(userId);
    return person && isTileVisible(person);
}

QRect QDlgScreen::shareRect()
{
    const tagPersonInfo* share = m_share.shown;
    if (!share)
        share = firstShare();
    QRect rect;
    // A tile without a picture yet has no rectangle to tell.
    const bool shown = share && share->pWidget->isShowing() && share->pWidget->hasVideoRect();
    if (shown) {
        rect = platform::rectOnScreen(*share->pWidget);
        share->pWidget->MapVideoRect(rect);
    }
    if (rect != m_rcShareReported) {
        m_rcShareReported = rect;
        // A participant who was maximised stands in the share's place, and is none.
        const bool isShare = shown && share->bShare;
        hub().broadcast(ZRMSG_SHARE_RECT_CHANGED, isShare ? 1 : 0, 0);
    }
    return rect;
}
