#include "nativehost.h"

#include "xcbreply.h"

#include <QX11Info>

#include <sys/mman.h>
#include <unistd.h>

namespace {

/// A connection of its own: another program, as far as the X server can tell.
xcb_connection_t* connection()
{
    static xcb_connection_t* const c = xcb_connect(nullptr, nullptr);
    return c;
}

const xcb_screen_t& screen()
{
    return *xcb_setup_roots_iterator(xcb_get_setup(connection())).data;
}

void waitForServer(xcb_connection_t* c)
{
    owned(xcb_get_input_focus_reply(c, xcb_get_input_focus(c), nullptr));
}

auto treeOf(NativeWindow window)
{
    return owned(
        xcb_query_tree_reply(connection(), xcb_query_tree(connection(), xid(window)), nullptr));
}

} // namespace

NativeWindow nativehost::makeWindow(const QRect& r, NativeWindow parent)
{
    xcb_connection_t* const c = connection();
    const xcb_window_t id = xcb_generate_id(c);
    const xcb_window_t in = parent ? xid(parent) : screen().root;
    xcb_create_window(c, XCB_COPY_FROM_PARENT, id, in, static_cast<qint16>(r.x()),
                      static_cast<qint16>(r.y()), static_cast<quint16>(r.width()),
                      static_cast<quint16>(r.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      screen().root_visual, 0, nullptr);
    xcb_map_window(c, id);
    waitForServer(c);
    return id;
}

void nativehost::moveWindow(NativeWindow window, const QPoint& to)
{
    const quint32 values[] = {static_cast<quint32>(to.x()), static_cast<quint32>(to.y())};
    xcb_configure_window(connection(), xid(window), XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y,
                         values);
    waitForServer(connection());
}

void nativehost::destroyWindow(NativeWindow window)
{
    xcb_destroy_window(connection(), xid(window));
    waitForServer(connection());
}

NativeWindow nativehost::parentOf(NativeWindow window)
{
    const auto tree = treeOf(window);
    return tree ? tree->parent : 0;
}

NativeWindow nativehost::topChildOf(NativeWindow window)
{
    const auto tree = treeOf(window);
    const int count = tree ? xcb_query_tree_children_length(tree.get()) : 0;
    return count > 0 ? xcb_query_tree_children(tree.get())[count - 1] : 0;
}

QRect nativehost::geometryOf(NativeWindow window)
{
    const auto g = owned(
        xcb_get_geometry_reply(connection(), xcb_get_geometry(connection(), xid(window)), nullptr));
    return g ? QRect(g->x, g->y, g->width, g->height) : QRect();
}

bool nativehost::isViewable(NativeWindow window)
{
    const auto attributes = owned(xcb_get_window_attributes_reply(
        connection(), xcb_get_window_attributes(connection(), xid(window)), nullptr));
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

NativeWindow nativehost::desktop()
{
    return screen().root;
}

QSize nativehost::screenSize()
{
    return {screen().width_in_pixels, screen().height_in_pixels};
}

void nativehost::waitForQtsRequests()
{
    waitForServer(QX11Info::connection());
}

PatchyMemory::PatchyMemory()
    : page(static_cast<std::size_t>(sysconf(_SC_PAGESIZE)))
    , begin(static_cast<char*>(
          mmap(nullptr, kPages * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)))
{
    for (std::size_t i = 1; i < kPages; i += 2)
        open(i, false);
}

PatchyMemory::~PatchyMemory()
{
    munmap(begin, kPages * page);
}

void PatchyMemory::open(std::size_t index, bool isOpen) const
{
    mprotect(begin + index * page, page, isOpen ? PROT_READ | PROT_WRITE : PROT_NONE);
}
