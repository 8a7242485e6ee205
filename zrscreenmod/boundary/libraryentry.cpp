#include "libraryentry.h"

#include "boundary.h"
#include "diagnostics.h"
#include "guithread.h"
#include "hosthandles.h"
#include "language.h"
#include "platform.h"
#include "qmylogthread.h"
#include "qzrscreenconfig.h"
#include "surroundings.h"

#include <QApplication>
#include <QDebug>
#include <QOpenGLContext>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <future>
#include <limits>
#include <memory>
#include <thread>
#include <utility>

#ifdef _WIN32
#    include <windows.h>
#else
#    include <cxxabi.h>

/// Stands for this library towards the loader. The compiler provides it.
extern "C" __attribute__((visibility("hidden"))) void* __dso_handle; // NOLINT(bugprone-reserved-*)
#endif

QApplication* g_pApp = nullptr;
QMyLogThread* g_pLogThread = nullptr;

namespace {

// QApplication keeps a reference to its argument count.
int g_argc = 0;
bool g_ownsApp = false;
/// Repeats registerExitTeardown(). GUI thread.
QTimer* g_pRegistrationTimer = nullptr;

constexpr char kMessagePattern[] = "[%{time hh:mm:ss.zzz}][%{function}:%{line}]  %{message}";
constexpr char kQtMessagePattern[] = "%{if-category}%{category}: %{endif}%{message}";

/// Set while the module is attached. Any thread.
std::atomic<bool> g_attached{false};
std::atomic<bool> g_refusalTold{false};

/// How long another thread may wait for the GUI thread to come to its loop.
constexpr std::chrono::seconds kGuiThreadTimeout(1);

/// GUI thread.
void destroyInterface()
{
    delete std::exchange(g_pRegistrationTimer, nullptr);
    calltrace::endInput();
    releaseAllHandles();
    QZRScreenConfig::destroyInstance();
    forgetLanguage();
}

/// Has the GUI thread do `work` and waits for `reached`, which the work sets, but not for ever:
/// the GUI thread may be busy, or may wait for the calling thread. Any other thread.
template<typename Work>
bool onGuiThread(Work work)
{
    const auto reached = std::make_shared<std::promise<void>>();
    GuiThread::post([reached, work] { work(*reached); });
    return reached->get_future().wait_for(kGuiThreadTimeout) == std::future_status::ready;
}

/// Waits until the thread has written its lines and runs no code of the module any more.
/// @return false when that does not come about
bool endLogThread(QMyLogThread& thread);

/// Every line logged so far is in its file, and no more come. `leaveHandler` is the way to go.
void closeLog(bool (*leaveHandler)())
{
    QMyLogThread* const thread = std::exchange(g_pLogThread, nullptr);
    if (!thread)
        return;
    const bool unused = leaveHandler();
    const bool ended = endLogThread(*thread);
    // Rather lost memory than a thread that works on memory given back.
    if (unused && ended)
        delete thread;
}

/// Sees to it that the module comes to rest when the process ends with the library still loaded:
/// calls are refused, the GUI thread stands still, the log is written, and nothing is destroyed.
/// That must come early among the exit handlers, which run in the reverse order of their
/// registration, and Qt registers many on first use; so this is to be called again after something
/// has been built, and repeats itself. A no-op on Windows, where the system has ended all other
/// threads by then. GUI thread.
void registerExitTeardown();

/// Sees to it that the log thread has begun. Lines that were logged before wait for it. GUI thread.
void startLogThread()
{
    if (!g_pLogThread)
        return;
    g_pLogThread->start(QThread::InheritPriority); // does nothing when it runs
    constexpr int kBeginTimeoutMs = 5000;
    if (!g_pLogThread->waitUntilBegun(kBeginTimeoutMs))
        qWarning() << "start of the log thread failed";
}

/// Says why calls are refused, on stderr and in the log, if there is one: once, until the module is
/// attached anew. Any thread.
void refuse(const char* reason)
{
    if (g_refusalTold.exchange(true))
        return;
    std::fprintf(stderr, "ZRScreenMod: calls are refused: %s\n", reason);
    if (g_attached)
        qWarning() << "calls are refused:" << reason;
}

/// The application object to work with; null when there is none that could be used.
QApplication* obtainApplication()
{
    QCoreApplication* const existing = QCoreApplication::instance();
    // A program with widgets of its own makes its object later. There can be one only, and the
    // program's would fail in its destructor.
    if (!existing && platform::programUsesWidgets())
        return nullptr;
    if (!existing) {
        QCoreApplication::setAttribute(Qt::AA_DisableHighDpiScaling, true);
        QApplication* const created = platform::createApplication(g_argc, nullptr);
        g_ownsApp = created != nullptr;
        if (!created)
            refuse("Qt's platform plug-in is not found; it belongs in a folder \"platforms\" "
                   "beside the program, or on Windows beside the library");
        return created;
    }
    // A process has one application object at most. That of a host which uses Qt itself will do,
    // provided that it can carry widgets and that this is its thread.
    g_ownsApp = false;
    auto* const app = qobject_cast<QApplication*>(existing);
    if (!app || app->thread() != QThread::currentThread()) {
        refuse("the program's application object is no QApplication, or on another thread");
        return nullptr;
    }
    return app;
}

} // namespace

