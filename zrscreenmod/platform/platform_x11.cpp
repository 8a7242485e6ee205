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
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <QX11Info>

#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <dlfcn.h>
#include <link.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

// --- X11 ------------------------------------------------------------------------------------

struct FreeDeleter
{
    void operator()(void* p) const { std::free(p); }
};
template<typename T>
using Reply = std::unique_ptr<T, FreeDeleter>;

/// Qt's own connection, so that requests made here keep their order with Qt's. Null when Qt does
/// not draw on X11.
xcb_connection_t* connection()
{
    return QX11Info::isPlatformX11() ? QX11Info::connection() : nullptr;
}

xcb_window_t toXcb(platform::NativeWindow window)
{
    constexpr xcb_window_t kNone = XCB_WINDOW_NONE;
    // An id that does not fit names no window.
    return window <= std::numeric_limits<xcb_window_t>::max() ? static_cast<xcb_window_t>(window)
                                                              : kNone;
}

/// Waits for the server's verdict. An error stays here: it reaches neither Qt's event loop nor an
/// Xlib error handler, whose default ends the process.
void logError(const xcb_generic_error_t& error)
{
    // Of the core protocol, from 1 on.
    static const char* const kNames[] = {
        "BadRequest", "BadValue",    "BadWindow",   "BadPixmap", "BadAtom",          "BadCursor",
        "BadFont",    "BadMatch",    "BadDrawable", "BadAccess", "BadAlloc",         "BadColor",
        "BadGC",      "BadIDChoice", "BadName",     "BadLength", "BadImplementation"};
    const std::size_t index = error.error_code - std::size_t(1);
    qDebug() << "X11 request" << error.major_code << "got" << error.error_code
             << (index < std::size(kNames) ? kNames[index] : "")
             << ",resource:" << error.resource_id;
}

bool succeeded(xcb_connection_t* c, xcb_void_cookie_t cookie)
{
    const Reply<xcb_generic_error_t> error(xcb_request_check(c, cookie));
    if (error)
        logError(*error);
    return !error;
}

struct TreePlace
{
    xcb_window_t root;
    xcb_window_t parent;
};

/// @return an empty size when there is no such window.
QSize sizeOf(xcb_connection_t* c, xcb_window_t window)
{
    const Reply<xcb_get_geometry_reply_t> reply(
        xcb_get_geometry_reply(c, xcb_get_geometry(c, window), nullptr));
    return reply ? QSize(reply->width, reply->height) : QSize();
}

/// @return false when there is no such window.
bool findInTree(xcb_connection_t* c, xcb_window_t window, TreePlace* place)
{
    xcb_generic_error_t* rawError = nullptr;
    const Reply<xcb_query_tree_reply_t> reply(
        xcb_query_tree_reply(c, xcb_query_tree(c, window), &rawError));
    const Reply<xcb_generic_error_t> error(rawError);
    if (!reply) {
        if (error)
            logError(*error);
        return false;
    }
    *place = {reply->root, reply->parent};
    return true;
}

// --- Reports ----------------------------------------------------------------------------------

/// Keeps from Qt what the server reports of a window from before its last placing, which Qt knows
/// already: it would take the former place for a new one, until the next report. Takes a window
/// that the server has destroyed with its parent off the display: Mesa's software renderer writes
/// beyond its memory for one, since it takes no notice of an error when it asks for the size.
class WindowReports : public QObject, public QAbstractNativeEventFilter
{
public:
    /// The one of this window, made when it is needed first.
    static WindowReports& of(QWindow& window)
    {
        for (QObject* child : window.children()) {
            if (auto* const found = dynamic_cast<WindowReports*>(child))
                return *found;
        }
        return *new WindowReports(window);
    }
    /// @param placing sequence number of the request that placed the window
    void dropOlder(xcb_window_t id, quint32 placing)
    {
        m_id = id;
        m_placing = placing;
        m_waiting = true;
    }
    /// The report of the end may come after the event that composes the window once more.
    bool eventFilter(QObject*, QEvent* event) override
    {
        auto& window = static_cast<QWindow&>(*parent());
        if (event->type() == QEvent::UpdateRequest && window.parent() && window.isVisible()
            && !platform::windowExists(m_id))
            platform::leaveParent(window);
        return false;
    }
    bool nativeEventFilter(const QByteArray&, void* message, long*) override
    {
        const auto* const event = static_cast<const xcb_generic_event_t*>(message);
        // Sequence numbers begin anew some time.
        if (m_waiting && static_cast<qint32>(event->full_sequence - m_placing) >= 0)
            m_waiting = false;
        constexpr quint8 kWithoutSender = 0x7f;
        auto& window = static_cast<QWindow&>(*parent());
        if ((event->response_type & kWithoutSender) == XCB_DESTROY_NOTIFY
            && static_cast<const xcb_destroy_notify_event_t*>(message)->window == m_id
            && window.handle() && window.winId() == m_id) {
            platform::leaveParent(window);
            return false;
        }
        return m_waiting && (event->response_type & kWithoutSender) == XCB_CONFIGURE_NOTIFY
               && static_cast<const xcb_configure_notify_event_t*>(message)->event == m_id;
    }

private:
    explicit WindowReports(QWindow& window)
        : QObject(&window)
    {
        QCoreApplication::instance()->installNativeEventFilter(this);
        if (QWidget* const widget = QWidget::find(window.winId()))
            widget->installEventFilter(this); // which has the requests to compose
    }

