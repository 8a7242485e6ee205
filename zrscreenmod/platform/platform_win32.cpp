#include "platform.h"

#include "platformplugin.h"
#include "qtparent.h"
#include "scopedenvironment.h"

#include <QAbstractNativeEventFilter>
#include <QApplication>
#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

#ifndef NOMINMAX
#    define NOMINMAX
#endif
#include <windows.h>

namespace {

HWND toHwnd(platform::NativeWindow window)
{
    return reinterpret_cast<HWND>(window);
}

// --- Application ----------------------------------------------------------------------------

/// The library that an address lies in, null when the system does not tell. Its reference count
/// stays as it is.
HMODULE libraryOf(const void* address)
{
    HMODULE library = nullptr;
    if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS
                                | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                            static_cast<LPCWSTR>(address), &library))
        return nullptr;
    return library;
}

// --- Windows --------------------------------------------------------------------------------

/// Tells of a window that the system destroys with its parent: Qt would go on painting in it.
class WindowEnd : public QObject, public QAbstractNativeEventFilter
{
public:
    static void watch(QWindow& window)
    {
        const QObjectList& parts = window.children();
        if (std::none_of(parts.begin(), parts.end(),
                         [](QObject* part) { return dynamic_cast<WindowEnd*>(part); }))
            new WindowEnd(window);
    }
    bool nativeEventFilter(const QByteArray&, void* message, long*) override
    {
        const auto* const sent = static_cast<const MSG*>(message);
        auto& window = static_cast<QWindow&>(*parent());
        // One that Qt itself destroys has no handle any more.
        if (sent->message == WM_DESTROY && window.handle() && window.parent()
            && toHwnd(window.winId()) == sent->hwnd)
            platform::leaveParent(window);
        return false;
    }

private:
    explicit WindowEnd(QWindow& window)
        : QObject(&window)
    {
        QCoreApplication::instance()->installNativeEventFilter(this);
    }
};

// --- Libraries ------------------------------------------------------------------------------

/// Stands for the module's own library.
const char kOwnAddress = 0;

/// Folder of the file of a library, or of the program for null; empty when the system does not
/// tell.
QString folderOf(HMODULE module)
{
    std::wstring path(MAX_PATH, L'\0');
    while (true) {
        const DWORD capacity = static_cast<DWORD>(path.size());
        const DWORD length = GetModuleFileNameW(module, path.data(), capacity);
        if (length == 0)
            return {};
        if (length < capacity) {
            path.resize(length);
            return QFileInfo(QString::fromStdWString(path)).path();
        }
        path.resize(path.size() * 2); // a cut path fills the whole buffer
    }
}

} // namespace

