#include "cdlgspeaktool.h"

#include "cplaywidgetextend.h"
#include "qzrscreenconfig.h"
#include "screenplace.h"
#include "texts.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QTimer>

namespace {

// Base sizes, in pixels.
constexpr int kToolWidth = 272;
constexpr int kVideoHeight = 153; // 16:9
constexpr int kRowHeight = 36;    ///< though the content would like 40
constexpr int kButtonSide = 25;
constexpr int kSpacing = 13;
constexpr int kSideMargin = 9;
constexpr int kRowMargin = 3;
constexpr int kMinNamesWidth = 29;
constexpr int kClickReach = 5; ///< of the pointer, while the button is held for a click

constexpr int kModeCompact = 1;
constexpr int kModeVideo = 2;
constexpr int kModeThird = 3;

constexpr char kLabelStyle[] = "background:transparent;\ncolor:white;\nfont: %1 \"微软雅黑\";";
constexpr char kFontSize[] = "12pt";
constexpr char kLargeFontSize[] = "32px"; ///< twice as large, whatever a point is there

int scaled(int value)
{
    return QZRScreenConfig::getInstance()->scaled(value);
}

/// Cuts a text that is too long for it where it is painted. Only for one line of plain text.
class ElidingLabel : public QLabel
{
public:
    using QLabel::QLabel;
    QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setPen(palette().color(foregroundRole()));
        const QRect area = contentsRect();
        painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter,
                         fontMetrics().elidedText(text(), Qt::ElideRight, area.width()));
    }
};

QLabel* makeLabel(QLabel* label, const char* name)
{
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText); // a name is no mark-up
    return label;
}

} // namespace

CDlgSpeakTool::CDlgSpeakTool()
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint
                           | Qt::WindowDoesNotAcceptFocus)
{
    setObjectName(QStringLiteral("QDlgSpeakTool"));
    setWindowTitle(zr::Text::tr("演讲者"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(QStringLiteral("CDlgSpeakTool{background-color:rgb(22,27,34);}"));
    makeModeRow();
    makeSpeakRow();
    m_pVideo = new CPlayWidgetExtend(this, true);
    m_pModeButtons[kModeThird - 1]->hide();
    setLook(kModeVideo);
    place(0, 0);

    using Hub = QZRScreenConfig;
    const Hub* hub = Hub::getInstance();
    connect(hub, &Hub::modSignalMoveSpeakTool, this, &CDlgSpeakTool::onModMoveSpeakTool);
    connect(hub, &Hub::modSignalmousePressSpeakTool, this,
            &CDlgSpeakTool::onModmousePressSpeakTool);
    connect(hub, &Hub::screenScaleChanged, this, [this] { place(x(), y()); });
    connect(m_pVideo, &CPlayWidget::mouseLClick, this, &CDlgSpeakTool::onVideoClick);
    connect(m_pModeButtons[0], &QPushButton::clicked, this, &CDlgSpeakTool::onClickedMode1);
    connect(m_pModeButtons[1], &QPushButton::clicked, this, &CDlgSpeakTool::onClickedMode2);
    connect(m_pModeButtons[2], &QPushButton::clicked, this, &CDlgSpeakTool::onClickedMode3);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &CDlgSpeakTool::watchScreen);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &CDlgSpeakTool::scheduleIntoView);
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (const QScreen* screen : screens)
        watchScreen(screen);
}

CDlgSpeakTool::~CDlgSpeakTool()
{
    m_gate.shut();
}

void CDlgSpeakTool::makeModeRow()
{
    m_pModeRow = new QWidget(this);
    m_pModeRow->setObjectName(QStringLiteral("widgetMode"));
    m_pModeRow->setStyleSheet(
        QStringLiteral("QWidget#widgetMode\n{\nbackground:rgb(42,46,54);\n}"));
    m_pTitle = makeLabel(new QLabel(zr::Text::tr("演讲者"), m_pModeRow), "label_Title");
    auto* const row = new QHBoxLayout(m_pModeRow);
    row->addWidget(m_pTitle);
    row->addSpacerItem(new QSpacerItem(40, 20, QSizePolicy::Expanding, QSizePolicy::Minimum));
    const QString names[] = {zr::Text::tr("精简"), zr::Text::tr("视频"), zr::Text::tr("模式三")};
    for (int i = 0; i < 3; ++i) {
        auto* const button = new QPushButton(m_pModeRow);
        button->setObjectName(QStringLiteral("pB_Mode%1").arg(i + 1));
        button->setFocusPolicy(Qt::NoFocus);
        button->setAccessibleName(names[i]);
        button->setToolTip(names[i]);
        row->addWidget(button);
        m_pModeButtons[i] = button;
    }
}

