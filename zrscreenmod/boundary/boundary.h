// What every export does with its arguments before it delegates: check handles, read strings and
// rectangles, choose the thread, and let no exception out.
#pragma once

#include "calltrace.h"
#include "guithread.h"
#include "libraryentry.h"
#include "qdlgmain.h"
#include "qdlgscreen.h"
#include "qzrscreenconfig.h"
#include "screenhandle.h"

#include <QDebug>
#include <QThread>

#include <cstddef>
#include <exception>
#include <optional>
#include <tuple>
#include <utility>

namespace boundary {

/// Lets every export that is entered from here on return its failure value at once: the process
/// ends, and Qt must not be used any more, not even for a log line. Any thread.
void closeForGood();
[[nodiscard]] bool isClosed();

/// Reads a zero-terminated text of the host's; null is empty. @return nothing, and a log line,
/// when the memory cannot be read.
[[nodiscard]] std::optional<QString> readUtf8(const char* text);
[[nodiscard]] std::optional<QString> readLocal8Bit(const char* text);
/// Reads a rectangle of the host's; a side that would not fit an int is cut. @return nothing, and
/// a log line, for null and for memory that cannot be read.
[[nodiscard]] std::optional<QRect> readRect(const tagRECT* pRect);

/// Copies the record of a frame: what was checked is what is played, whatever the caller's other
/// threads do. @return nothing, and a log line, when the memory cannot be read.
[[nodiscard]] std::optional<VantrelRTCVideoFrameQT> readFrame(const void* pFrame);
/// The same without a log line.
[[nodiscard]] std::optional<VantrelRTCVideoFrameQT> copyFrame(const void* pFrame);
/// Whether a notification function of the host's can be called, if there is one. @return false, and
/// a log line, when its memory cannot be read.
[[nodiscard]] bool isCallable(ZRNotify notify);

/// Whether the record and its texts can be read: the host may have been built with another standard
/// library.
[[nodiscard]] bool isReadableInfo(const __WTMark_Info* info);

/// Checks a play handle of a screen. @return an empty pin, and a log line, for a handle that is
/// null, deleted, unreadable or foreign, or whose participant is gone.
/// @param deletedText what is logged for a deleted one
[[nodiscard]] PersonPin
resolvePlay(const ScreenRef& screen, void* pPlay,
            const char* deletedText = "iter != pScreen->mapHadDelPlay.end() failed");

void logException(const char* what);

constexpr bool isSameName(const char* a, const char* b)
{
    for (; *a == *b; ++a, ++b) {
        if (*a == '\0')
            return true;
    }
    return false;
}

/// Has the tiles of all screens follow a setting that they depend on. Any thread.
void refreshAllTiles();

/// An export that is under way, for its log lines: they name it and the thread that has called.
struct CallSite
{
    const char* file;
    int line;
    const char* function;
    const void* thread;
    QDebug log(const char* label) const
    {
        return QMessageLogger(file, line, function).debug() << label << thread;
    }
};

/// Runs `body`; an exception ends here and gives `failure`.
template<typename Result, typename Body>
Result guarded(Result failure, Body&& body) noexcept
{
    try {
        return std::forward<Body>(body)();
    } catch (const std::exception& e) {
        logException(e.what());
    } catch (...) {
        logException("unknown");
    }
    return failure;
}

/// Has the GUI thread make something for a host with `build()`, and waits. @return its handle; null
/// when it was not made
template<typename Build>
void* buildHandle(Build&& build)
{
    void* handle = nullptr;
    const bool done = zr::buildForHost([&] { handle = build(); });
    return done ? handle : nullptr;
}

/// Has the GUI thread release what a handle stands for, and waits. Nothing for a null handle.
template<typename T>
void releaseHandle(HostHandles<T>& handles, const void* handle) noexcept
{
    if (handle) {
        guarded(false,
                [&] { return GuiThread::run([&handles, handle] { handles.release(handle); }); });
    }
}

/// Runs `body(pin)` on the calling thread. @return its result, or `failure` for an invalid handle
template<typename Result, typename T, typename Body>
Result with(const HostHandles<T>& handles, const void* handle, Result failure, Body&& body) noexcept
{
    return guarded(failure, [&]() -> Result {
        const Pin<T> object = handles.pin(handle);
        return object ? body(object) : failure;
    });
}

/// As with, for a participant of a screen: `body(screen, person)`. @return 0 for an invalid screen
/// or play handle
template<typename Body>
int withPerson(const void* hScreen, void* pPlay, Body&& body,
               const char* deletedText = "iter != pScreen->mapHadDelPlay.end() failed") noexcept
{
    return with(g_screens, hScreen, 0, [&](const ScreenRef& screen) {
        const PersonPin person = resolvePlay(screen, pPlay, deletedText);
        return person ? body(screen, person) : 0;
    });
}

/// Runs `body(object)` on the GUI thread: at once when called there, else queued in order. An
/// object that is released meanwhile drops it.
template<typename T, typename Body>
void post(const HostHandles<T>& handles, const void* handle, Body body)
{
    const auto work = [&handles, handle, body] {
        if (const Pin<T> object = handles.pin(handle))
            body(*object);
    };
    if (GuiThread::isCurrent())
        work();
    else
        GuiThread::post(work);
}

/// post for an embedded control. Nothing for a null handle.
template<typename T, typename Body>
void onControl(const HostHandles<T>& controls, const void* handle, Body body) noexcept
{
    guarded(false, [&] {
        if (handle) {
            post(controls, handle, [body](T& control) {
                const HostCall call; // on Windows a change of focus or parent calls the host
                body(control);
            });
        }
        return true;
    });
}

/// Runs `body(object)` on the GUI thread, waits and returns its result, or `failure` for an invalid
/// handle and when the GUI thread does not come to it.
template<typename Result, typename T, typename Body>
Result ask(const HostHandles<T>& handles, const void* handle, Result failure, Body&& body) noexcept
{
    return with(handles, handle, failure, [&](const Pin<T>& object) {
        Result result = failure;
        const auto work = [&] { result = body(*object); };
        return object.runOnGuiThread(work) ? result : failure; // which logs why not
    });
}

/// Runs `body(hub)` on the calling thread, for a valid screen. @return 1, or 0 for an invalid one
template<typename Body>
int onHub(void* hScreen, Body&& body) noexcept
{
    return with(g_screens, hScreen, 0, [&body](const ScreenRef&) {
        body(*QZRScreenConfig::getInstance());
        return 1;
    });
}

/// Posts `body(gallery)` for a screen.
template<typename Body>
void postToGallery(void* hScreen, Body body)
{
    post(g_screens, hScreen,
         [body](const ST_ZRScreenHdl& screen) { body(*screen.m_pDlgMain->gallery()); });
}

/// postToGallery for a valid screen. @return 1, or 0 for an invalid one
template<typename Body>
int onGallery(void* hScreen, Body body) noexcept
{
    return with(g_screens, hScreen, 0, [&](const ScreenRef&) {
        postToGallery(hScreen, std::move(body));
        return 1;
    });
}

/// As onGallery, for a participant: `body(gallery, person)`. @return 1, or 0 for an invalid screen
/// or play handle
template<typename Body>
int onPerson(void* hScreen, void* pPlay, Body body,
             const char* deletedText = "iter != pScreen->mapHadDelPlay.end() failed") noexcept
{
    // The pin is held until the work is queued: the record is freed behind it.
    const auto queue = [&](const ScreenRef&, const PersonPin& person) {
        postToGallery(hScreen, [body, p = person.get()](QDlgScreen& gallery) { body(gallery, p); });
        return 1;
    };
    return withPerson(hScreen, pPlay, queue, deletedText);
}

/// Asks `body(frameDialog)` of a screen.
template<typename Result, typename Body>
Result askDialog(void* hScreen, Result failure, Body&& body) noexcept
{
    return ask(g_screens, hScreen, failure,
               [&body](const ST_ZRScreenHdl& screen) { return body(*screen.m_pDlgMain); });
}

/// Asks `body(gallery)` of a screen.
template<typename Result, typename Body>
Result askGallery(void* hScreen, Result failure, Body&& body) noexcept
{
    return askDialog(hScreen, failure,
                     [&body](QDlgMain& dialog) { return body(*dialog.gallery()); });
}

} // namespace boundary

