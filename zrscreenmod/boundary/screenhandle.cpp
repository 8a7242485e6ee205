#include "screenhandle.h"

#include "exthandle.h"
#include "guithread.h"
#include "platform.h"
#include "qdlgmain.h"
#include "qzrscreenconfig.h"

#include <QBasicTimer>
#include <QDebug>
#include <QObject>
#include <QThread>

#include <algorithm>
#include <shared_mutex>
#include <unordered_set>
#include <utility>
#include <vector>

namespace {

std::shared_mutex s_screensLock;
std::unordered_set<const void*> s_screens; ///< handles that are valid
/// Screens that were released and are waiting to be destroyed. GUI thread.
std::vector<ST_ZRScreenHdl*> s_retired;
int s_iDialogs = 0; ///< of all screens that are not destroyed yet; GUI thread
/// Screens that the end of the process left as they were. Only written: a leak checker reads it.
std::atomic<std::vector<const ST_ZRScreenHdl*>*> s_abandoned{nullptr};

void destroyScreen(ST_ZRScreenHdl* screen)
{
    delete screen->m_pDlgMain;
    delete screen->m_pCallback;
    delete screen;
    --s_iDialogs;
    startAfreshIfUnused();
}

/// Destroying a screen under a call or a message of the GUI thread would pull the ground from
/// under the frames that are still on its stack.
bool isGuiThreadInside(const ST_ZRScreenHdl& screen)
{
    return screen.guiPins > 0 || QZRScreenConfig::getInstance()->broadcastDepth() > 0;
}

void destroyRetired(bool evenInside)
{
    const auto isBusy = [evenInside](const ST_ZRScreenHdl* screen) {
        return !evenInside && isGuiThreadInside(*screen);
    };
    const auto idle = std::partition(s_retired.begin(), s_retired.end(), isBusy);
    const std::vector<ST_ZRScreenHdl*> screens(idle, s_retired.end());
    s_retired.erase(idle, s_retired.end());
    for (ST_ZRScreenHdl* screen : screens) {
        // Another thread whose call released the screen may not have returned from it yet.
        GuiThread::drainUntil([screen] { return screen->pins.load() == screen->guiPins; });
        destroyScreen(screen);
    }
}

/// Comes back to the retired screens until the GUI thread is inside none of them: the host may run
/// a loop of its own from inside a message.
class Reaper : public QObject
{
public:
    void watch() { m_timer.start(kRetryMs, this); }

protected:
    void timerEvent(QTimerEvent*) override
    {
        destroyRetired(false);
        if (s_retired.empty())
            m_timer.stop();
    }

private:
    static constexpr int kRetryMs = 10;
    QBasicTimer m_timer;
};
Reaper* s_reaper = nullptr; ///< GUI thread

} // namespace

bool CWin32UICallback::UIMsgNotify(unsigned long dwMsg, unsigned long long wParam, long long lParam)
{
    return forwardToHost(m_pHandle, dwMsg, wParam, lParam);
}

void startAfreshIfUnused()
{
    // The settings belong to all screens, so they start afresh when the last one has gone.
    // Extended screens are connected to them as well.
    if (s_iDialogs > 0 || isAnyExtScreenLeft())
        return;
    QZRScreenConfig::destroyInstance();
    QZRScreenConfig::getInstance();
}

// --- Play handles -----------------------------------------------------------------------------

ST_ZRPlayHdl* ST_ZRScreenHdl::issuePlay(const QString& userId, const QString& userName)
{
    auto handle = std::make_unique<ST_ZRPlayHdl>();
    handle->userID = userId;
    handle->userName = userName;
    ST_ZRPlayHdl* issued = handle.get();
    bool reused = false;
    {
        const std::lock_guard<std::mutex> lock(m_playLock);
        reused = mapHadDelPlay.erase(issued) != 0;
        m_mapPlay.emplace(issued, IssuedPlay{std::move(handle), 0});
    }
    if (reused) // no lock is held while something is logged
        qDebug() << "iter != pScreen->mapHadDelPlay.end()";
    return issued;
}

void ST_ZRScreenHdl::bindPlay(ST_ZRPlayHdl* play, tagPersonInfo* person)
{
    const std::lock_guard<std::mutex> lock(m_playLock);
    play->pPlayData = person;
    m_mapPlay.at(play).personSerial = person->serial;
}

bool ST_ZRScreenHdl::deletePlay(void* pPlay)
{
    const std::lock_guard<std::mutex> lock(m_playLock);
    if (m_mapPlay.erase(pPlay) == 0)
        return false;
    mapHadDelPlay.emplace(pPlay, pPlay);
    return true;
}

