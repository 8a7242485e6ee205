#include "qdlgplayinfo.h"

#include "nametext.h"
#include "personorder.h"
#include "qzrscreenconfig.h"

#include <QCursor>
#include <QPaintEvent>
#include <QPainter>
#include <QTimerEvent>

#include <algorithm>
#include <array>
#include <tuple>

namespace {

constexpr int kTickMs = 200;
constexpr int kSpinnerStepDegrees = 25;
/// How long a spell of bad network is bridged by the frozen picture and the spinner.
constexpr qint64 kSpinnerLimitMs = 15000;

constexpr int kRoleAdministrator = 2;

const QColor kBackground(28, 32, 39);
const QColor kNameBar(12, 16, 23, 128);

QColor avatarColor(int index)
{
    static constexpr std::array<QRgb, 4> kColors{qRgb(112, 98, 248), qRgb(94, 176, 242),
                                                 qRgb(95, 203, 146), qRgb(195, 109, 241)};
    return QColor(kColors[static_cast<std::size_t>(index)]);
}

int scaled(int value)
{
    return QZRScreenConfig::getInstance()->scaled(value);
}

QFont overlayFont(int pixelSize)
{
    QFont font(QStringLiteral("微软雅黑"));
    font.setPixelSize(scaled(pixelSize));
    return font;
}

int textWidth(const QFontMetrics& metrics, const QString& text)
{
    return metrics.boundingRect(text).width();
}

} // namespace

bool QDlgPlayInfo::State::operator==(const State& other) const
{
    const auto tie = [](const State& s) {
        return std::tie(s.bPerson, s.bShare, s.bPaused, s.bPicture, s.bSelf, s.bSpeaking, s.bBorder,
                        s.bSpinner, s.iRole, s.iColor, s.name, s.initials);
    };
    return tie(*this) == tie(other);
}

QDlgPlayInfo::QDlgPlayInfo(QWidget* pParent)
    : QWidget(pParent, Qt::CustomizeWindowHint | Qt::FramelessWindowHint)
{
    setAttribute(Qt::WA_NoSystemBackground);
    setAttribute(Qt::WA_TranslucentBackground);
    setFocusPolicy(Qt::NoFocus);
    connect(QZRScreenConfig::getInstance(), &QZRScreenConfig::sigRefreshPlayDlg, this,
            &QDlgPlayInfo::refresh);
}

bool QDlgPlayInfo::setPerson(tagPersonInfo* pPerson)
{
    const bool changed = pPerson != m_pPerson;
    m_pPerson = pPerson;
    m_bShareTile = pPerson && isShareScreenId(pPerson->userID);
    if (!changed)
        return false;
    applyState();
    return pPerson != nullptr;
}

