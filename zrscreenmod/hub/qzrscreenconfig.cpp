#include "qzrscreenconfig.h"

#include "i420frame.h"
#include "logfolder.h"
#include "meetingmode.h"
#include "platform.h"
#include "screenscale.h"
#include "statistics.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QScreen>
#include <QSettings>
#include <QThread>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

std::atomic<QZRScreenConfig*> s_instance{nullptr};
std::mutex s_creationLock;
std::shared_mutex s_lifetimeLock;
HostCallbacks s_dateHosts;  ///< GUI thread
std::mutex s_watermarkLock; ///< guards the two below
zr::WatermarkInfo s_watermark;
QString s_watermarkText; ///< what the record comes to, built once for each change

/// A text of the host's as part of a file name: no separators, nothing a file system refuses.
QString fileNamePart(QString text)
{
    static const QRegularExpression unsafe(QStringLiteral(R"([\\/:*?"<>|\x00-\x1f])"));
    return text.replace(unsafe, QStringLiteral("_")).left(100);
}

} // namespace

QString iniFile()
{
    const QString chosen = qEnvironmentVariable("ZRSCREEN_INI");
    return chosen.isEmpty()
               ? QCoreApplication::applicationDirPath() + QStringLiteral("/user_data/sys_ver.ini")
               : chosen;
}

zr::OverlaySwitches readOverlaySwitches(const QString& iniFile)
{
    const QSettings file(iniFile, QSettings::IniFormat);
    zr::OverlaySwitches switches;
    const auto read = [&file](const char* key, bool& value) {
        value = file.value(QLatin1String(key), value).toBool();
    };
    read("version/show_resolution", switches.showResolution);
    read("overlay/speaking_highlight", switches.speakingHighlight);
    read("overlay/all_hands", switches.allHands);
    read("overlay/larger_text", switches.largerText);
    read("overlay/hidden_video", switches.hiddenVideo);
    switches.lookOwner = file.value(QStringLiteral("overlay/look_owner"), 0).toInt();
    return switches;
}

QZRScreenConfig::Lock::Lock()
    : m_lock(s_lifetimeLock)
{
}

QZRScreenConfig* QZRScreenConfig::getInstance()
{
    if (QZRScreenConfig* hub = s_instance.load(std::memory_order_acquire))
        return hub;
    const std::lock_guard<std::mutex> lock(s_creationLock);
    if (!s_instance.load(std::memory_order_acquire)) {
        auto* hub = new QZRScreenConfig;
        if (const QCoreApplication* app = QCoreApplication::instance())
            hub->moveToThread(app->thread());
        s_instance.store(hub, std::memory_order_release);
    }
    return s_instance.load(std::memory_order_acquire);
}

void QZRScreenConfig::destroyInstance()
{
    const std::unique_lock<std::shared_mutex> lock(s_lifetimeLock);
    delete s_instance.exchange(nullptr);
}

QZRScreenConfig::QZRScreenConfig()
    : m_clock(platform::steadyMs)
{
    getImgPrefix();
    readVersionFile();
    watchScreens();
    m_pStatistics = Statistics::makeIfAsked(this);
    if (m_pStatistics && m_pStatistics->isOverlayWanted()) {
        m_overlaySwitches.showResolution = m_overlaySwitches.showStream = true;
        connect(m_pStatistics, &Statistics::sampled, this, &QZRScreenConfig::sigRefreshPlayDlg);
    }
}

QZRScreenConfig::~QZRScreenConfig() = default;

void QZRScreenConfig::readVersionFile()
{
    const QSettings file(iniFile(), QSettings::IniFormat);
    m_bCacheFrame = file.value(QStringLiteral("version/cache_frame"), false).toBool();
    m_overlaySwitches = readOverlaySwitches(file.fileName());
}

// --- What tiles show --------------------------------------------------------------------------

void QZRScreenConfig::setOverlaySwitches(const zr::OverlaySwitches& switches)
{
    m_overlaySwitches = switches;
    emit sigRefreshPlayDlg();
}

zr::TileSettings QZRScreenConfig::tileSettings() const
{
    return {curScreenMode(), settings.pauseShare, getWatermarkText(), m_overlaySwitches};
}

QString QZRScreenConfig::shareName(const QString& userId) const
{
    const tagPersonInfo* eldest = nullptr; // two galleries may have it
    livePersons.forEach([&](const tagPersonInfo& person) {
        if (person.bShare && person.userID == userId && !person.userName.isEmpty()
            && (!eldest || person.serial < eldest->serial))
            eldest = &person;
    });
    return eldest ? eldest->userName : QString();
}

// --- Meeting mode, screen ---------------------------------------------------------------------

void QZRScreenConfig::setCurScreenMode(int mode)
{
    const int before = m_iCurMode.exchange(mode);
    if (before == mode)
        return;
    if (mode == eLayoutShare)
        m_iModeBeforeShareMode = before;
    emit sigRefreshPlayDlg();
    emit notifyCurScreenMode(mode);
}

