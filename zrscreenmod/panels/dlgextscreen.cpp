#include "dlgextscreen.h"

#include "cplaywidget.h"
#include "platform.h"
#include "qdlgplayinfo.h"
#include "qtparent.h"
#include "qzrscreenconfig.h"

#include <QCloseEvent>
#include <QDebug>
#include <QKeyEvent>

QDlgExtScreen::QDlgExtScreen()
    : QDialog(nullptr)
{
    // A plain window: a dialog would be placed by a window manager.
    setWindowFlags(Qt::CustomizeWindowHint | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_QuitOnClose, false);
    setStyleSheet(QStringLiteral("QDlgExtScreen{background: rgb(12,16,23);}"));
    m_pTile = new CPlayWidget(this, false);
    m_pTile->playInfo()->setPlace(zr::TilePlace::ExtScreen);
    using Hub = QZRScreenConfig;
    connect(m_pTile, &CPlayWidget::mouseLClick, this, &QDlgExtScreen::onExtPlayWidgetLBtnClick);
    connect(&hub(), &Hub::notifyExtPreview, this, &QDlgExtScreen::onExtPreview);
    connect(this, &QDlgExtScreen::notifyUpdateDisplayInfo, this,
            &QDlgExtScreen::onUpdateDisplayInfo);
}

QDlgExtScreen::~QDlgExtScreen()
{
    hub().setExtUser(this, QString());
    m_gate.shut();
    delete m_pTile; // its overlay knows the record
}

QZRScreenConfig& QDlgExtScreen::hub() const
{
    return *QZRScreenConfig::getInstance();
}

void QDlgExtScreen::embedInto(HWND hParent)
{
    if (hParent)
        m_embedding.into(platform::toNative(hParent));
}

void QDlgExtScreen::place(const QRect& rect)
{
    m_embedding.place(rect);
    reportShown();
}

// --- The participant --------------------------------------------------------------------------

bool QDlgExtScreen::updatePersonInfo(void* pUserData, const QString& userID, bool bSelf, int iRole,
                                     const QString& name, int iColor)
{
    if (m_pPerson && m_pPerson->userID != userID) {
        removePerson();
    } else if (m_pPerson && pUserData == m_pPerson->pUserData && m_pPerson->bSelf == bSelf
               && m_pPerson->iRoteType == iRole && m_pPerson->userName == name
               && m_pPerson->iRoleExtra == iColor) {
        return false;
    }
    if (!pUserData) {
        if (m_pPerson) { // from here on nobody knows that the picture is theirs
            m_pPerson->pUserData = nullptr;
            m_pPerson->iPlayState = kPlayUnknown;
        }
        hub().setExtUser(this, QString());
        qDebug() << "pUserData==nullptr";
        return false;
    }
    qDebug() << "Ext UpdatePersonInfo,userID:" << userID;
    const bool isNew = !m_pPerson;
    if (isNew)
        m_pPerson = std::make_unique<tagPersonInfo>();
    m_pPerson->userID = userID;
    m_pPerson->userName = name;
    m_pPerson->bSelf = bSelf;
    m_pPerson->iRoteType = iRole;
    m_pPerson->iRoleExtra = iColor;
    m_pPerson->pUserData = pUserData;
    m_pPerson->pWidget = m_pTile;
    hub().setExtUser(this, userID);
    if (isNew)
        showPerson();
    else
        emit hub().participantChanged(m_pPerson.get());
    reportShown();
    return true;
}

void QDlgExtScreen::showPerson()
{
    m_pPerson->bShare = isShareScreenId(m_pPerson->userID);
    m_pTile->SetPersonInfo(m_pPerson.get(), false);
    m_pTile->playInfo()->setGeometry(rect());
    m_pTile->StopShow();
    m_pTile->StartShow();
    publishUserId(m_pPerson->userID);
    m_gate.open(m_pPerson.get());
}

void QDlgExtScreen::reportShown()
{
    if (isVisible() && m_pPerson && m_pPerson->pUserData && m_pPerson->iPlayState != kPlayShown)
        hub().setPersonShown(m_pPerson.get(), true);
}

void QDlgExtScreen::removePerson()
{
    m_gate.shut();
    publishUserId(QString());
    m_pTile->SetPersonInfo(nullptr, false);
    m_pPerson.reset();
}

