#include "qdlgplayinfo.h"

#include "overlayimages.h"
#include "overlaypainter.h"
#include "qtparent.h"
#include "qzrscreenconfig.h"
#include "rectpacer.h"
#include "tileaccessible.h"

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
    m_view.bubble.clear(); // the former participant's words
    m_bubbleTimer.stop();
    m_pressed.reset();
    m_iSpell = kNoSpell;
    applyState();
    return pPerson != nullptr;
}

void QDlgPlayInfo::setPlace(zr::TilePlace place)
{
    m_view.place = place;
    applyState();
}

void QDlgPlayInfo::listen()
{
    using Hub = QZRScreenConfig;
    connect(&hub(), &Hub::participantChanged, this, &QDlgPlayInfo::onParticipantChanged);
    connect(&hub(), &Hub::sigRefreshPlayDlg, this, &QDlgPlayInfo::refresh);
    connect(&hub(), &Hub::notifyAddSubtitle, this, &QDlgPlayInfo::onAddSubtitle);
    connect(&hub(), &Hub::notifyCleanSubtitle, this, &QDlgPlayInfo::closeBubble);
}

void QDlgPlayInfo::onParticipantChanged(const void* pPerson)
{
    // A share on an extended screen is named after the gallery's.
    const auto* changed = static_cast<const tagPersonInfo*>(pPerson);
    const bool sameShare = m_bShareTile && changed->userID == m_pPerson->userID;
    if (changed == m_pPerson || sameShare)
        refresh();
}

void QDlgPlayInfo::refresh()
{
    if (isVisible() && m_pPerson)
        applyState();
}

void QDlgPlayInfo::setLoading(bool bShow)
{
    if (std::exchange(m_view.bLoading, bShow) != bShow)
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
    if (!m_pPerson)
        return;
    m_pPerson->net.report(iType, bBad, iLevel);
    emit hub().participantChanged(m_pPerson);
}

zr::TilePerson QDlgPlayInfo::tilePerson() const
{
    zr::TilePerson person;
    person.bShare = m_bShareTile;
    person.bSelf = m_pPerson->bSelf;
    person.bMute = m_pPerson->bMute;
    person.bHand = m_pPerson->bHandUp;
    person.bSpeaking = m_pPerson->bSpeaking;
    person.bAllLook = m_pPerson->bAllLook;
    person.bLockLook = m_pPerson->bLockLook;
    person.bPreview = m_pPerson->bPreview;
    person.bStream = m_pPerson->iStreamStatus != kStreamNone;
    person.bHidden = m_pPerson->iPlayState == kPlayHidden;
    person.iRole = m_pPerson->iRoteType;
    person.iColor = m_pPerson->iRoleExtra;
    person.iGrade = m_pPerson->iStreamType;
    person.iVolume = m_pPerson->iVolume;
    person.iFramesPerS = m_pPerson->iFramesPerS;
    person.video = {m_pPerson->iVideoWidth, m_pPerson->iVideoHeight};
    person.net = m_pPerson->net;
    // The gallery knows who shares; what the host says of an extended screen is second to that.
    if (m_bShareTile && m_view.place == zr::TilePlace::ExtScreen)
        person.name = hub().shareName(m_pPerson->userID);
    if (person.name.isEmpty())
        person.name = m_pPerson->userName;
    return person;
}

zr::OverlayState QDlgPlayInfo::gatherState() const
{
    return m_pPerson ? zr::overlayState(tilePerson(), hub().tileSettings(), m_view)
                     : zr::OverlayState();
}

void QDlgPlayInfo::followImages()
{
    if (m_pImages->areCurrent())
        return;
    m_pImages = OverlayImages::shared();
    m_layout = computeLayout();
    update();
}

void QDlgPlayInfo::applyState()
{
    followImages();
    endOldSpell();
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
    emit stateChanged();
}

void QDlgPlayInfo::announce(QAccessible::Event what)
{
    QAccessibleEvent event(parentWidget(), what); // the tile is the element
    QAccessible::updateAccessibility(&event);
}

zr::OverlayLayout QDlgPlayInfo::computeLayout() const
{
    return zr::layoutOverlay(m_state, overlayMetrics(size(), *m_pImages));
}

// --- Spinner and bubble -----------------------------------------------------------------------

void QDlgPlayInfo::endOldSpell()
{
    const int spell = m_pPerson ? m_pPerson->net.iSpell : 0;
    if (std::exchange(m_iSpell, spell) == spell)
        return;
    m_view.bLoadTimedOut = false;
    m_spinnerStart.invalidate();
}

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
        m_view.bLoadTimedOut = true;
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
    m_view.bubble = sentence.transStr;
    m_view.iBubbleColor = sentence.iColorType;
    m_bubbleTimer.start(bubbleMs(), Qt::CoarseTimer, this);
    applyState();
}

void QDlgPlayInfo::closeBubble()
{
    m_bubbleTimer.stop();
    if (m_view.bubble.isEmpty())
        return;
    m_view.bubble.clear();
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
    paintOverlay(painter, {m_layout, *m_pImages, m_barsPath, m_iSpinnerAngle, m_watermark});
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
    if (!std::exchange(m_bShown, true))
        listen();
    refresh();
    updateSpinner(); // the state may be the same as when the overlay was hidden
}

void QDlgPlayInfo::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (std::exchange(m_bShown, false))
        hub().disconnect(this); // a hidden overlay asks when it is shown again
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
    if (m_state.bNoMenu || !element(control).isShown() || !hub().livePersons.contains(m_pPerson))
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
        const QRect onScreen = platform::rectOnScreen(*this);
        qDebug() << "ptCur:" << QCursor::pos() << onScreen.topLeft() << rect();
        const QRect button = platform::toPixels(element(control).rect, devicePixelRatioF());
        const int x = onScreen.x() + onScreen.width() - button.width();
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
