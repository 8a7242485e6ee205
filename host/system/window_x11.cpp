#include "host_error.h"
#include "host_window.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <glib.h>
#include <poll.h>
#include <utility>

namespace zrhost {

namespace {

class X11Window;

class X11Display : public HostDisplay
{
public:
    X11Display();
    ~X11Display() override;

    std::unique_ptr<HostWindow> makeWindow(const std::string& title, Size size,
                                           HostWindow::Events events) override;

    [[nodiscard]] Display* connection() const { return m_display; }
    [[nodiscard]] Atom deleteAtom() const { return m_deleteAtom; }
    void remove(X11Window* window);
    void dispatchPending();

private:
    Display* m_display;
    Atom m_deleteAtom = 0;
    GSource* m_source = nullptr;
    std::vector<X11Window*> m_windows;
};

class X11Window : public HostWindow
{
public:
    X11Window(X11Display& display, const std::string& title, Size size, Events events);
    ~X11Window() override;

    HWND handle() const override
    {
        return reinterpret_cast<HWND>(static_cast<uintptr_t>(m_window));
    }
    Size size() const override { return m_size; }
    void resize(Size size) override;
    void raise() override;
    void click(Point at, int times) override;
    void turnWheel(Point at, int steps) override;
    RgbImage grab() const override;

    [[nodiscard]] Window id() const { return m_window; }
    void onEvent(const XEvent& event);

private:
    void waitUntilMapped();
    /// A round trip: what has been asked of the server before is done.
    [[nodiscard]] Point onScreen(Point at) const;