void zr::attachLibrary()
{
    if (g_pApp)
        return;
    g_pApp = obtainApplication();
    if (!g_pApp)
        return;
    g_refusalTold = false;
    platform::keepQtLoaded();
    g_pLogThread = new QMyLogThread;
#ifndef _WIN32
    g_pLogThread->start(QThread::InheritPriority);
#endif
    qSetMessagePattern(kMessagePattern);
    installLogHandler(g_pLogThread);
    qDebug() << "\r\n\r\n Init sys";
    logSurroundings();
    printExefileInfo();
    globalCleanLog();
    createTmpFrameDir();
    GuiThread::init();
    QZRScreenConfig::getInstance();
    chooseLanguage();
    calltrace::beginIfAsked();
    g_attached = true; // other threads find all of it from here on
    // A host's own application object may end before the library does.
    qAddPostRoutine(detachLibrary);
    registerExitTeardown();
}

bool zr::enterLibrary()
{
    if (g_attached)
        return true;
    if (boundary::isClosed() || QCoreApplication::closingDown())
        return false;
    const QCoreApplication* const app = QCoreApplication::instance();
    if (!app)
        refuse("the program uses Qt and has no QApplication at this time");
    else if (app->thread() != QThread::currentThread())
        refuse("the first one must come on the thread of the program's QApplication");
    else
        attachLibrary();
    return g_attached;
}

bool zr::buildForHost(const std::function<void()>& build)
{
    return GuiThread::run([&build] {
        if (QCoreApplication::instance() != g_pApp) {
            refuse("the program has made a QApplication after the library had made one");
            return;
        }
        startLogThread();
        build();
        registerExitTeardown();
    });
}

void zr::detachLibrary()
{
    if (!g_attached.exchange(false))
        return;
    qRemovePostRoutine(detachLibrary);
    const bool onOwnThread = GuiThread::isCurrent();
    if (onOwnThread) {
        destroyInterface();
    } else {
        // The host breaks the rule to unload where it has loaded.
        const bool done = onGuiThread([](std::promise<void>& reached) {
            destroyInterface();
            reached.set_value();
        });
        if (!done)
            qDebug() << "end of the interface failed";
    }
    GuiThread::shutdown();
    calltrace::end();
    closeLog(removeLogHandler);
    platform::keepQtLoaded(); // the GL driver came with the first tile
    QApplication* const app = std::exchange(g_pApp, nullptr);
    if (g_ownsApp && onOwnThread)
        delete app;
    qSetMessagePattern(kQtMessagePattern);
}

#ifdef _WIN32

