#include "qdlgplayinfo.h"

#include "layoutgeometry.h"
#include "overlayimages.h"
#include "overlaypainter.h"
#include "qzrscreenconfig.h"
#include "rectpacer.h"
#include "tileaccessible.h"
#include "volumelevel.h"

#include <QCursor>
#include <QDebug>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QTimerEvent>

#include <cstdlib>
#include <utility>

using zr::OverlayPart;

namespace {

constexpr int kTickMs = 200;
constexpr int kSpinnerStepDegrees = 25;
/// How long a spell of bad network is bridged by the frozen picture and the spinner.
constexpr qint64 kSpinnerLimitMs = 15000;

QZRScreenConfig& hub()
{
    return *QZRScreenConfig::getInstance();
}

/// The change that comes ten times a second.
bool differOnlyInVolume(zr::OverlayState before, const zr::OverlayState& after)
{
    before.iAudioLevel = after.iAudioLevel;
    return before == after;
}

int colorIndex(int index)
{
    return index >= 0 && index <= 3 ? index : 0;
}

} // namespace

bool isDrag(const QPoint& distance)
{
    const int limit = hub().is4K() ? 200 : 5;
    return std::abs(distance.x()) > limit || std::abs(distance.y()) > limit;
}

QDlgPlayInfo::QDlgPlayInfo(QWidget* pParent)
    : QWidget(pParent, Qt::CustomizeWindowHint | Qt::FramelessWindowHint)
    , m_pImages(OverlayImages::shared())
    , m_pPacer(RectPacer::shared())
    , m_pAccessibility(shareTileAccessibility())
{
    setAttribute(Qt::WA_NoSystemBackground);
    setAttribute(Qt::WA_TranslucentBackground);
    setFocusPolicy(Qt::NoFocus);
    connect(&hub(), &QZRScreenConfig::sigRefreshPlayDlg, this, &QDlgPlayInfo::refresh);
    connect(&hub(), &QZRScreenConfig::notifyCurScreenMode, this, &QDlgPlayInfo::refresh);
    connect(&hub(), &QZRScreenConfig::notifyAddSubtitle, this, &QDlgPlayInfo::onAddSubtitle);
    connect(&hub(), &QZRScreenConfig::notifyCleanSubtitle, this, &QDlgPlayInfo::closeBubble);
}

QDlgPlayInfo::~QDlgPlayInfo() = default;

// --- State ------------------------------------------------------------------------------------

bool QDlgPlayInfo::setPerson(tagPersonInfo* pPerson)
{
    const bool changed = pPerson != m_pPerson;
    m_pPerson = pPerson;
    m_bShareTile = pPerson && isShareScreenId(pPerson->userID);
    if (!changed)
        return false;
    m_qstrBubble.clear(); // the former participant's words
    m_bubbleTimer.stop();
    m_pressed.reset();
    applyState();
    return pPerson != nullptr;
}

void QDlgPlayInfo::setOverlayMode(bool bOverlayMode)
{
    m_bOverlayMode = bOverlayMode;
    applyState();
}

void QDlgPlayInfo::setNoMenu(bool bNoMenu)
{
    m_bNoMenu = bNoMenu;
    applyState();
}

void QDlgPlayInfo::refresh()
{
    if (isVisible() && m_pPerson)
        applyState();
}

void QDlgPlayInfo::setLoading(bool bShow, bool bForce)
{
    const bool changed = m_bLoading != bShow;
    m_bLoading = bShow;
    if (changed || bForce)
        refresh();
}

void QDlgPlayInfo::setVideoRect(const QRect& rect)
{
    if (rect == m_rcVideo)
        return;
    m_rcVideo = rect;
    rebuildBars();
    update();
}

void QDlgPlayInfo::UpdateNetStatus(int iType, bool bBad, int iLevel)
{
    m_iNetLevel = iLevel;
    m_iNetDirection = iType;
    if (iType == 1)
        m_bSendBad = bBad;
    else if (iType == 2)
        m_bReceiveBad = bBad;
    if (!isNetBad()) {
        m_bLoadTimedOut = false;
        m_spinnerStart.invalidate();
    }
    refresh();
}