    X11Display& m_display;
    Window m_window = 0;
    Size m_size;
    Events m_events;
};

/// Serves the connection in the default context. Xlib may hold events that it has read already,
/// so the descriptor alone does not tell whether there is work.
struct ConnectionSource
{
    GSource base;
    X11Display* display;
    gpointer tag;
};

X11Display& displayOf(GSource* source)
{
    return *reinterpret_cast<ConnectionSource*>(source)->display;
}

GSourceFuncs connectionFunctions()
{
    GSourceFuncs functions{};
    functions.prepare = [](GSource* source, gint* timeoutMs) -> gboolean {
        *timeoutMs = -1;
        // Also sends what has been asked for since the last round.
        return XPending(displayOf(source).connection()) > 0;
    };
    functions.check = [](GSource* source) -> gboolean {
        return XPending(displayOf(source).connection()) > 0;
    };
    functions.dispatch = [](GSource* source, GSourceFunc, gpointer) -> gboolean {
        displayOf(source).dispatchPending();
        return G_SOURCE_CONTINUE;
    };
    return functions;
}

GSourceFuncs g_connectionFunctions = connectionFunctions();

X11Display::X11Display()
{
    // The module's Qt has a connection of its own, and may use it from other threads.
    XInitThreads();
    m_display = XOpenDisplay(nullptr);
    if (!m_display) {
        const char* const name = std::getenv("DISPLAY");
        throw HostError(name && *name ? "cannot open the display '" + std::string(name) + "'"
                                      : "there is no display (DISPLAY is not set)");
    }
    m_deleteAtom = XInternAtom(m_display, "WM_DELETE_WINDOW", False);
    m_source = g_source_new(&g_connectionFunctions, sizeof(ConnectionSource));
    auto* const source = reinterpret_cast<ConnectionSource*>(m_source);
    source->display = this;
    source->tag = g_source_add_unix_fd(m_source, ConnectionNumber(m_display), G_IO_IN);
    g_source_attach(m_source, nullptr);
}

X11Display::~X11Display()
{
    g_source_destroy(m_source);
    g_source_unref(m_source);
    XCloseDisplay(m_display);
}

std::unique_ptr<HostWindow> X11Display::makeWindow(const std::string& title, Size size,
                                                   HostWindow::Events events)
{
    auto window = std::make_unique<X11Window>(*this, title, size, std::move(events));
    m_windows.push_back(window.get());
    return window;
}

void X11Display::remove(X11Window* window)
{
    m_windows.erase(std::remove(m_windows.begin(), m_windows.end(), window), m_windows.end());
}

void X11Display::dispatchPending()
{
    while (XPending(m_display) > 0) {
        XEvent event;
        XNextEvent(m_display, &event);
        const auto target =
            std::find_if(m_windows.begin(), m_windows.end(),
                         [&](X11Window* window) { return window->id() == event.xany.window; });
        if (target != m_windows.end())
            (*target)->onEvent(event);
    }
}

X11Window::X11Window(X11Display& display, const std::string& title, Size size, Events events)
    : m_display(display)
    , m_size(size)
    , m_events(std::move(events))
{
    Display* const connection = display.connection();
    const int screen = DefaultScreen(connection);
    m_window = XCreateSimpleWindow(
        connection, RootWindow(connection, screen), 0, 0, static_cast<unsigned>(size.width),
        static_cast<unsigned>(size.height), 0, 0, BlackPixel(connection, screen));
    XSelectInput(connection, m_window, StructureNotifyMask);
    Xutf8SetWMProperties(connection, m_window, title.c_str(), title.c_str(), nullptr, 0, nullptr,
                         nullptr, nullptr);
    Atom deleteAtom = display.deleteAtom();
    XSetWMProtocols(connection, m_window, &deleteAtom, 1);
    XMapWindow(connection, m_window);
    waitUntilMapped();
}

X11Window::~X11Window()
{
    m_display.remove(this);
    XDestroyWindow(m_display.connection(), m_window);
    XFlush(m_display.connection());
}

void X11Window::waitUntilMapped()
{
    using std::chrono::steady_clock;
    Display* const connection = m_display.connection();
    const auto end = steady_clock::now() + std::chrono::seconds(5);
    XFlush(connection);
    while (steady_clock::now() < end) {
        XEvent event;
        while (XCheckTypedWindowEvent(connection, m_window, ConfigureNotify, &event))
            onEvent(event);
        if (XCheckTypedWindowEvent(connection, m_window, MapNotify, &event))
            return;
        pollfd waiting{ConnectionNumber(connection), POLLIN, 0};
        poll(&waiting, 1, 50);
    }
    throw HostError("the window does not appear");
}

void X11Window::resize(Size size)
{
    XResizeWindow(m_display.connection(), m_window, static_cast<unsigned>(size.width),
                  static_cast<unsigned>(size.height));
    XFlush(m_display.connection());
}

void X11Window::raise()
{
    XRaiseWindow(m_display.connection(), m_window);
    XFlush(m_display.connection());
}

Point X11Window::onScreen(Point at) const
{
    Display* const connection = m_display.connection();
    Point found;
    Window child = 0;
    XTranslateCoordinates(connection, m_window, DefaultRootWindow(connection), at.x, at.y, &found.x,
                          &found.y, &child);
    return found;
}

void X11Window::click(Point at, int times)
{
    desktop::click(onScreen(at), times);
}

void X11Window::turnWheel(Point at, int steps)
{
    desktop::turnWheel(onScreen(at), steps);
}

void X11Window::onEvent(const XEvent& event)
{
    if (event.type == ConfigureNotify) {
        const Size size{event.xconfigure.width, event.xconfigure.height};
        if (size.width == m_size.width && size.height == m_size.height)
            return;
        m_size = size;
        if (m_events.resized)
            m_events.resized(size);
    } else if (event.type == ClientMessage
               && static_cast<Atom>(event.xclient.data.l[0]) == m_display.deleteAtom()) {
        if (m_events.closed)
            m_events.closed();
    }
}

RgbImage X11Window::grab() const
{
    Display* const connection = m_display.connection();
    XWindowAttributes attributes{};
    if (!XGetWindowAttributes(connection, m_window, &attributes)
        || attributes.map_state != IsViewable)
        throw HostError("cannot grab the window: it is not visible");
    // With the module's windows that float above.
    return desktop::grab(onScreen({0, 0}), {attributes.width, attributes.height});
}

} // namespace

std::unique_ptr<HostDisplay> openDisplay()
{
    return std::make_unique<X11Display>();
}

} // namespace zrhost
