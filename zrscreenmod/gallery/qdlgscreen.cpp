// The gallery: construction and events.
#include "qdlgscreen.h"

#include "cplaywidget.h"
#include "meetingmode.h"
#include "qdlgnovideo.h"
#include "qzrscreenconfig.h"
#include "speaktool.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDebug>
#include <QMouseEvent>

#include <limits>

QDlgScreen::QDlgScreen(QWidget* parent)
    : QDialog(parent)
    , m_pageControls(*this)
{
    // A plain child, not a dialog window.
    setWindowFlags(Qt::CustomizeWindowHint | Qt::FramelessWindowHint);
    setFocusPolicy(Qt::ClickFocus); // for the keys that turn pages
    m_pageClock = [this] { return hub().nowMs(); };
    hub().getImgPrefix();
    scalePageControls();
    connectHub();
}

QDlgScreen::~QDlgScreen()
{
    clearGallery();
    m_reaper.destroyAll();
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
    connect(hub, &Hub::notifyClickExtPlayWidget, this, &Self::onNotifyClickExtPlayWidget);
    connect(hub, &Hub::notifyExtUserLeft, this, &Self::onNotifyExtUserLeft);
    connect(hub, &Hub::clickPageCtl, this, &Self::onClickPageCtl);
    connect(hub, &Hub::modSignalHideSpeakTool, this, &Self::onModHideSpeakTool);
    connect(hub, &Hub::modSignalShowSpeakTool, this, &Self::onModShowSpeakTool);
    connect(hub, &Hub::sigOpenLayoutPoll, this, &Self::onOpenLayoutPoll);
    connect(hub, &Hub::screenScaleChanged, this, &Self::scalePageControls);
    connect(hub, &Hub::notifyCurScreenMode, this, &Self::onCurScreenMode);
}

bool QDlgScreen::event(QEvent* event)
{
    if (event->type() == kLayoutEvent) {
        flushLayout();
        return true;
    }
    if (event->type() == kFreeRetiredEvent) {
        m_reaper.collect();
        return true;
    }
    return QDialog::event(event);
}

void QDlgScreen::timerEvent(QTimerEvent* event)
{
    const int id = event->timerId();
    const auto stop = [this](int& timerId) {
        killTimer(timerId);
        timerId = 0;
    };
    if (id == m_iCheckTimerId) {
        checkOrder();
    } else if (id == m_iMuteTimerId) {
        stop(m_iMuteTimerId);
        qDebug() << "changeersonVidoMute(true)";
        changePersonVideoMute(true);
    } else if (id == m_iPollTimerId) {
        m_iPollTick = (m_iPollTick + 1) % std::numeric_limits<int>::max();
        reLayout();
    } else {
        QDialog::timerEvent(event);
    }
}

void QDlgScreen::killTimers()
{
    for (int* timerId : {&m_iCheckTimerId, &m_iMuteTimerId, &m_iPollTimerId}) {
        if (*timerId != 0)
            killTimer(*timerId);
        *timerId = 0;
    }
}

void QDlgScreen::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    if (width() < zr::kMinLayoutWidthPx)
        return;
    reLayout();
    m_pageControls.place();
    if (m_pNoVideo)
        m_pNoVideo->setGeometry(rect());
}

void QDlgScreen::mousePressEvent(QMouseEvent* event)
{
    QDialog::mousePressEvent(event);
    if (childAt(event->pos()))
        return; // a tile that passed its press on
    hub().broadcast(ZRMSG_GALLERY_PRESS, 0, 0);
    notifyLButtonClick();
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
    emit hub().notifyToolbar(rc, bShow);
}

void QDlgScreen::setCloseWhiteBoard()
{
    qDebug() << "the whiteboard was closed";
}

void QDlgScreen::notifyLButtonClick()
{
    hub().broadcast(ZRMSG_GALLERY_CLICK, 0, 0);
}