void QDlgPlayInfo::copyNetStatus(const QDlgPlayInfo& other)
{
    if (m_bSendBad == other.m_bSendBad && m_bReceiveBad == other.m_bReceiveBad
        && m_iNetLevel == other.m_iNetLevel)
        return;
    m_bSendBad = other.m_bSendBad;
    UpdateNetStatus(2, other.m_bReceiveBad, other.m_iNetLevel);
}

zr::LookMark QDlgPlayInfo::lookMark() const
{
    if (!m_pPerson->bAllLook && !m_pPerson->bLockLook)
        return zr::LookMark::None;
    // Where nobody is larger than the others, or two are, the arrangement tells nothing apart.
    const int mode = hub().curScreenMode();
    if (!m_bNoMenu
        && (mode == eLayoutEqualCut || mode == eLayout6Cut || mode == eLayout8Cut
            || mode == eLayoutSpeaker4))
        return zr::LookMark::None;
    if (m_pPerson->bAllLook)
        return zr::LookMark::AllLook;
    const bool unlabelled = !m_bNoMenu && hub().overlay.lookOwner == 1;
    return unlabelled ? zr::LookMark::Unlabelled : zr::LookMark::LockLook;
}

zr::OverlayState QDlgPlayInfo::gatherState() const
{
    zr::OverlayState state;
    if (!m_pPerson)
        return state;
    const OverlaySwitches& switches = hub().overlay;
    const bool waiting = m_bLoading || m_pPerson->iPlayState == kPlayHidden;
    const int grade = m_pPerson->iStreamType;
    state.bPerson = true;
    state.bShare = m_bShareTile;
    state.bBorder = m_bOverlayMode;
    state.bSelf = m_pPerson->bSelf;
    state.bNoMenu = m_bNoMenu;
    state.bSmall = grade == zr::kGradeSmall || grade == zr::kGradeGrid;
    state.name = m_pPerson->userName;
    if (m_bShareTile) {
        state.bPaused = hub().settings.pauseShare;
        state.bPicture = !waiting && !state.bPaused;
        state.watermark = hub().getWatermarkText();
        return state;
    }
    const bool netBad = isNetBad() && !state.bSelf;
    const bool started = m_pPerson->bPreview && m_pPerson->iStreamStatus != kStreamNone;
    state.bPicture = started && !waiting && !(netBad && m_bLoadTimedOut);
    state.bSpinner = state.bPicture && netBad;
    state.bSpeaking = m_pPerson->bSpeaking && !m_bNoMenu && switches.speakingHighlight;
    state.bMute = m_pPerson->bMute;
    state.bCamera = started;
    state.bHand = m_pPerson->bHandUp && (switches.allHands || state.bSelf);
    state.bLargerText = switches.largerText;
    state.iRole = m_pPerson->iRoteType;
    state.iColor = colorIndex(m_pPerson->iRoleExtra);
    state.iAudioLevel = zr::volumeLevel(m_pPerson->iVolume);
    state.iNetLevel = m_iNetLevel;
    state.look = lookMark();
    if (switches.showResolution && m_pPerson->iVideoWidth != 0) {
        state.resolution =
            QStringLiteral("%1*%2").arg(m_pPerson->iVideoWidth).arg(m_pPerson->iVideoHeight);
    }
    state.bubble = m_qstrBubble;
    state.iBubbleColor = m_iBubbleColor;
    return state;
}

