#include "libraryentry.h"

#include "diagnostics.h"
#include "guithread.h"
#include "platform.h"
#include "qmylogthread.h"
#include "qzrscreenconfig.h"
#include "screenhandle.h"

#include <QApplication>
#include <QDebug>
#include <QThread>

#include <utility>

#ifdef _WIN32
#    include <windows.h>
#else
#    include <cstdlib>
#endif

QApplication* g_pApp = nullptr;
QMyLogThread* g_pLogThread = nullptr;

namespace {

// QApplication keeps a reference to its argument count.
int g_argc = 0;
bool g_ownsApp = false;

constexpr char kMessagePattern[] = "[%{time hh:mm:ss.zzz}][%{function}:%{line}]  %{message}";
constexpr char kQtMessagePattern[] = "%{if-category}%{category}: %{endif}%{message}";

/// How long the end of the process may wait for the GUI thread.
constexpr int kForeignDetachTimeoutMs = 1000;

/// GUI thread.
void destroyInterface()
{
    releaseAllScreens();
    QZRScreenConfig::destroyInstance();
}

/// Waits until the thread has written its lines and runs no code of the module any more.
/// @return false when that does not come about
bool endLogThread(QMyLogThread& thread);

/// Messages go to Qt's own handler again, and every line logged so far is in its file.
void closeLog()
{
    QMyLogThread* const thread = std::exchange(g_pLogThread, nullptr);
    if (!thread)
        return;
    const bool unused = removeLogHandler();
    const bool ended = endLogThread(*thread);
    // Rather lost memory than a thread that works on memory given back.
    if (unused && ended)
        delete thread;
}

/// The application object to work with; null when there is none that could be used.
QApplication* obtainApplication()
{
    QCoreApplication* const existing = QCoreApplication::instance();
    if (!existing) {
        QCoreApplication::setAttribute(Qt::AA_DisableHighDpiScaling, true);
        g_ownsApp = true;
        return platform::createApplication(g_argc, nullptr);
    }
    // A process has one application object at most. That of a host which uses Qt itself will do,
    // provided that it can carry widgets and that this is its thread.
    g_ownsApp = false;
    auto* const app = qobject_cast<QApplication*>(existing);
    if (!app || app->thread() != QThread::currentThread()) {
        qWarning() << "usable QApplication failed";
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
    platform::keepQtLoaded();
    g_pLogThread = new QMyLogThread;
#ifndef _WIN32
    g_pLogThread->start(QThread::InheritPriority);
#endif
    qSetMessagePattern(kMessagePattern);
    installLogHandler(g_pLogThread);
    qDebug() << "\r\n\r\n Init sys";
    printExefileInfo();
    globalCleanLog();
    createTmpFrameDir();
    GuiThread::init();
    QZRScreenConfig::getInstance();
    // A host's own application object may end before the library does.
    qAddPostRoutine(detachLibrary);
    registerExitTeardown();
}

void zr::startLogThread()
{
    if (!g_pLogThread)
        return;
    g_pLogThread->start(QThread::InheritPriority); // does nothing when it runs
    constexpr int kBeginTimeoutMs = 5000;
    if (!g_pLogThread->waitUntilBegun(kBeginTimeoutMs))
        qWarning() << "start of the log thread failed";
}

void zr::detachLibrary()
{
    if (!g_pApp)
        return;
    QApplication* const app = std::exchange(g_pApp, nullptr);
    qRemovePostRoutine(detachLibrary);
    if (!GuiThread::isCurrent()) {
        // The process is being ended by another thread (or the host breaks the rule to unload
        // where it has loaded). The GUI thread may be in the middle of its work, and static
        // objects that it needs are about to go. It is the one that can destroy the widgets; if
        // it does not come to its loop, they stay, and the end of the process takes them.
        if (!GuiThread::run(destroyInterface, kForeignDetachTimeoutMs))
            qDebug() << "end of the interface failed";
        GuiThread::shutdown();
        closeLog();
        return;
    }
    destroyInterface();
    GuiThread::shutdown();
    closeLog();
    platform::keepQtLoaded(); // the GL driver came with the first tile
    if (g_ownsApp)
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
/// waiting for one, or for a lock that it held, would never end.
void writeLastLines()
{
    if (!g_pLogThread)
        return;
    (void)removeLogHandler();
    g_pLogThread->writeWaitingLines();
}

} // namespace

void zr::registerExitTeardown() {}

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

void zr::registerExitTeardown()
{
    std::atexit(detachLibrary);
}

namespace {

__attribute__((constructor)) void onLoad()
{
    zr::attachLibrary();
}

// On unload this comes before the destructors of the module's static objects, at the end of the
// process after them; by then registerExitTeardown() has done the work.
__attribute__((destructor)) void onUnload()
{
    zr::detachLibrary();
}

} // namespace

#endif