    xcb_window_t m_id = XCB_WINDOW_NONE;
    quint32 m_placing = 0;
    bool m_waiting = false; ///< for the first event that is not older
};

// --- Window manager ---------------------------------------------------------------------------

/// The state that a window manager keeps on a window that it manages (ICCCM 4.1.3.1); 0, which is
/// "withdrawn", also for a window without one.
quint32 wmState(xcb_connection_t* c, xcb_window_t window)
{
    constexpr char kName[] = "WM_STATE";
    const Reply<xcb_intern_atom_reply_t> atom(
        xcb_intern_atom_reply(c, xcb_intern_atom(c, true, sizeof(kName) - 1, kName), nullptr));
    if (!atom || atom->atom == XCB_ATOM_NONE)
        return 0;
    const Reply<xcb_get_property_reply_t> state(xcb_get_property_reply(
        c, xcb_get_property(c, false, window, atom->atom, atom->atom, 0, 1), nullptr));
    if (!state || state->format != 32 || xcb_get_property_value_length(state.get()) < 4)
        return 0;
    return *static_cast<const quint32*>(xcb_get_property_value(state.get()));
}

bool hasWindowManager(xcb_connection_t* c, xcb_window_t root)
{
    const Reply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(c, xcb_get_window_attributes(c, root), nullptr));
    return attributes && (attributes->all_event_masks & XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT) != 0;
}

