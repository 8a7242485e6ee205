#include "exthandle.h"

#include "cplaywidget.h"
#include "dlgextscreen.h"
#include "guithread.h"
#include "qzrscreenconfig.h"
#include "screenhandle.h"

#include <QAbstractEventDispatcher>
#include <QBasicTimer>
#include <QDebug>
#include <QScopedValueRollback>
#include <QThread>

#include <mutex>
#include <shared_mutex>
#include <unordered_set>
#include <utility>
#include <vector>

namespace {

std::shared_mutex s_extsLock;
std::unordered_set<const void*> s_exts; ///< handles that are valid
// GUI thread.
int s_iDialogs = 0; ///< also those of released handles that wait to be destroyed
int s_iReports = 0; ///< messages under way
std::vector<ST_ZRExtHdl*> s_retired;
/// What the end of the process left as it was. Only written: a leak checker reads it.
std::atomic<std::vector<const void*>*> s_abandoned{nullptr};

bool removeFromRegistry(const void* handle)
{
    const std::unique_lock<std::shared_mutex> lock(s_extsLock);
    return s_exts.erase(handle) != 0;
}

/// Waits for the calls that other threads have under way: no new one finds the handle any more.
void destroyExtScreen(ST_ZRExtHdl* ext)
{
    GuiThread::drainUntil([ext] { return ext->pins.load() == 0; });
    delete ext->m_pDlg;
    delete ext;
    --s_iDialogs;
    startAfreshIfUnused();
}

/// The GUI thread is inside a function of a host: what is on its stack must stay.
bool isInside()
{
    return s_iReports > 0 || QZRScreenConfig::getInstance()->broadcastDepth() > 0;
}

void destroyRetired()
{
    for (ST_ZRExtHdl* const ext : std::exchange(s_retired, {}))
        destroyExtScreen(ext);
}

/// Comes back to the retired ones: the host may run a loop of its own from inside a message.
class Reaper : public QObject
{
public:
    void watch() { m_timer.start(kRetryMs, this); }

protected:
    void timerEvent(QTimerEvent*) override
    {
        if (isInside())
            return;
        m_timer.stop();
        destroyRetired();
        // What was destroyed in a timer leaves the display with the next event of Qt's.
        QAbstractEventDispatcher::instance()->wakeUp();
    }

private:
    static constexpr int kRetryMs = 10;
    QBasicTimer m_timer;
};
Reaper* s_reaper = nullptr; ///< made when it is needed first

/// A click on the picture. The host may release the extended screen from inside the message.
void reportClick(ST_ZRExtHdl* ext, const void* tile)
{
    if (tile != ext->m_pDlg->tile())
        return;
    const QScopedValueRollback<int> inside(s_iReports, s_iReports + 1);
    ext->m_callback.UIMsgNotify(
        ZRMSG_EXT_CLICK, reinterpret_cast<quintptr>(ext),
        static_cast<qint64>(reinterpret_cast<qintptr>(ext->m_pDlg->person()->pUserData)));
}

} // namespace

bool CWin32ExtCallback::UIMsgNotify(unsigned long dwMsg, unsigned long long wParam,
                                    long long lParam)
{
    return forwardToHost(m_pHandle, dwMsg, wParam, lParam);
}

ExtRef::ExtRef(const void* handle)
{
    if (!handle)
        return;
    {
        const std::shared_lock<std::shared_mutex> lock(s_extsLock);
        if (s_exts.count(handle) != 0) {
            m_ext = static_cast<ST_ZRExtHdl*>(const_cast<void*>(handle));
            m_bPinned = !GuiThread::isCurrent();
            if (m_bPinned)
                m_ext->pins.fetch_add(1);
        }
    }
    if (!m_ext)
        qDebug() << "live extended screen failed, handle:" << handle;
}

ExtRef::~ExtRef()
{
    if (!m_bPinned)
        return;
    m_ext->pins.fetch_sub(1);
    GuiThread::wake(); // a release may be waiting for this call
}

ST_ZRExtHdl* createExtScreen(HWND hParent, ZRNotify notify)
{
    auto* const ext = new ST_ZRExtHdl;
    ext->m_hostNotify = notify;
    ext->m_callback.m_pHandle = ext;
    ext->m_hParent = hParent;
    ext->m_pDlg = new QDlgExtScreen;
    ext->m_pDlg->embedInto(hParent);
    QObject::connect(QZRScreenConfig::getInstance(), &QZRScreenConfig::notifyClickExtPlayWidget,
                     ext->m_pDlg, [ext](void* tile) { reportClick(ext, tile); });
    ++s_iDialogs;
    const std::unique_lock<std::shared_mutex> lock(s_extsLock);
    s_exts.insert(ext);
    return ext;
}

void releaseExtScreen(void* handle)
{
    if (!handle)
        return;
    if (!removeFromRegistry(handle)) {
        qDebug() << "live extended screen failed, handle:" << handle;
        return;
    }
    auto* const ext = static_cast<ST_ZRExtHdl*>(handle);
    // From here on its host hears of nothing, also when it goes later.
    ext->m_callback.m_pHandle = nullptr;
    if (!isInside()) {
        destroyExtScreen(ext);
        return;
    }
    ext->m_pDlg->hide();
    s_retired.push_back(ext);
    if (!s_reaper)
        s_reaper = new Reaper;
    s_reaper->watch();
}

void releaseAllExtScreens()
{
    std::unordered_set<const void*> left;
    {
        const std::unique_lock<std::shared_mutex> lock(s_extsLock);
        left.swap(s_exts);
    }
    for (const void* handle : left)
        destroyExtScreen(static_cast<ST_ZRExtHdl*>(const_cast<void*>(handle)));
    destroyRetired();
    delete std::exchange(s_reaper, nullptr);
}

bool isAnyExtScreenLeft()
{
    return s_iDialogs > 0;
}

void abandonAllExtScreens()
{
    auto* const abandoned = new std::vector<const void*>;
    {
        const std::unique_lock<std::shared_mutex> lock(s_extsLock);
        abandoned->assign(s_exts.begin(), s_exts.end());
        s_exts = {}; // without memory of its own it can be asked even after its destructor
    }
    s_abandoned = abandoned;
    // What is under way ends in a moment.
    constexpr int kAttempts = 100;
    for (const void* handle : *abandoned) {
        const auto* const ext = static_cast<const ST_ZRExtHdl*>(handle);
        for (int i = 0; ext->pins.load() > 0 && i < kAttempts; ++i)
            QThread::msleep(1);
    }
}