void QDlgExtScreen::publishUserId(const QString& userId)
{
    const std::lock_guard lock(m_idLock);
    m_qstrUserId = userId;
}

bool QDlgExtScreen::isPerson(const QString& userId) const
{
    const std::lock_guard lock(m_idLock);
    return !m_qstrUserId.isEmpty() && m_qstrUserId == userId;
}

void QDlgExtScreen::setAllLook(bool bAllLook)
{
    if (!m_pPerson)
        return;
    m_pPerson->bLockLook = false;
    m_pPerson->bAllLook = bAllLook;
    emit hub().participantChanged(m_pPerson.get());
}

void QDlgExtScreen::setLockLook(bool bLockLook)
{
    if (!m_pPerson)
        return;
    m_pPerson->bLockLook = bLockLook;
    emit hub().participantChanged(m_pPerson.get());
}

void QDlgExtScreen::setMute(bool bMute)
{
    if (!m_pPerson)
        return;
    m_pPerson->bMute = bMute;
    emit hub().participantChanged(m_pPerson.get());
}

bool QDlgExtScreen::setVolume(const QString& userId, int iVolume)
{
    if (!m_pPerson || m_pPerson->userID != userId || !noteVolume(*m_pPerson, iVolume))
        return false;
    emit hub().participantChanged(m_pPerson.get());
    return true;
}

void QDlgExtScreen::setPreview(bool bPreview)
{
    if (!m_pPerson)
        return;
    setStreamOpen(*m_pPerson, bPreview);
    emit hub().participantChanged(m_pPerson.get());
}

void QDlgExtScreen::UpdateUserNetStatus(const QString& userId, int iType, bool bBad, int iLevel)
{
    if (m_pPerson && m_pPerson->userID == userId)
        m_pTile->UpdateNetStatus(iType, bBad, iLevel);
}

QRect QDlgExtScreen::pictureRect() const
{
    QRect rect = platform::rectOnScreen(*m_pTile);
    m_pTile->MapVideoRect(rect);
    return rect;
}

void QDlgExtScreen::onExtPreview(QString qstrUserID, bool bPreview)
{
    if (m_pPerson && m_pPerson->userID == qstrUserID)
        setPreview(bPreview);
}

// --- Frames -----------------------------------------------------------------------------------

bool QDlgExtScreen::playFrame(const VantrelRTCVideoFrameQT& frame)
{
    bool taken = false;
    m_gate.pass(m_gate.key(), [&] {
        taken = m_pPerson->frames.take(
            frame, m_pPerson->userID, [&] { m_pTile->PlayFrame(frame); },
            [this](int width, int height) { emit notifyUpdateDisplayInfo(width, height); });
    });
    return taken;
}

void QDlgExtScreen::onUpdateDisplayInfo(int /*iWidth*/, int /*iHeight*/)
{
    const QSize size = m_pPerson ? m_pPerson->frames.noticed() : QSize();
    if (size.isEmpty())
        return;
    const bool starts = isStreamRunning(*m_pPerson) && m_pPerson->iStreamStatus != kStreamRunning;
    const bool changed = starts || QSize(m_pPerson->iVideoWidth, m_pPerson->iVideoHeight) != size;
    m_pPerson->iVideoWidth = size.width();
    m_pPerson->iVideoHeight = size.height();
    if (starts)
        m_pPerson->iStreamStatus = kStreamRunning;
    if (changed)
        emit hub().participantChanged(m_pPerson.get());
}

// --- Events -----------------------------------------------------------------------------------

void QDlgExtScreen::onExtPlayWidgetLBtnClick(CPlayWidget* tile)
{
    // Both the host of this screen and the gallery listen.
    if (m_pPerson && m_pPerson->pUserData)
        emit hub().notifyClickExtPlayWidget(tile);
}

void QDlgExtScreen::resizeEvent(QResizeEvent* event)
{
    m_pTile->setGeometry(rect());
    m_pTile->ShowPlay();
    QDialog::resizeEvent(event);
}

void QDlgExtScreen::keyPressEvent(QKeyEvent* event)
{
    // Escape would close a dialog; the module's window belongs to the host.
    if (event->key() != Qt::Key_Escape)
        QDialog::keyPressEvent(event);
}

void QDlgExtScreen::closeEvent(QCloseEvent* event)
{
    event->ignore();
}