/// A window manager that does not answer must not stop the GUI thread for good.
template<typename Condition>
void waitForWindowManager(Condition condition)
{
    constexpr int kAttempts = 150;
    for (int i = 0; i < kAttempts && !condition(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
}

/// Withdraws a window from the window manager (ICCCM 4.1.4). A window that is re-parented under
/// its hands is unmapped or taken back into a frame a moment later.
/// @return whether the window was taken from one; it is not mapped then
bool withdraw(xcb_connection_t* c, xcb_window_t window, xcb_window_t root, bool shownAtTopLevel)
{
    if (!hasWindowManager(c, root))
        return false;
    // The request to be shown may still be under way to the window manager.
    if (shownAtTopLevel)
        waitForWindowManager([c, window] { return wmState(c, window) != 0; });
    if (wmState(c, window) == 0)
        return false;
    xcb_unmap_window(c, window);
    // An event on the wire is 32 bytes; the structure is shorter.
    union
    {
        xcb_unmap_notify_event_t notify;
        char wire[32];
    } event{};
    std::memset(&event, 0, sizeof event);
    event.notify.response_type = XCB_UNMAP_NOTIFY;
    event.notify.event = root;
    event.notify.window = window;
    xcb_send_event(c, false, root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   event.wire);
    waitForWindowManager([c, window, root] {
        TreePlace place{};
        return wmState(c, window) == 0 && (!findInTree(c, window, &place) || place.parent == root);
    });
    return true;
}

// --- Application ----------------------------------------------------------------------------

/// Qt sets the whole locale from the environment, which would change how the host reads and
/// writes numbers. Only the character set is left to it.
class ScopedLocale
{
public:
    ScopedLocale()
    {
        for (const int category : kCategories)
            m_before.emplace_back(std::setlocale(category, nullptr));
    }
    ~ScopedLocale()
    {
        for (std::size_t i = 0; i < m_before.size(); ++i)
            std::setlocale(kCategories[i], m_before[i].c_str());
    }
    Q_DISABLE_COPY(ScopedLocale)

private:
    static constexpr int kCategories[] = {LC_COLLATE, LC_MESSAGES, LC_MONETARY, LC_NUMERIC,
                                          LC_TIME};
    std::vector<std::string> m_before;
};

bool displayOpens()
{
    xcb_connection_t* const c = xcb_connect(nullptr, nullptr);
    const bool opens = xcb_connection_has_error(c) == 0;
    xcb_disconnect(c);
    return opens;
}

/// What the environment says of the platform, but for Wayland, which people choose for all of their
/// programs: a host's window is an X11 window. Qt ends the process when no platform works, so the
/// last choice is one that always does, and X11 is none without a display.
QByteArray platformChoice()
{
    QByteArrayList choice;
    for (const QByteArray& platform : qgetenv("QT_QPA_PLATFORM").toLower().split(';')) {
        if (!platform.isEmpty() && !platform.startsWith("wayland"))
            choice.append(platform);
    }
    choice << "xcb"
           << "offscreen";
    if (!displayOpens()) {
        const auto isX11 = [](const QByteArray& name) { return name.startsWith("xcb"); };
        choice.erase(std::remove_if(choice.begin(), choice.end(), isX11), choice.end());
    }
    return choice.join(';');
}

// --- Loaded objects -------------------------------------------------------------------------

int collectLoadedObject(dl_phdr_info* info, std::size_t, void* names)
{
    if (info->dlpi_name && *info->dlpi_name)
        static_cast<std::vector<std::string>*>(names)->emplace_back(info->dlpi_name);
    return 0;
}

/// Collects the objects that were linked with Qt's widgets.
int collectWidgetUser(dl_phdr_info* info, std::size_t, void* names)
{
    const ElfW(Dyn)* dynamic = nullptr;
    for (int i = 0; i < info->dlpi_phnum; ++i) {
        if (info->dlpi_phdr[i].p_type == PT_DYNAMIC)
            dynamic =
                reinterpret_cast<const ElfW(Dyn)*>(info->dlpi_addr + info->dlpi_phdr[i].p_vaddr);
    }
    const char* texts = nullptr;
    for (const ElfW(Dyn)* entry = dynamic; entry && entry->d_tag != DT_NULL; ++entry) {
        if (entry->d_tag == DT_STRTAB)
            texts = reinterpret_cast<const char*>(entry->d_un.d_ptr);
    }
    for (const ElfW(Dyn)* entry = dynamic; entry && entry->d_tag != DT_NULL; ++entry) {
        if (entry->d_tag == DT_NEEDED
            && std::strcmp(texts + entry->d_un.d_val, "libQt5Widgets.so.5") == 0)
            static_cast<std::vector<std::string>*>(names)->emplace_back(info->dlpi_name);
    }
    return 0;
}

/// The object that holds this code.
bool isThisModule(const std::string& path)
{
    Dl_info self{};
    return dladdr(reinterpret_cast<const void*>(&collectLoadedObject), &self) != 0
           && path == self.dli_fname;
}

/// Qt, what Qt loads as a plugin, X11 and the GL drivers. What these depend on stays with them.
bool mustStayLoaded(const std::string& path)
{
    // Qt also looks for plugins next to the program, where the module may lie.
    if (isThisModule(path))
        return false;
    const std::string name = path.substr(path.rfind('/') + 1);
    for (const char* prefix : {"libQt5", "libGL", "libEGL", "libOpenGL", "libgallium", "libX11",
                               "libxcb", "libglib-2.0"}) {
        if (name.rfind(prefix, 0) == 0)
            return true;
    }
    if (name.find("_dri.so") != std::string::npos)
        return true;
    const QStringList pluginFolders = QCoreApplication::libraryPaths();
    return std::any_of(pluginFolders.cbegin(), pluginFolders.cend(), [&path](const QString& f) {
        return path.rfind(f.toStdString() + '/', 0) == 0;
    });
}

void keepLoaded(const char* path)
{
    // NODELETE outlives the reference that is given back here.
    if (void* const handle = dlopen(path, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE))
        dlclose(handle);
}

} // namespace

namespace platform {

QApplication* createApplication(int& argc, char** argv)
{
    const ScopedLocale locale;
    const QByteArray choice = platformChoice();
    if (!mayFindPlatformPlugin(choice, QFileInfo(QStringLiteral("/proc/self/exe")).canonicalPath()))
        return nullptr;
    const ScopedEnvironment unscaled(withoutScaling());
    // Without GLib nobody would run Qt's event loop: the host runs GLib's.
    const ScopedEnvironment own({{"QT_QPA_PLATFORM", choice}, {"QT_NO_GLIB", {}}});
    return new QApplication(argc, argv);
}

void keepQtLoaded()
{
    // Collected first: the walk holds a lock of the loader.
    std::vector<std::string> names;
    dl_iterate_phdr(collectLoadedObject, &names);
    for (const std::string& name : names) {
        if (mustStayLoaded(name))
            keepLoaded(name.c_str());
    }
}

bool programUsesWidgets()
{
    // Collected first: the walk holds a lock of the loader.
    std::vector<std::string> names;
    dl_iterate_phdr(collectWidgetUser, &names);
    return std::any_of(names.cbegin(), names.cend(), [](const std::string& name) {
        return !isThisModule(name) && !mustStayLoaded(name);
    });
}

void keepModuleLoaded()
{
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&keepModuleLoaded), &info) != 0 && info.dli_fname)
        keepLoaded(info.dli_fname);
}

