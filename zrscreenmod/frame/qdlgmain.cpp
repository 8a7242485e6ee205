#include "qdlgmain.h"

#include "cdlgspeaktool.h"
#include "cplaywidget.h"
#include "platform.h"
#include "qdlgscreen.h"
#include "qdlgsubtitle2.h"
#include "qzrscreenconfig.h"

#include <QCloseEvent>
#include <QDebug>
#include <QKeyEvent>

#include <memory>
#include <utility>

namespace {

/// The subtitle panel takes this part of the dialog's width.
constexpr int kSubtitleShare = 5;

} // namespace

QDlgMain::QDlgMain(QWidget* parent)
    : QDialog(parent, Qt::CustomizeWindowHint | Qt::FramelessWindowHint)
{
    // The dialog constructor turns a flagless window into a dialog, which a window manager would
    // place; the module's window is a plain one.
    setWindowFlags(Qt::CustomizeWindowHint | Qt::FramelessWindowHint);
    setGeometry(0, 0, 200, 200);
    m_pDlgScreen = new QDlgScreen(this);
    m_pDlgScreen->setFocus(); // the keys that turn pages reach it without a click
    auto tool = std::make_unique<CDlgSpeakTool>();
    // A tool without its picture leaves the participant unseen.
    connect(tool.get(), &CDlgSpeakTool::pictureShownChanged, m_pDlgScreen,
            &QDlgScreen::scheduleLayout);
    connect(tool.get(), &CDlgSpeakTool::pictureClicked, m_pDlgScreen,
            &QDlgScreen::onPlayWidgetLBtnClick);
    m_pDlgScreen->setSpeakTool(std::move(tool));
    m_pDlgSubtitle2 = new QDlgSubtitle2(this);
    setStyleSheet(QStringLiteral("QDlgMain{background: rgb(12,16,23);}"));
    QZRScreenConfig* hub = QZRScreenConfig::getInstance();
    connect(hub, &QZRScreenConfig::notifyCurScreenMode, this, &QDlgMain::onHandleScreenMode);
    hub->addGallery(m_pDlgScreen);
}

QDlgMain::~QDlgMain()
{
    qDebug() << "QDlgMain::~QDlgMain()";
    QZRScreenConfig::getInstance()->removeGallery(m_pDlgScreen);
    delete m_pDlgScreen;
    delete m_pDlgSubtitle2;
}

void QDlgMain::openIn(HWND hParent)
{
    if (hParent)
        m_embedding.into(platform::toNative(hParent));
    m_embedding.show();
}

bool QDlgMain::moveInto(HWND hParent)
{
    if (!m_embedding.into(platform::toNative(hParent)))
        return false;
    platform::setChildStyle(winId());
    return true;
}

void QDlgMain::place(const QRect& rect)
{
    m_embedding.place(rect);
}

void QDlgMain::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    qDebug() << "m_pDlgScreen->pos:" << m_pDlgScreen->pos();
    const int panelWidth = width() / kSubtitleShare;
    m_pDlgSubtitle2->setGeometry(width() - panelWidth, 0, panelWidth, height());
    showSubtitlePanel(QZRScreenConfig::getInstance()->settings.subtitleOpen);
    qDebug() << "m_pDlgScreen->pos:" << m_pDlgScreen->pos();
}

void QDlgMain::showSubtitlePanel(bool bShow)
{
    const int panelWidth = width() / kSubtitleShare;
    const bool shown = bShow && !QZRScreenConfig::getInstance()->isSubtitleSuppressed();
    if (bShow)
        m_pDlgSubtitle2->setGeometry(width() - panelWidth, 0, panelWidth, height());
    m_pDlgScreen->setGeometry(0, 0, width() - (shown ? panelWidth : 0), height());
    if (shown)
        m_pDlgSubtitle2->showPanel();
    else
        m_pDlgSubtitle2->hide();
    if (!bShow)
        m_pDlgSubtitle2->onCleanSubtitle();
    m_pDlgScreen->show();
}

void QDlgMain::onHandleScreenMode(int)
{
    QZRScreenConfig* hub = QZRScreenConfig::getInstance();
    if (hub->m_pDlgScreen == m_pDlgScreen) { // every host once, however many screens there are
        const int mode = hub->curScreenMode();
        hub->broadcast(ZRMSG_SCREEN_MODE, static_cast<unsigned long long>(mode), 0,
                       [=] { return hub->curScreenMode() == mode; });
    }
    if (!hub->settings.subtitleOpen)
        return;
    const bool suppressed = hub->isSubtitleSuppressed();
    if (suppressed != m_pDlgSubtitle2->isHidden())
        showSubtitlePanel(!suppressed);
}

void QDlgMain::keyPressEvent(QKeyEvent* event)
{
    // Escape would close a dialog; the module's window belongs to the host.
    if (event->key() != Qt::Key_Escape)
        QDialog::keyPressEvent(event);
}

void QDlgMain::closeEvent(QCloseEvent* event)
{
    event->ignore();
}