void QZRScreenConfig::switchMode(int mode)
{
    setCurScreenMode(mode);
    emit modSignalSwitchMode(mode);
}

void QZRScreenConfig::endMeeting()
{
    setShareSponsor({});
    settings.pauseShare = false;
    emit sigRefreshPlayDlg();
    clearSubtitles(); // the ids of the next meeting's may be lower, and would be trimmed at once
    m_iModeBeforeShareMode = eLayoutEqualCut;
    setCurScreenMode(eLayoutEqualCut); // last: the hosts are told
}

QString QZRScreenConfig::getImgPrefix()
{
    const int width = platform::screenWidthPx();
    qDebug() << "QZRScreenConfig width:" << width;
    setScreenWidth(width);
    return m_qstrImgPrefix;
}

void QZRScreenConfig::setScreenWidth(int widthPx)
{
    m_b4K = zr::isHighResolutionScreen(widthPx);
    const QString prefix = m_b4K ? QStringLiteral(":/pic4k/") : QStringLiteral(":/pic/");
    if (std::exchange(m_qstrImgPrefix, prefix) == prefix)
        return;
    emit sigRefreshPlayDlg();
    emit screenScaleChanged();
}

void QZRScreenConfig::watchScreens()
{
    const auto* app = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    if (!app)
        return;
    // Queued: what Qt tells of its screens is complete when it has ended telling.
    const auto watch = [this](const QScreen* screen) {
        if (screen)
            connect(screen, &QScreen::geometryChanged, this, &QZRScreenConfig::getImgPrefix,
                    Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection));
    };
    connect(app, &QGuiApplication::primaryScreenChanged, this, [this, watch](QScreen* screen) {
        watch(screen);
        QMetaObject::invokeMethod(this, &QZRScreenConfig::getImgPrefix, Qt::QueuedConnection);
    });
    watch(QGuiApplication::primaryScreen());
}

int QZRScreenConfig::scaled(int value, float factor) const
{
    return zr::scaledSize(value, factor, m_b4K);
}

void QZRScreenConfig::dumpFrame(const tagPersonInfo& person,
                                const VantrelRTCVideoFrameQT& frame) const
{
    const QString name = QStringLiteral("(%1)%2_%3x%4.yuv")
                             .arg(fileNamePart(personName(person)), fileNamePart(person.userID),
                                  QString::number(frame.width), QString::number(frame.height));
    QFile file(logFolder() + QStringLiteral("/tmpFrame/") + name);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return;
    file.write(reinterpret_cast<const char*>(frame.pData),
               static_cast<qint64>(zr::sourceLayout(frame.width, frame.height).totalBytes()));
}

// --- Live participants -----------------------------------------------------------------------

void QZRScreenConfig::addLivePerson(tagPersonInfo* person)
{
    if (person->bShare && !hasLiveShare())
        m_iModeBeforeFirstShare = curScreenMode();
    livePersons.insert(person);
}

bool QZRScreenConfig::hasLiveShare() const
{
    bool found = false;
    livePersons.forEach([&found](const tagPersonInfo& person) { found = found || person.bShare; });
    return found;
}

void QZRScreenConfig::setPersonName(tagPersonInfo* person, const QString& name)
{
    const std::lock_guard<std::mutex> lock(m_textLock);
    person->userName = name;
}

QString QZRScreenConfig::personName(const tagPersonInfo& person) const
{
    const std::lock_guard<std::mutex> lock(m_textLock);
    return person.userName;
}

void QZRScreenConfig::setPersonShown(tagPersonInfo* person, bool bShown)
{
    if (!person)
        return;
    // A page that is turned back soon costs the host nothing.
    const qint64 againMs = person->camera.tellAgainMs();
    if (bShown && person->iPlayState == kPlayShown && (againMs < 0 || againMs > nowMs()))
        return;
    const int before = std::exchange(person->iPlayState, bShown ? kPlayShown : kPlayHidden);
    if (before == kPlayHidden)
        person->framesBefore = person->frames.taken();
    if (bShown)
        person->camera.tellShown(nowMs());
    else
        person->camera.tellHidden(nowMs());
    emit participantChanged(person);
    const int times = ++(bShown ? person->iTimesShown : person->iTimesHidden);
    broadcast(bShown ? ZRMSG_VIDEO_SHOWN : ZRMSG_VIDEO_HIDDEN, person, [=] {
        return person->iPlayState == (bShown ? kPlayShown : kPlayHidden)
               && times == (bShown ? person->iTimesShown : person->iTimesHidden);
    });
}

// --- Extended screens ---