bool setParentWindow(NativeWindow child, NativeWindow parent, const QPoint& at)
{
    xcb_connection_t* const c = connection();
    const xcb_window_t childId = toXcb(child);
    TreePlace childPlace{};
    TreePlace parentPlace{};
    if (!c || childId == XCB_WINDOW_NONE || !findInTree(c, childId, &childPlace))
        return false;
    const xcb_window_t parentId = parent == 0 ? childPlace.root : toXcb(parent);
    if (parentId == XCB_WINDOW_NONE || parentId == childId
        || !findInTree(c, parentId, &parentPlace))
        return false;
    QWindow* const window = findQtWindow(child);
    // A window at the top level stays in the frame that a window manager gave it.
    const bool atTopLevel = childPlace.parent == childPlace.root || (window && !window->parent());
    if (parent == 0 && atTopLevel)
        return true;
    const bool withdrawn =
        atTopLevel && withdraw(c, childId, childPlace.root, window && window->isVisible());
    // The server decides, and Qt hears of it only when it has agreed.
    const QRect place = placeable(child, {at, sizeOf(c, childId)});
    const bool reparented = succeeded(
        c, xcb_reparent_window_checked(c, childId, parentId, static_cast<qint16>(place.x()),
                                       static_cast<qint16>(place.y())));
    if (reparented && window) {
        setQtParent(window, parent);
        // Qt has re-parented it once more, to the position that it remembered.
        placeWindow(child, place);
    }
    if (withdrawn)
        succeeded(c, xcb_map_window_checked(c, childId));
    return reparented;
}

bool windowExists(NativeWindow window)
{
    xcb_connection_t* const c = connection();
    return c && !sizeOf(c, toXcb(window)).isEmpty();
}

bool canEmbed()
{
    return connection() != nullptr;
}

bool placesAtOnce()
{
    return false;
}

void setChildStyle(NativeWindow window)
{
    xcb_connection_t* const c = connection();
    const xcb_window_t id = toXcb(window);
    if (!c || id == XCB_WINDOW_NONE)
        return;
    // A window inside another one has no frame on X11, and drawing never runs over its children.
    // What is left of the style is the border, and the wish for no frame should the window ever
    // come to the top level again.
    const quint32 noBorder = 0;
    if (!succeeded(c,
                   xcb_configure_window_checked(c, id, XCB_CONFIG_WINDOW_BORDER_WIDTH, &noBorder)))
        return;
    constexpr char kHintsName[] = "_MOTIF_WM_HINTS";
    const Reply<xcb_intern_atom_reply_t> hintsAtom(xcb_intern_atom_reply(
        c, xcb_intern_atom(c, false, sizeof(kHintsName) - 1, kHintsName), nullptr));
    if (!hintsAtom)
        return;
    constexpr quint32 kHasDecorations = 2;
    const quint32 hints[] = {kHasDecorations, 0, 0, 0, 0}; // flags, functions, decorations, ...
    succeeded(c, xcb_change_property_checked(c, XCB_PROP_MODE_REPLACE, id, hintsAtom->atom,
                                             hintsAtom->atom, 32, 5, hints));
}

void placeWindow(NativeWindow window, const QRect& rect)
{
    xcb_connection_t* const c = connection();
    const xcb_window_t id = toXcb(window);
    if (!c || id == XCB_WINDOW_NONE)
        return;
    const QRect place = placeable(window, rect);
    const quint32 values[] = {static_cast<quint32>(place.x()), static_cast<quint32>(place.y()),
                              static_cast<quint32>(place.width()),
                              static_cast<quint32>(place.height())};
    constexpr quint16 kMask = XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH
                              | XCB_CONFIG_WINDOW_HEIGHT;
    // The server decides, and Qt hears of it only when it has agreed.
    const xcb_void_cookie_t cookie = xcb_configure_window_checked(c, id, kMask, values);
    if (!succeeded(c, cookie))
        return;
    if (QWindow* const qtWindow = findQtWindow(window))
        WindowReports::of(*qtWindow).dropOlder(id, cookie.sequence);
    setQtGeometry(window, place);
}