void QDlgPlayInfo::setOverlayMode(bool bOverlayMode)
{
    m_bOverlayMode = bOverlayMode;
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

bool QDlgPlayInfo::IsMouseOnBtnMore() const
{
    return m_layout.more.contains(mapFromGlobal(QCursor::pos()));
}

void QDlgPlayInfo::onTimeUpdateLoading()
{
    if (spinnerElapsedMs() > kSpinnerLimitMs) {
        m_bLoadTimedOut = true;
        refresh();
        return;
    }
    m_iSpinnerAngle = (m_iSpinnerAngle + kSpinnerStepDegrees) % 360;
    update(m_layout.spinner);
}

QDlgPlayInfo::State QDlgPlayInfo::gatherState() const
{
    State state;
    if (!m_pPerson)
        return state;
    const QZRScreenConfig& hub = *QZRScreenConfig::getInstance();
    const bool waiting = m_bLoading || m_pPerson->iPlayState == kPlayHidden;
    state.bPerson = true;
    state.bShare = m_bShareTile;
    state.bPaused = m_bShareTile && hub.settings.pauseShare;
    state.bSelf = m_pPerson->bSelf;
    state.bBorder = m_bOverlayMode;
    state.name = m_pPerson->userName;
    if (m_bShareTile) {
        state.bPicture = !waiting && !state.bPaused;
        return state;
    }
    const bool netBad = isNetBad() && !state.bSelf;
    const bool started = m_pPerson->bPreview && m_pPerson->iStreamStatus != kStreamNone;
    state.bPicture = started && !waiting && !(netBad && m_bLoadTimedOut);
    state.bSpinner = state.bPicture && netBad;
    state.bSpeaking = m_pPerson->bSpeaking;
    state.iRole = m_pPerson->iRoteType;
    const int color = m_pPerson->iRoleExtra;
    state.iColor = color >= 0 && color <= 3 ? color : 0;
    state.initials = zr::shortName(state.name);
    return state;
}

void QDlgPlayInfo::applyState()
{
    State state = gatherState();
    if (state == m_state)
        return;
    m_state = std::move(state);
    m_layout = computeLayout();
    updateSpinner();
    update();
}

void QDlgPlayInfo::updateSpinner()
{
    const bool run = m_state.bSpinner && m_bShown;
    if (run && !m_spinnerStart.isValid())
        m_spinnerStart.start();
    if (run == isSpinning())
        return;
    if (run) {
        m_iTimerId = startTimer(kTickMs, Qt::CoarseTimer);
    } else {
        killTimer(m_iTimerId);
        m_iTimerId = 0;
    }
}

QDlgPlayInfo::Layout QDlgPlayInfo::computeLayout() const
{
    Layout layout;
    if (!m_state.bPerson || m_state.bShare)
        return layout;

    const int barHeight = scaled(48);
    const int moreSide = scaled(48);
    layout.more = QRect(width() - moreSide, height() - moreSide, moreSide, moreSide);
    if (m_state.iRole == zr::kRoleHost || m_state.iRole == kRoleAdministrator) {
        layout.badge = QRect(0, height() - barHeight, scaled(94), barHeight);
        layout.badgeText =
            m_state.iRole == zr::kRoleHost ? QStringLiteral("主持人") : QStringLiteral("管理员");
    }

    const QFontMetrics metrics(overlayFont(26));
    const QString suffix = m_state.bSelf ? QStringLiteral("(我)") : QString();
    const int left = layout.badge.isEmpty() ? 0 : layout.badge.width() + 1;
    const int padding = scaled(10);
    const int room = std::max(0, layout.more.left() - scaled(30) - left - 2 * padding);
    const int nameRoom = std::max(0, room - textWidth(metrics, suffix));
    layout.nameText = metrics.elidedText(m_state.name, Qt::ElideRight, nameRoom) + suffix;
    const int textRoom = std::min(room, metrics.horizontalAdvance(layout.nameText));
    layout.nameBar = QRect(left, height() - barHeight, textRoom + 2 * padding, barHeight);
    layout.nameRect = layout.nameBar.adjusted(padding, 0, -padding, 0);

    // The avatar stays clear of the name bar, which covers the bottom.
    const int free = height() - 2 * (barHeight + scaled(10));
    const int side = std::clamp(std::min(free, width()), 0, scaled(120));
    layout.head = QRect((width() - side) / 2, (height() - side) / 2, side, side);

    const int spinnerSide = std::min({scaled(48), width(), height()});
    layout.spinner =
        QRect((width() - spinnerSide) / 2, (height() - spinnerSide) / 2, spinnerSide, spinnerSide);
    return layout;
}

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
    if (m_state.bShare)
        paintShare(painter);
    else
        paintPerson(painter);
    paintBorder(painter);
}

void QDlgPlayInfo::paintPerson(QPainter& painter) const
{
    if (m_state.bPicture)
        painter.fillPath(m_barsPath, kBackground);
    else
        paintAvatar(painter);
    paintBadge(painter);
    paintNameBar(painter);
    if (m_state.bSpinner)
        paintSpinner(painter);
}

