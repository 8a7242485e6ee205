// What every export does with its arguments before it delegates: check handles, read strings and
// rectangles, choose the thread, and let no exception out.
#pragma once

#include "guithread.h"
#include "qdlgmain.h"
#include "qdlgscreen.h"
#include "qzrscreenconfig.h"
#include "screenhandle.h"

#include <QDebug>
#include <QThread>

#include <exception>
#include <optional>
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

/// A checked play handle: the participant, kept in memory.
struct PlayRef
{
    PersonPin pin;
    tagPersonInfo* person = nullptr;
};
/// Checks a play handle of a screen. @return an empty reference, and a log line, for a handle that
/// is null, deleted, unreadable or foreign, or whose participant is gone.
/// @param deletedText what is logged for a deleted one
[[nodiscard]] PlayRef
resolvePlay(const ScreenRef& screen, void* pPlay,
            const char* deletedText = "iter != pScreen->mapHadDelPlay.end() failed");

void logException(const char* what);

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

/// Runs `body(hub)` on the calling thread, for a valid screen. @return 1, or 0 for an invalid one
template<typename Body>
int onHub(void* hScreen, Body&& body) noexcept
{
    return guarded(0, [&] {
        const ScreenRef screen(hScreen);
        if (!screen)
            return 0;
        body(*QZRScreenConfig::getInstance());
        return 1;
    });
}

/// Runs `body(gallery)` on the GUI thread: at once when called there, else queued in order. A
/// screen that is released meanwhile drops it.
template<typename Body>
void postToGallery(void* hScreen, Body body)
{
    const auto work = [hScreen, body] {
        const ScreenRef screen(hScreen);
        if (screen)
            body(*screen->m_pDlgMain->gallery());
    };
    if (GuiThread::isCurrent())
        work();
    else
        GuiThread::post(work);
}

/// postToGallery for a valid screen. @return 1, or 0 for an invalid one
template<typename Body>
int onGallery(void* hScreen, Body body) noexcept
{
    return guarded(0, [&] {
        if (!IsVaildScreenHandle(hScreen)) {
            qDebug() << "IsVaildScreenHandle failed";
            return 0;
        }
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
    return guarded(0, [&] {
        const ScreenRef screen(hScreen);
        if (!screen)
            return 0;
        // The pin is held until the work is queued: the record is freed behind it.
        const PlayRef play = resolvePlay(screen, pPlay, deletedText);
        if (!play.person)
            return 0;
        postToGallery(hScreen,
                      [body, person = play.person](QDlgScreen& gallery) { body(gallery, person); });
        return 1;
    });
}

/// Runs `body(frameDialog)` on the GUI thread and returns its result.
template<typename Result, typename Body>
Result askDialog(void* hScreen, Result failure, Body&& body) noexcept
{
    return guarded(failure, [&]() -> Result {
        const ScreenRef screen(hScreen);
        if (!screen)
            return failure;
        Result result = failure;
        const auto work = [&] {
            const GuiStay stay(screen);
            result = body(*screen->m_pDlgMain);
        };
        return GuiThread::run(work) ? result : failure; // which logs why not
    });
}

/// Runs `body(gallery)` on the GUI thread and returns its result.
template<typename Result, typename Body>
Result askGallery(void* hScreen, Result failure, Body&& body) noexcept
{
    return askDialog(hScreen, failure,
                     [&body](QDlgMain& dialog) -> Result { return body(*dialog.gallery()); });
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

/// The first line of every export.
#define ZR_ENTER_OR_RETURN(failure)                                                                \
    do {                                                                                           \
        if (boundary::isClosed())                                                                  \
            return failure;                                                                        \
    } while (false)