namespace platform {

QApplication* createApplication(int& argc, char** argv)
{
    // Qt looks for its plugins beside the program and beside its own library. The host's folders
    // are the host's business: the plugins may also come along with the module.
    if (const HMODULE module = libraryOf(&kOwnAddress))
        QCoreApplication::addLibraryPath(folderOf(module)); // Qt passes over an empty one
    // Qt ends the process when no platform works, so the last choice is the system's own.
    QByteArray choice = qgetenv("QT_QPA_PLATFORM");
    choice += choice.isEmpty() ? "windows" : ";windows";
    if (!mayFindPlatformPlugin(choice, folderOf(nullptr)))
        return nullptr;
    const ScopedEnvironment unscaled(withoutScaling());
    const ScopedEnvironment own({{"QT_QPA_PLATFORM", choice}});
    return new QApplication(argc, argv);
}

bool programUsesWidgets()
{
    const auto* const program = reinterpret_cast<const char*>(GetModuleHandleW(nullptr));
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(program);
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(program + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& imports =
        headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (imports.VirtualAddress == 0)
        return false;
    const auto* import =
        reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(program + imports.VirtualAddress);
    for (; import->Name != 0; ++import) {
        if (qstrnicmp(program + import->Name, "Qt5Widgets", 10) == 0)
            return true;
    }
    return false;
}

void keepQtLoaded()
{
    // Qt's plugins keep QtCore and QtGui, but QtWidgets only where there is a plugin for styles;
    // and a thread of QtCore's watches the host's threads that have called the module, to their
    // end. QtWidgets keeps all that it needs.
    const void* const inQtWidgets = &QWidget::staticMetaObject;
    const HMODULE library = libraryOf(inQtWidgets);
    // Linked statically, Qt goes with the module.
    if (!library || library == libraryOf(&kOwnAddress))
        return;
    HMODULE pinned = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                       static_cast<LPCWSTR>(inQtWidgets), &pinned);
}

void keepModuleLoaded() {}

bool windowExists(NativeWindow window)
{
    return IsWindow(toHwnd(window)) != FALSE;
}

bool setParentWindow(NativeWindow child, NativeWindow parent, const QPoint& at)
{
    const HWND childHwnd = toHwnd(child);
    const HWND parentHwnd = toHwnd(parent);
    if (!IsWindow(childHwnd) || (parentHwnd && !IsWindow(parentHwnd))) {
        qDebug() << "no window:" << childHwnd << parentHwnd; // the caller says what has failed
        return false;
    }
    RECT before{};
    GetWindowRect(childHwnd, &before);
    // Qt does it for its own windows, and gives them the style that goes with the place: a window
    // without the style of a child would be taken for one at the top level by Windows and by Qt.
    if (QWindow* const window = findQtWindow(child))
        setQtParent(window, parent);
    else
        SetParent(childHwnd, parentHwnd);
    const HWND wanted = parentHwnd ? parentHwnd : GetDesktopWindow();
    if (GetAncestor(childHwnd, GA_PARENT) != wanted) {
        qDebug() << "GetAncestor is another parent, error:" << GetLastError();
        return false;
    }
    placeWindow(child, {at, QSize(before.right - before.left, before.bottom - before.top)});
    if (QWindow* const window = parentHwnd ? findQtWindow(child) : nullptr)
        WindowEnd::watch(*window);
    return true;
}

bool canEmbed()
{
    return true;
}

bool placesAtOnce()
{
    return true;
}

void setChildStyle(NativeWindow window)
{
    const HWND hwnd = toHwnd(window);
    const bool visible = IsWindowVisible(hwnd) != FALSE;
    SetWindowLongPtrW(hwnd, GWL_STYLE, WS_CHILD | WS_CLIPCHILDREN);
    // Whether a window is shown is one of the style's bits.
    if (visible)
        ShowWindow(hwnd, SW_SHOWNA);
}

void placeWindow(NativeWindow window, const QRect& rect)
{
    const QRect place = placeable(window, rect);
    if (SetWindowPos(toHwnd(window), nullptr, place.x(), place.y(), place.width(), place.height(),
                     SWP_NOZORDER | SWP_NOACTIVATE))
        setQtGeometry(window, place);
}

void showOnTop(NativeWindow window)
{
    SetWindowPos(toHwnd(window), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_SHOWWINDOW);
}

bool takeKeyboardFocus(NativeWindow window)
{
    const HWND hwnd = toHwnd(window);
    // The host may have made its window on another thread, whose input queue then decides.
    const DWORD own = GetCurrentThreadId();
    const DWORD other = GetWindowThreadProcessId(GetAncestor(hwnd, GA_ROOT), nullptr);
    const bool attached = other != 0 && other != own && AttachThreadInput(own, other, TRUE);
    SetFocus(hwnd);
    const bool focused = GetFocus() == hwnd;
    if (attached)
        AttachThreadInput(own, other, FALSE);
    if (!focused)
        qDebug() << "SetFocus failed, error:" << GetLastError();
    return focused;
}

bool hasKeyboardFocus(NativeWindow window)
{
    return GetFocus() == toHwnd(window);
}

bool returnKeyboardFocus(NativeWindow window)
{
    const HWND hwnd = toHwnd(window);
    const HWND parent = GetAncestor(hwnd, GA_PARENT);
    if (!parent || parent == GetDesktopWindow() || !hasKeyboardFocus(window))
        return false;
    SetFocus(parent);
    return true;
}

QRect clientRectOnScreen(NativeWindow window)
{
    RECT client{};
    POINT origin{0, 0};
    const HWND hwnd = toHwnd(window);
    if (!GetClientRect(hwnd, &client) || !ClientToScreen(hwnd, &origin))
        return {};
    return {origin.x, origin.y, client.right, client.bottom};
}

QString stateFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
}

quint64 threadNumber()
{
    return GetCurrentThreadId();
}

quint32 tickMs()
{
    return GetTickCount();
}

int screenWidthPx()
{
    return qRound(GetSystemMetrics(SM_CXSCREEN) / qGuiApp->devicePixelRatio());
}

int screenHeightPx()
{
    return qRound(GetSystemMetrics(SM_CYSCREEN) / qGuiApp->devicePixelRatio());
}

PriorityChange setThreadPriorityTimeCritical()
{
    const HANDLE thread = GetCurrentThread();
    const int before = GetThreadPriority(thread);
    const bool ok = SetThreadPriority(thread, THREAD_PRIORITY_TIME_CRITICAL) != FALSE;
    return {ok, before, GetThreadPriority(thread)};
}

} // namespace platform
