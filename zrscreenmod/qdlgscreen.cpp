// The gallery: construction and events.
#include "qdlgscreen.h"

#include "cplaywidget.h"
#include "meetingmode.h"
#include "qzrscreenconfig.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDebug>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

namespace {

/// A step of a mouse wheel in the unit of QWheelEvent, eighths of a degree.
constexpr int kWheelStep = 120;

} // namespace

QDlgScreen::QDlgScreen(QWidget* parent)
    : QDialog(parent)
{
    // A plain child, not a dialog window.
    setWindowFlags(Qt::CustomizeWindowHint | Qt::FramelessWindowHint);
    m_iModeBeforeShare = hub().curScreenMode();
    connectHub();
}

QDlgScreen::~QDlgScreen()
{
    clearGallery();
    for (const RetiredPerson& retired : m_vecRetired)
        delete retired.tile;
}

QZRScreenConfig& QDlgScreen::hub() const
{
    return *QZRScreenConfig::getInstance();
}

void QDlgScreen::connectHub()
{
    using Hub = QZRScreenConfig;
    using Self = QDlgScreen;
    const Hub* hub = Hub::getInstance();
    connect(hub, &Hub::notifyClickAudioCtrl, this, &Self::onClickAudioCtl);
    connect(hub, &Hub::notifyClickMore, this, &Self::onClickMore);
    connect(hub, &Hub::notifyDisplayOrder, this, &Self::onDisplayOrder);
    connect(hub, &Hub::handleHandup, this, &Self::onHandleHandup);
    connect(hub, &Hub::playFrameUpdateUI, this, &Self::onPlayFrameUpdateUI);
    connect(hub, &Hub::notifyUpdatePersonInfo, this, &Self::onNotifyUpdateUserInfo);
    connect(hub, &Hub::modSignalMove, this, &Self::onModMove);
    connect(hub, &Hub::modSignalAllLook, this, &Self::onModAllLook);
    connect(hub, &Hub::modSignalPreviewMute, this, &Self::onModPreview);
    connect(hub, &Hub::sigSetHideSmallWnd, this, &Self::onSetHideSmallWnd);
    connect(hub, &Hub::modSignalDelPerson, this, &Self::onModDelPerson);
    connect(hub, &Hub::modSignalLookLock, this, &Self::onModLookLock);
    connect(hub, &Hub::modSignalVideoSize, this, &Self::onModVideoSize);
    connect(hub, &Hub::modSignalScreenToolbar, this, &Self::onModScreenToolbar);
    connect(hub, &Hub::modSignalAudioMute, this, &Self::onModAudioMute);
    connect(hub, &Hub::modSignalPersonInfo, this, &Self::onModPersonInfo);
    connect(hub, &Hub::modSignalVolume, this, &Self::onModVolume);
    connect(hub, &Hub::modSignalPersonHandup, this, &Self::onModPersonHandup);
    connect(hub, &Hub::modSignalAddPerson, this, &Self::onModAddPerson);
    connect(hub, &Hub::modSignalFocusByUserID, this, &Self::onModFocusByUserID);
    connect(hub, &Hub::modSignalSwitchMode, this, &Self::onModSwitchMode);
    connect(hub, &Hub::sigSwitchExtendScreen, this, &Self::OnSwitchExtendScreen);
    connect(hub, &Hub::sigPopSelfShareWnd, this, &Self::OnPopSelfShareWnd);
    connect(hub, &Hub::sigSetVoiceActivateUser, this, &Self::OnSetVoiceActivateUser);
}

bool QDlgScreen::event(QEvent* event)
{
    if (event->type() == kLayoutEvent) {
        flushLayout();
        return true;
    }
    if (event->type() == kFreeRetiredEvent) {
        freeRetired();
        return true;
    }
    return QDialog::event(event);
}

void QDlgScreen::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == m_retireTimer.timerId()) {
        m_retireTimer.stop();
        freeRetired();
        return;
    }
    if (event->timerId() != m_iMuteTimerId) {
        QDialog::timerEvent(event);
        return;
    }
    killTimer(m_iMuteTimerId);
    m_iMuteTimerId = 0;
    qDebug() << "changeersonVidoMute(true)";
    changePersonVideoMute(true);
}

void QDlgScreen::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    if (width() >= zr::kMinLayoutWidthPx)
        reLayout();
}

void QDlgScreen::mousePressEvent(QMouseEvent* event)
{
    QDialog::mousePressEvent(event);
    if (childAt(event->pos()))
        return; // a tile that passed its press on
    hub().broadcast(ZRMSG_GALLERY_PRESS, 0, 0);
    notifyLButtonClick();
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
    // A dialog would close itself on Escape; every key is the frame dialog's.
    event->ignore();
}

void QDlgScreen::closeEvent(QCloseEvent* event)
{
    event->ignore();
}

void QDlgScreen::onModMove(QRect rc)
{
    if (rc.isValid())
        setGeometry(rc);
}

void QDlgScreen::onModScreenToolbar(QRect rc, bool bShow)
{
    m_rcToolbar = bShow ? rc : QRect();
    emit hub().notifyToolbar(rc, bShow);
}

void QDlgScreen::notifyLButtonClick()
{
    hub().broadcast(ZRMSG_GALLERY_CLICK, 0, 0);
}