PlayHandleState ST_ZRScreenHdl::findPlay(const void* pPlay, tagPersonInfo** person,
                                         quint64* serial) const
{
    {
        const std::lock_guard<std::mutex> lock(m_playLock);
        const auto issued = m_mapPlay.find(pPlay);
        if (issued != m_mapPlay.end()) {
            *person = issued->second.handle->pPlayData;
            *serial = issued->second.personSerial;
            return PlayHandleState::Valid;
        }
        if (mapHadDelPlay.count(pPlay) != 0)
            return PlayHandleState::Deleted;
    }
    return platform::isReadable(pPlay, kPlayHdlProbeSize) ? PlayHandleState::Foreign
                                                          : PlayHandleState::Unreadable;
}

void ST_ZRScreenHdl::setPlayUserName(const void* pPlay, const QString& userName)
{
    const std::lock_guard<std::mutex> lock(m_playLock);
    const auto issued = m_mapPlay.find(pPlay);
    if (issued != m_mapPlay.end())
        issued->second.handle->userName = userName;
}

// --- Screens ----------------------------------------------------------------------------------

ScreenRef::ScreenRef(void* hScreen)
{
    std::shared_lock<std::shared_mutex> lock(s_screensLock);
    if (s_screens.count(hScreen) == 0) {
        lock.unlock(); // a message handler may be anybody's
        qDebug() << "IsVaildScreenHandle failed";
        return;
    }
    m_screen = static_cast<ST_ZRScreenHdl*>(hScreen);
    m_screen->pins.fetch_add(1);
    m_bGuiThread = GuiThread::isCurrent();
    if (m_bGuiThread)
        ++m_screen->guiPins;
}

ScreenRef::~ScreenRef()
{
    if (!m_screen)
        return;
    if (m_bGuiThread)
        --m_screen->guiPins;
    m_screen->pins.fetch_sub(1);
    if (!m_bGuiThread)
        GuiThread::wake(); // a release may be waiting for this call
}

bool IsVaildScreenHandle(const void* hScreen)
{
    const std::shared_lock<std::shared_mutex> lock(s_screensLock);
    return s_screens.count(hScreen) != 0;
}

ST_ZRScreenHdl* createScreen(HWND hParent, ZRNotify notify)
{
    QZRScreenConfig* hub = QZRScreenConfig::getInstance();
    auto* screen = new ST_ZRScreenHdl;
    screen->m_hostNotify = notify;
    screen->m_pCallback = new CWin32UICallback;
    screen->m_pCallback->m_pHandle = screen;
    screen->m_hParent = hParent;
    screen->m_pDlgMain = new QDlgMain(nullptr);
    ++s_iDialogs;
    screen->m_pDlgMain->embedInto(hParent);
    screen->m_pDlgMain->show();
    hub->registerUICallback(screen->m_pCallback);
    const std::unique_lock<std::shared_mutex> lock(s_screensLock);
    s_screens.insert(screen);
    return screen;
}

void releaseScreen(void* hScreen)
{
    {
        const std::unique_lock<std::shared_mutex> lock(s_screensLock);
        if (s_screens.erase(hScreen) == 0) {
            qDebug() << "IsVaildScreenHandle failed";
            return;
        }
    }
    auto* screen = static_cast<ST_ZRScreenHdl*>(hScreen);
    QZRScreenConfig::getInstance()->unregisterUICallback(screen->m_pCallback);
    // From here on no new call finds the screen. Those of other threads may need the GUI thread
    // to end, so it works for them while it waits.
    GuiThread::drainUntil([screen] { return screen->pins.load() == screen->guiPins; });
    if (!isGuiThreadInside(*screen)) {
        destroyScreen(screen);
        return;
    }
    screen->m_pDlgMain->hide();
    s_retired.push_back(screen);
    if (!s_reaper)
        s_reaper = new Reaper;
    s_reaper->watch();
}

void releaseAllScreens()
{
    std::vector<void*> left;
    {
        const std::shared_lock<std::shared_mutex> lock(s_screensLock);
        for (const void* screen : s_screens)
            left.push_back(const_cast<void*>(screen));
    }
    for (void* screen : left)
        releaseScreen(screen);
    destroyRetired(true);
    delete std::exchange(s_reaper, nullptr);
}

void abandonAllScreens()
{
    auto* const abandoned = new std::vector<const ST_ZRScreenHdl*>;
    {
        const std::unique_lock<std::shared_mutex> lock(s_screensLock);
        for (const void* screen : s_screens)
            abandoned->push_back(static_cast<const ST_ZRScreenHdl*>(screen));
        // Empty and without memory of its own, the registry can be asked even after its destructor.
        s_screens = {};
    }
    s_abandoned = abandoned;
    // What is under way ends in a moment; a call that waits for the GUI thread may not.
    constexpr int kAttempts = 100;
    for (const ST_ZRScreenHdl* screen : *abandoned) {
        const int own = GuiThread::isCurrent() ? screen->guiPins : 0;
        for (int i = 0; screen->pins.load() > own && i < kAttempts; ++i)
            QThread::msleep(1);
    }
}