void QDlgPlayInfo::applyState()
{
    zr::OverlayState state = gatherState();
    if (state == m_state)
        return;
    std::swap(m_state, state);
    if (differOnlyInVolume(state, m_state)) {
        // All levels have images of one size, so nothing moves.
        zr::OverlayElement& audio = m_layout.at(OverlayPart::Audio);
        if (m_state.bMute || !audio.isShown())
            return;
        audio.variant = m_state.iAudioLevel;
        m_pPacer->requestUpdate(this, audio.rect);
        return;
    }
    const zr::OverlayLayout before = std::exchange(m_layout, computeLayout());
    updateSpinner();
    QRegion changed;
    for (const QRect& rect : zr::changedRects(before, m_layout))
        changed += rect;
    update(changed);
    for (const QAccessible::Event what : changedTexts(state, m_state))
        announce(what);
}

void QDlgPlayInfo::announce(QAccessible::Event what)
{
    QAccessibleEvent event(parentWidget(), what); // the tile is the element
    QAccessible::updateAccessibility(&event);
}

zr::OverlayLayout QDlgPlayInfo::computeLayout() const
{
    return zr::layoutOverlay(m_state, overlayMetrics(size(), hub().is4K(), *m_pImages));
}

// --- Spinner and bubble -----------------------------------------------------------------------

void QDlgPlayInfo::updateSpinner()
{
    const bool run = m_state.bSpinner && m_bShown;
    if (run && !m_spinnerStart.isValid())
        m_spinnerStart.start();
    if (run == isSpinning())
        return;
    if (run)
        m_spinnerTimer.start(kTickMs, Qt::CoarseTimer, this);
    else
        m_spinnerTimer.stop();
}

void QDlgPlayInfo::onTimeUpdateLoading()
{
    if (spinnerElapsedMs() > kSpinnerLimitMs) {
        m_bLoadTimedOut = true;
        refresh();
        return;
    }
    m_iSpinnerAngle = (m_iSpinnerAngle + kSpinnerStepDegrees) % 360;
    // The corners of the image turn, too.
    const int reach = m_layout.at(OverlayPart::Spinner).textRect.width() / 4;
    update(m_layout.at(OverlayPart::Spinner).textRect.adjusted(-reach, -reach, reach, reach));
}

void QDlgPlayInfo::onAddSubtitle(int iIDSentence)
{
    if (!m_bShown || !m_pPerson || m_bShareTile || !hub().settings.subtitleOpen)
        return;
    const SubtitleRecord sentence = hub().subtitle(iIDSentence);
    if (sentence.transStr.isEmpty() || sentence.userName != m_pPerson->userName)
        return;
    m_qstrBubble = sentence.transStr;
    m_iBubbleColor = colorIndex(sentence.iColorType);
    m_bubbleTimer.start(bubbleMs(), Qt::CoarseTimer, this);
    applyState();
}

void QDlgPlayInfo::closeBubble()
{
    m_bubbleTimer.stop();
    if (m_qstrBubble.isEmpty())
        return;
    m_qstrBubble.clear();
    applyState();
}

void QDlgPlayInfo::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == m_spinnerTimer.timerId())
        onTimeUpdateLoading();
    else if (event->timerId() == m_bubbleTimer.timerId())
        closeBubble();
    else
        QWidget::timerEvent(event);
}

// --- Geometry and painting --------------------------------------------------------------------

void QDlgPlayInfo::rebuildBars()
{
    const int w = width();
    const int h = height();
    const int videoRight = m_rcVideo.x() + m_rcVideo.width();
    const int videoBottom = m_rcVideo.y() + m_rcVideo.height();
    m_barsPath = QPainterPath();
    if (m_rcVideo.isEmpty())
        return;
    if (m_rcVideo.x() > 0)
        m_barsPath.addRect(0, 0, m_rcVideo.x(), h);
    if (videoRight < w)
        m_barsPath.addRect(videoRight, 0, w - videoRight, h);
    if (m_rcVideo.y() > 0)
        m_barsPath.addRect(m_rcVideo.x(), 0, m_rcVideo.width(), m_rcVideo.y());
    if (videoBottom < h)
        m_barsPath.addRect(m_rcVideo.x(), videoBottom, m_rcVideo.width(), h - videoBottom);
}