/// Where this stands, to be written in an export itself: a helper or a lambda would name itself.
#define ZR_CALL_SITE                                                                               \
    boundary::CallSite                                                                             \
    {                                                                                              \
        QT_MESSAGELOG_FILE, QT_MESSAGELOG_LINE, QT_MESSAGELOG_FUNC, QThread::currentThread()       \
    }

/// The log line with which every export begins, but for frames and for volumes that change nothing.
/// The label is the export's own.
#define ZR_LOG_THREAD(label) (ZR_CALL_SITE).log(label)

/// The first line of every export, with its arguments as it has them, references as addresses. When
/// the process ends it returns what a refused call does; while there is a trace it calls the export
/// once more from inside, to record the call and its answer.
#define ZR_ENTER(function, arguments)                                                              \
    do {                                                                                           \
        static_assert(boundary::isSameName(__FUNCTION__, #function),                               \
                      "another export's first line");                                              \
        constexpr const zr::Export& zrRow = zr::kExports[zr::table::k##function];                  \
        if (!zr::enterLibrary())                                                                   \
            return calltrace::refuse(zrRow, &(function));                                          \
        if (calltrace::isOn() && calltrace::isToBeRecorded())                                      \
            return calltrace::recordCall(zrRow, &(function), std::make_tuple arguments);           \
    } while (false)