namespace {

// Under the loader's lock no thread of the system comes to its end. This waits less far, until the
// thread is outside the module.
bool endLogThread(QMyLogThread& thread)
{
    constexpr int kTimeoutMs = 10000;
    if (thread.finish(kTimeoutMs))
        return true;
    // A stalled disk. The code under the thread is about to go.
    thread.terminate();
    return thread.finish(kTimeoutMs);
}

/// At the end of the process the system has ended all other threads already, wherever they were:
/// waiting for one, or for a lock that it held, would never end. One of Qt's locks is taken for
/// every message, so nothing is logged from here on.
void writeLastLines()
{
    if (!g_pLogThread)
        return;
    abandonLogMessages();
    g_pLogThread->writeWaitingLines();
}

void registerExitTeardown() {}

} // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID processEnds)
{
    if (reason == DLL_PROCESS_ATTACH)
        zr::attachLibrary();
    else if (reason == DLL_PROCESS_DETACH && processEnds)
        writeLastLines();
    else if (reason == DLL_PROCESS_DETACH)
        zr::detachLibrary();
    return TRUE;
}

#else

namespace {

bool endLogThread(QMyLogThread& thread)
{
    return thread.finish();
}

} // namespace

namespace {

/// The process ends with the library loaded. Static objects that Qt has made on first use go before
/// this, others after it, so from here on nothing of Qt's may be relied upon: destroying a widget
/// or the application object would be a way to crash. The system takes them with the process.
/// What must stop is everything that would still run: the calls of the host's other threads, the
/// GUI thread, the log.
void endWithProcess()
{
    if (!g_attached.exchange(false))
        return;
    boundary::closeForGood();
    qRemovePostRoutine(zr::detachLibrary);
    if (!GuiThread::isCurrent()) {
        // Another thread ends the process while the GUI thread is alive and about to paint.
        // It stands still meanwhile; not for ever, should the end itself wait for it.
        (void)onGuiThread([](std::promise<void>& reached) {
            reached.set_value();
            std::this_thread::sleep_for(std::chrono::seconds(5));
        });
    }
    abandonAllHandles();
    GuiThread::shutdown();
    calltrace::end();
    closeLog(dropLogMessages);
    // The host may still unload the module, in a destructor of its own.
    platform::keepModuleLoaded();
}

/// As std::atexit, but tells which library asks: the atexit of the thread sanitizer does not, and
/// calls the handler after the module has been unloaded.
void registerExitHandler()
{
    abi::__cxa_atexit([](void*) { endWithProcess(); }, nullptr, &__dso_handle);
}

void registerExitTeardown()
{
    // Makes Qt's storage of the current GL context, which every paint asks.
    (void)QOpenGLContext::currentContext();
    registerExitHandler();
    if (!g_pRegistrationTimer) {
        g_pRegistrationTimer = new QTimer;
        g_pRegistrationTimer->setSingleShot(true);
        QObject::connect(g_pRegistrationTimer, &QTimer::timeout, [] {
            registerExitHandler();
            const int intervalMs = g_pRegistrationTimer->interval();
            if (intervalMs <= std::numeric_limits<int>::max() / 2)
                g_pRegistrationTimer->start(intervalMs * 2);
        });
    }
    // The first paint, the first text and so on come later, and bring static objects with them
    // that the GUI thread must not find gone. At doubling intervals a handful of registrations
    // covers days.
    constexpr int kFirstIntervalMs = 20;
    g_pRegistrationTimer->start(kFirstIntervalMs);
}

// This file is linked last, so its initialiser runs last: the module's static objects exist.
__attribute__((constructor)) void onLoad()
{
    zr::attachLibrary();
}

// On unload this comes before the exit handlers and the destructors of the module's static objects.
// At the end of the process it comes after them, and finds that endWithProcess() has been there.
__attribute__((destructor)) void onUnload()
{
    zr::detachLibrary();
}

} // namespace

#endif