void QZRScreenConfig::setExtUser(const void* extScreen, const QString& userId)
{
    const QString before = m_mapExtUser.take(extScreen);
    if (!userId.isEmpty())
        m_mapExtUser.insert(extScreen, userId);
    if (!before.isEmpty() && !isExtUser(before))
        emit notifyExtUserLeft(before);
}

bool QZRScreenConfig::isExtUser(const QString& userId) const
{
    return std::find(m_mapExtUser.begin(), m_mapExtUser.end(), userId) != m_mapExtUser.end();
}

// --- Host callbacks ---------------------------------------------------------------------------

void QZRScreenConfig::registerDateCallback(CAbsUIMsgCallback* callback)
{
    s_dateHosts.add(callback);
}

bool QZRScreenConfig::unregisterDateCallback(CAbsUIMsgCallback* callback)
{
    return s_dateHosts.remove(callback);
}

void QZRScreenConfig::broadcast(unsigned long dwMsg, unsigned long long wParam, long long lParam,
                                const std::function<bool()>& holds)
{
    m_hosts.send(dwMsg, wParam, lParam, holds);
}

void QZRScreenConfig::broadcastDate(unsigned long dwMsg, unsigned long long wParam,
                                    long long lParam)
{
    s_dateHosts.send(dwMsg, wParam, lParam);
}

void QZRScreenConfig::broadcast(unsigned long dwMsg, const tagPersonInfo* person,
                                const std::function<bool()>& holds)
{
    const auto record = reinterpret_cast<quintptr>(person);
    const long long hostValue =
        person ? static_cast<long long>(reinterpret_cast<qintptr>(person->pUserData)) : 0;
    if (!livePersons.contains(person)) // nobody, or whom an extended screen shows
        return broadcast(dwMsg, record, hostValue);
    broadcast(dwMsg, record, hostValue, [&, serial = person->serial] {
        return livePersons.contains(person) && person->serial == serial && (!holds || holds());
    });
}

// --- Galleries --------------------------------------------------------------------------------

void QZRScreenConfig::addGallery(QDlgScreen* gallery)
{
    m_vecGallery.push_back(gallery);
    m_pDlgScreen = gallery;
}

void QZRScreenConfig::removeGallery(QDlgScreen* gallery)
{
    m_vecGallery.erase(std::remove(m_vecGallery.begin(), m_vecGallery.end(), gallery),
                       m_vecGallery.end());
    m_pDlgScreen = m_vecGallery.empty() ? nullptr : m_vecGallery.back();
}

// --- Subtitles --------------------------------------------------------------------------------

void QZRScreenConfig::setSubtitleOpen(bool bOpen)
{
    settings.subtitleOpen = bOpen;
    clearSubtitles();
}

void QZRScreenConfig::AddOneSubtitle(int iIDSentence, int iColorType, const QString& userName,
                                     const QString& transStr)
{
    qDebug() << "mapSubtitles.size:"
             << m_subtitles.add(iIDSentence, {iColorType, userName, transStr});
    qDebug() << "iIDSentence:" << iIDSentence << ",iColorType:" << iColorType
             << ",userName:" << userName << "\ttransStr:" << transStr;
    emit modSignalAddSubtitle();
    emit notifyAddSubtitle(iIDSentence);
    // Trimmed after the signals: a panel may see one sentence more for a moment.
    m_subtitles.trim();
}

void QZRScreenConfig::clearSubtitles()
{
    m_subtitles.clear();
    emit notifyCleanSubtitle();
}

bool QZRScreenConfig::isModeWithoutSubtitle(int mode) const
{
    return zr::isSpeakerMode(mode < 1 ? curScreenMode() : mode);
}

bool QZRScreenConfig::isSubtitleSuppressed() const
{
    return isModeWithoutSubtitle(-1) || curScreenMode() == eLayoutShare;
}

// --- Sharing ----------------------------------------------------------------------------------

void QZRScreenConfig::setShareSponsor(const QString& userId)
{
    const std::lock_guard<std::mutex> lock(m_textLock);
    m_qstrShareSponsor = userId;
}

QString QZRScreenConfig::shareSponsor() const
{
    const std::lock_guard<std::mutex> lock(m_textLock);
    return m_qstrShareSponsor;
}

void QZRScreenConfig::setWatermarkInfo(zr::WatermarkInfo info)
{
    const std::lock_guard<std::mutex> lock(s_watermarkLock);
    s_watermarkText = zr::watermarkText(info);
    std::swap(s_watermark, info);
}

void QZRScreenConfig::setWatermarkEnabled(bool bEnabled)
{
    const std::lock_guard<std::mutex> lock(s_watermarkLock);
    s_watermark.enabled = bEnabled;
    s_watermarkText = zr::watermarkText(s_watermark);
}

QString QZRScreenConfig::getWatermarkText() const
{
    const std::lock_guard<std::mutex> lock(s_watermarkLock);
    return s_watermarkText;
}