void showOnTop(NativeWindow window)
{
    xcb_connection_t* const c = connection();
    const xcb_window_t id = toXcb(window);
    if (!c || id == XCB_WINDOW_NONE)
        return;
    const quint32 above = XCB_STACK_MODE_ABOVE;
    if (succeeded(c, xcb_configure_window_checked(c, id, XCB_CONFIG_WINDOW_STACK_MODE, &above)))
        succeeded(c, xcb_map_window_checked(c, id));
}

bool takeKeyboardFocus(NativeWindow window)
{
    xcb_connection_t* const c = connection();
    const xcb_window_t id = toXcb(window);
    if (!c || id == XCB_WINDOW_NONE)
        return false;
    // The host asks on behalf of events that this connection has not seen, so there is no better
    // time than now. When the window goes, its parent has the keyboard.
    return succeeded(c,
                     xcb_set_input_focus_checked(c, XCB_INPUT_FOCUS_PARENT, id, XCB_CURRENT_TIME));
}

bool hasKeyboardFocus(NativeWindow window)
{
    xcb_connection_t* const c = connection();
    if (!c)
        return false;
    const Reply<xcb_get_input_focus_reply_t> focus(
        xcb_get_input_focus_reply(c, xcb_get_input_focus(c), nullptr));
    return focus && focus->focus == toXcb(window);
}

bool returnKeyboardFocus(NativeWindow window)
{
    xcb_connection_t* const c = connection();
    const xcb_window_t id = toXcb(window);
    TreePlace place{};
    if (!c || id == XCB_WINDOW_NONE || !findInTree(c, id, &place) || place.parent == place.root)
        return false;
    return hasKeyboardFocus(window) && takeKeyboardFocus(place.parent);
}

QRect clientRectOnScreen(NativeWindow window)
{
    xcb_connection_t* const c = connection();
    const xcb_window_t id = toXcb(window);
    TreePlace place{};
    if (!c || id == XCB_WINDOW_NONE || !findInTree(c, id, &place))
        return {};
    const QSize size = sizeOf(c, id);
    const Reply<xcb_translate_coordinates_reply_t> origin(xcb_translate_coordinates_reply(
        c, xcb_translate_coordinates(c, id, place.root, 0, 0), nullptr));
    return size.isValid() && origin ? QRect({origin->dst_x, origin->dst_y}, size) : QRect();
}

QString stateFolder()
{
    const QString folder = qEnvironmentVariable("XDG_STATE_HOME");
    return folder.isEmpty() ? QDir::homePath() + QStringLiteral("/.local/state") : folder;
}

quint64 threadNumber()
{
    return static_cast<quint64>(gettid());
}

quint32 tickMs()
{
    return static_cast<quint32>(steadyMs());
}

namespace {

QSize primaryScreenSize()
{
    const auto* const app = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    const QScreen* const screen = app ? QGuiApplication::primaryScreen() : nullptr;
    return screen ? screen->geometry().size() : QSize(0, 0);
}

} // namespace

int screenWidthPx()
{
    return primaryScreenSize().width();
}

int screenHeightPx()
{
    return primaryScreenSize().height();
}

PriorityChange setThreadPriorityTimeCritical()
{
    // At nice -10 a thread gets nine tenths of a core that it shares with an ordinary one.
    constexpr int kWantedNice = -10;
    const auto thread = static_cast<id_t>(threadNumber());
    const auto niceValue = [thread] { return getpriority(PRIO_PROCESS, thread); };
    const int before = niceValue();
    if (before <= kWantedNice)
        return {true, before, before};
    if (setpriority(PRIO_PROCESS, thread, kWantedNice) == 0)
        return {true, before, niceValue()};
    // The limit is the lowest allowed nice value, counted down from 20.
    rlimit limit{};
    if (getrlimit(RLIMIT_NICE, &limit) == 0) {
        const int lowest = 20 - static_cast<int>(std::min<rlim_t>(limit.rlim_cur, 40));
        if (lowest < before)
            setpriority(PRIO_PROCESS, thread, lowest);
    }
    return {false, before, niceValue()};
}

} // namespace platform