void CDlgSpeakTool::makeSpeakRow()
{
    m_pSpeakRow = new QWidget(this);
    m_pSpeakRow->setObjectName(QStringLiteral("widgetSpeak"));
    m_pSpeakRow->setStyleSheet(
        QStringLiteral("QWidget#widgetSpeak\n{\nbackground:rgb(22,27,34);\n}"));
    m_pSpeakingLabel = makeLabel(new QLabel(m_pSpeakRow), "label");
    m_pSpeakingNames = makeLabel(new ElidingLabel(m_pSpeakRow), "label_Speaking");
    auto* const row = new QHBoxLayout(m_pSpeakRow);
    row->setSpacing(0);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_pSpeakingLabel);
    row->addWidget(m_pSpeakingNames, 1);
}

// --- Size and place ---------------------------------------------------------------------------

int CDlgSpeakTool::rowHeightPx() const
{
    return scaled(kRowHeight);
}

QSize CDlgSpeakTool::toolSize() const
{
    const int video = m_iMode == kModeCompact ? 0 : scaled(kVideoHeight);
    return {scaled(kToolWidth), 2 * rowHeightPx() + video};
}

void CDlgSpeakTool::place(int x, int y)
{
    const int width = scaled(kToolWidth);
    const int row = rowHeightPx();
    m_pModeRow->setGeometry(0, 0, width, row);
    m_pSpeakRow->setGeometry(0, row, width, row);
    m_pVideo->setGeometry(0, 2 * row, width, scaled(kVideoHeight));
    QLayout* const modes = m_pModeRow->layout();
    modes->setSpacing(scaled(kSpacing));
    modes->setContentsMargins(scaled(kSideMargin), scaled(kRowMargin), scaled(kSideMargin),
                              scaled(kRowMargin));
    for (QPushButton* const button : m_pModeButtons) {
        button->setIconSize({scaled(kButtonSide), scaled(kButtonSide)});
        button->setFixedSize(button->iconSize());
    }
    const bool large = QZRScreenConfig::getInstance()->is4K();
    const QString labelStyle =
        QString::fromUtf8(kLabelStyle).arg(QLatin1String(large ? kLargeFontSize : kFontSize));
    for (QLabel* const label : {m_pTitle, m_pSpeakingLabel, m_pSpeakingNames}) {
        if (label->styleSheet() != labelStyle)
            label->setStyleSheet(labelStyle);
    }
    m_pSpeakingLabel->setContentsMargins(scaled(kSideMargin), 0, 0, 0);
    m_pSpeakingNames->setContentsMargins(0, 0, scaled(kSideMargin), 0);
    m_pSpeakingNames->setMinimumWidth(scaled(kMinNamesWidth));
    setFixedSize(CDlgSpeakTool::toolSize());
    moveVisibly({x, y});
}

void CDlgSpeakTool::moveVisibly(const QPoint& topLeft)
{
    std::vector<QRect> areas;
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (const QScreen* screen : screens)
        areas.push_back(screen->availableGeometry());
    move(zr::visiblePlace({topLeft, size()}, areas));
}

void CDlgSpeakTool::watchScreen(const QScreen* screen)
{
    connect(screen, &QScreen::availableGeometryChanged, this, &CDlgSpeakTool::scheduleIntoView);
}

void CDlgSpeakTool::scheduleIntoView()
{
    // A screen that goes is still among the screens while it says so.
    QTimer::singleShot(0, this, &CDlgSpeakTool::bringIntoView);
}

void CDlgSpeakTool::bringIntoView()
{
    if (isVisible())
        moveVisibly(pos());
}

void CDlgSpeakTool::onModmousePressSpeakTool()
{
    m_ptStart = frameGeometry().topLeft();
}

void CDlgSpeakTool::onModMoveSpeakTool(QPoint offset)
{
    moveVisibly(m_ptStart + offset);
}