void QDlgPlayInfo::paintEvent(QPaintEvent* event)
{
    if (!m_state.bPerson)
        return;
    QPainter painter(this);
    painter.setClipRegion(event->region());
    paintOverlay(painter,
                 {m_layout, *m_pImages, m_barsPath, hub().is4K(), m_iSpinnerAngle, m_watermark});
}

void QDlgPlayInfo::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_layout = computeLayout();
    rebuildBars();
}

void QDlgPlayInfo::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    m_bShown = true;
    refresh();
    updateSpinner(); // the state may be the same as when the overlay was hidden
}

void QDlgPlayInfo::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    m_bShown = false;
    m_pressed.reset();
    updateSpinner();
    closeBubble();
}

// --- Controls ---------------------------------------------------------------------------------

const zr::OverlayElement& QDlgPlayInfo::element(OverlayControl control) const
{
    switch (control) {
    case OverlayControl::Microphone:
        return m_layout.at(OverlayPart::Audio);
    case OverlayControl::More:
        return m_layout.at(OverlayPart::More);
    case OverlayControl::LowerHand:
        break;
    }
    return m_layout.at(OverlayPart::Hand);
}

bool QDlgPlayInfo::hasControl(OverlayControl control) const
{
    if (m_bNoMenu || !element(control).isShown() || !hub().isLivePerson(m_pPerson))
        return false;
    // Nobody lowers the hand of another.
    return control != OverlayControl::LowerHand || (m_state.bSelf && m_state.bHand);
}

void QDlgPlayInfo::activate(OverlayControl control)
{
    if (!hasControl(control))
        return;
    switch (control) {
    case OverlayControl::Microphone:
        emit hub().notifyClickAudioCtrl(m_pPerson);
        break;
    case OverlayControl::More: {
        const QPoint origin = mapToGlobal(QPoint(0, 0));
        qDebug() << "ptCur:" << QCursor::pos() << origin << rect();
        const int x = origin.x() + width() - element(control).rect.width();
        emit hub().notifyClickMore(m_pPerson, x);
        break;
    }
    case OverlayControl::LowerHand:
        emit hub().handleHandup(m_pPerson);
        break;
    }
}

std::optional<OverlayControl> QDlgPlayInfo::controlAt(const QPoint& point) const
{
    for (const OverlayControl control :
         {OverlayControl::Microphone, OverlayControl::More, OverlayControl::LowerHand}) {
        if (element(control).rect.contains(point) && hasControl(control))
            return control;
    }
    return std::nullopt;
}

// What is ignored here is the tile's.

void QDlgPlayInfo::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        m_pressed = controlAt(event->pos());
        m_ptPress = event->globalPos();
    }
    event->setAccepted(event->button() == Qt::LeftButton && m_pressed);
}

void QDlgPlayInfo::mouseMoveEvent(QMouseEvent* event)
{
    event->setAccepted(m_pressed.has_value());
    if (isDrag(event->globalPos() - m_ptPress))
        m_pressed.reset();
}

void QDlgPlayInfo::mouseReleaseEvent(QMouseEvent* event)
{
    const bool left = event->button() == Qt::LeftButton;
    event->setAccepted(left && m_pressed);
    if (!left || !m_pressed)
        return;
    const OverlayControl control = *std::exchange(m_pressed, std::nullopt);
    // A click that slips off the edge is still one. On high-resolution screens a drag begins far
    // beyond that.
    constexpr int kSlipPx = 5;
    if (element(control)
            .rect.marginsAdded({kSlipPx, kSlipPx, kSlipPx, kSlipPx})
            .contains(event->pos()))
        activate(control);
}

void QDlgPlayInfo::mouseDoubleClickEvent(QMouseEvent* event)
{
    // The second press of a double click on a control neither clicks again nor reaches the tile.
    event->setAccepted(event->button() == Qt::LeftButton && controlAt(event->pos()));
}

bool QDlgPlayInfo::IsMouseOnBtnMore() const
{
    return element(OverlayControl::More).rect.contains(mapFromGlobal(QCursor::pos()));
}