void QDlgPlayInfo::paintShare(QPainter& painter) const
{
    if (m_state.bPaused) {
        painter.fillRect(rect(), kBackground);
        painter.setPen(Qt::white);
        painter.setFont(overlayFont(22));
        QRect text(0, 0, scaled(620), scaled(40));
        text.moveCenter(rect().center());
        painter.drawText(text, Qt::AlignCenter, m_state.name + QStringLiteral(" 暂停了屏幕共享"));
    } else if (m_state.bPicture) {
        painter.fillPath(m_barsPath, kBackground);
    } else {
        painter.fillRect(rect(), kBackground);
    }
}

void QDlgPlayInfo::paintAvatar(QPainter& painter) const
{
    painter.fillRect(rect(), kBackground);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(avatarColor(m_state.iColor));
    painter.drawEllipse(m_layout.head);
    painter.setPen(Qt::white);
    painter.setFont(overlayFont(36));
    painter.drawText(m_layout.head, Qt::AlignCenter, m_state.initials);
    painter.restore();
}

void QDlgPlayInfo::paintBadge(QPainter& painter) const
{
    if (m_layout.badge.isEmpty())
        return;
    painter.fillRect(m_layout.badge,
                     m_state.iRole == zr::kRoleHost ? QColor(89, 152, 255) : QColor(228, 143, 70));
    painter.setPen(Qt::white);
    painter.setFont(overlayFont(22));
    painter.drawText(m_layout.badge, Qt::AlignCenter, m_layout.badgeText);
}

void QDlgPlayInfo::paintNameBar(QPainter& painter) const
{
    if (m_layout.nameText.isEmpty())
        return;
    // Only the top right corner is round.
    constexpr int kRadius = 4;
    constexpr int kCorner = 5;
    const QRect& bar = m_layout.nameBar;
    QPainterPath outline;
    outline.setFillRule(Qt::WindingFill);
    outline.addRoundedRect(bar, kRadius, kRadius);
    const QSize corner(kCorner, kCorner);
    outline.addRect(QRect(bar.topLeft(), corner));
    outline.addRect(QRect(QPoint(bar.left(), bar.bottom() - kCorner + 1), corner));
    outline.addRect(QRect(bar.bottomRight() - QPoint(kCorner - 1, kCorner - 1), corner));

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(outline, kNameBar);
    painter.restore();
    painter.setPen(Qt::white);
    painter.setFont(overlayFont(26));
    painter.drawText(m_layout.nameRect, Qt::AlignVCenter | Qt::AlignLeft, m_layout.nameText);
}

void QDlgPlayInfo::paintSpinner(QPainter& painter) const
{
    constexpr int kSixteenthsPerDegree = 16; // the unit of drawArc
    constexpr int kSpanDegrees = 270;
    painter.fillRect(rect(), QColor(76, 8, 10, 15));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const int penWidth = scaled(4);
    painter.setPen(QPen(Qt::white, penWidth, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(m_layout.spinner.adjusted(penWidth, penWidth, -penWidth, -penWidth),
                    -m_iSpinnerAngle * kSixteenthsPerDegree, kSpanDegrees * kSixteenthsPerDegree);
    painter.restore();
}

void QDlgPlayInfo::paintBorder(QPainter& painter) const
{
    if (!m_state.bSpeaking && !m_state.bBorder)
        return;
    const int thickness = scaled(m_state.bSpeaking ? 5 : 2);
    const QColor color = m_state.bSpeaking ? QColor(0, 255, 0) : QColor(10, 10, 10);
    painter.fillRect(0, 0, width(), thickness, color);
    painter.fillRect(0, height() - thickness, width(), thickness, color);
    painter.fillRect(0, 0, thickness, height(), color);
    painter.fillRect(width() - thickness, 0, thickness, height(), color);
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
    updateSpinner();
}

void QDlgPlayInfo::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == m_iTimerId)
        onTimeUpdateLoading();
    else
        QWidget::timerEvent(event);
}