void CDlgSpeakTool::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        m_bDragging = true;
        m_bDragged = m_bClickDue = false;
        m_ptDragStart = event->globalPos();
        m_ptStart = frameGeometry().topLeft();
    }
    QWidget::mousePressEvent(event);
}

void CDlgSpeakTool::mouseMoveEvent(QMouseEvent* event)
{
    if (m_bDragging && (event->buttons() & Qt::LeftButton)) {
        const QPoint offset = event->globalPos() - m_ptDragStart;
        m_bDragged = m_bDragged || offset.manhattanLength() > scaled(kClickReach);
        moveVisibly(m_ptStart + offset);
    }
    QWidget::mouseMoveEvent(event);
}

void CDlgSpeakTool::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_bDragging = false;
    if (m_bClickDue)
        onVideoClick();
}

void CDlgSpeakTool::onVideoClick()
{
    m_bClickDue = m_bDragging;
    if (!m_bDragging && !m_bDragged)
        emit pictureClicked(m_pVideo);
}

void CDlgSpeakTool::hideEvent(QHideEvent* event)
{
    m_bDragging = m_bClickDue = false; // nobody may hear of the button's release
    QWidget::hideEvent(event);
}

void CDlgSpeakTool::closeEvent(QCloseEvent* event)
{
    event->ignore(); // the gallery shows and hides it
}

// --- Modes ------------------------------------------------------------------------------------

void CDlgSpeakTool::setLook(int mode)
{
    for (int i = 0; i < 3; ++i) {
        const QString image = QStringLiteral(":/pic4k/mode%1_%2.png")
                                  .arg(i + 1)
                                  .arg(QLatin1String(i + 1 == mode ? "on" : "off"));
        m_pModeButtons[i]->setStyleSheet(
            QStringLiteral("QPushButton{border-image:url(%1);background:transparent;}").arg(image));
    }
}

void CDlgSpeakTool::onModHideSpeakTool()
{
    hide();
}

void CDlgSpeakTool::onModShowSpeakTool()
{
    moveVisibly(pos()); // the screens may have changed meanwhile
    show();
    if (m_iMode != kModeCompact)
        m_pVideo->show();
    setLook(kModeVideo);
}

void CDlgSpeakTool::onClickedMode1()
{
    setLook(kModeCompact);
    m_iMode = kModeCompact;
    m_pVideo->StopShow();
    m_pVideo->SetPersonInfo(nullptr, false);
    setFixedSize(toolSize());
    emit pictureShownChanged();
}

void CDlgSpeakTool::onClickedMode2()
{
    setLook(kModeVideo);
    m_iMode = kModeVideo;
    setFixedSize(toolSize());
    moveVisibly(pos()); // what has grown may reach over the edge
    m_pVideo->show();
    if (m_pPerson && m_pVideo->GetPersonInfo() != m_pPerson)
        m_pVideo->SetPersonInfo(m_pPerson, false);
    emit pictureShownChanged();
}

void CDlgSpeakTool::onClickedMode3()
{
    setLook(kModeThird);
    m_iMode = kModeThird;
}

// --- The participant --------------------------------------------------------------------------

void CDlgSpeakTool::bindPerson(tagPersonInfo* person)
{
    m_gate.shut();
    m_bClickDue = false; // it was on somebody else
    m_pPerson = person;
    m_pVideo->SetPersonInfo(m_iMode == kModeCompact ? nullptr : person, false);
    // The host, who heard of it, may have had the tool unbound.
    if (m_pPerson == person)
        m_gate.open(person);
}

bool CDlgSpeakTool::showsPicture() const
{
    return isVisible() && m_pVideo->isShowing();
}

void CDlgSpeakTool::setSpeaking(const QString& names)
{
    m_pSpeakingLabel->setText(names.isEmpty() ? QString() : zr::Text::tr("正在讲话："));
    m_pSpeakingNames->setText(names);
}

int CDlgSpeakTool::toolId() const
{
    return static_cast<int>(internalWinId());
}

void CDlgSpeakTool::playFrame(const void* person, const VantrelRTCVideoFrameQT& frame)
{
    m_gate.pass(person, [&] { m_pVideo->PlayFrame(frame); });
}
