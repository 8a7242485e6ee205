// The stage on X11.
#include "check.h"
#include "hostprocess.h"
#include "hostwindow.h"

#include <X11/Xlib.h>

#include <cstdlib>
#include <fstream>
#include <glib.h>
#include <iterator>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace {

/// A connection of its own: another program, as far as the X server can tell. It stays until the
/// process ends.
Display* display()
{
    static Display* const opened = XOpenDisplay(nullptr);
    REQUIRE(opened != nullptr);
    return opened;
}

/// Until the server has done what it was asked for.
void waitForServer()
{
    XSync(display(), False);
}

struct Family
{
    Window parent = 0;
    std::vector<Window> children; ///< the lowest first
};

Family familyOf(WindowId window)
{
    Family family;
    Window root = 0;
    Window* children = nullptr;
    unsigned count = 0;
    XQueryTree(display(), window, &root, &family.parent, &children, &count);
    family.children.assign(children, children + count);
    XFree(children);
    return family;
}

XWindowAttributes attributesOf(WindowId window)
{
    XWindowAttributes attributes{};
    XGetWindowAttributes(display(), window, &attributes);
    return attributes;
}

} // namespace

WindowId nativehost::makeWindow(const Box& box, WindowId parent)
{
    Display* const d = display();
    const Window window = XCreateSimpleWindow(
        d, parent ? parent : desktop(), box.x, box.y, static_cast<unsigned>(box.w),
        static_cast<unsigned>(box.h), 0, 0, WhitePixel(d, DefaultScreen(d)));
    XMapWindow(d, window);
    waitForServer();
    return window;
}

void nativehost::moveWindow(WindowId window, int x, int y)
{
    XMoveWindow(display(), window, x, y);
    waitForServer();
}

void nativehost::destroyWindow(WindowId window)
{
    XDestroyWindow(display(), window);
    waitForServer();
}

WindowId nativehost::parentOf(WindowId window)
{
    return familyOf(window).parent;
}

int nativehost::childCountOf(WindowId window)
{
    return static_cast<int>(familyOf(window).children.size());
}

WindowId nativehost::topChildOf(WindowId window)
{
    const Family family = familyOf(window);
    return family.children.empty() ? 0 : family.children.back();
}

Box nativehost::geometryOf(WindowId window)
{
    const XWindowAttributes found = attributesOf(window);
    return {found.x, found.y, found.width, found.height};
}

bool nativehost::isViewable(WindowId window)
{
    return attributesOf(window).map_state == IsViewable;
}

WindowId nativehost::desktop()
{
    return DefaultRootWindow(display());
}

namespace native {

bool runEventLoopOnce()
{
    return g_main_context_iteration(nullptr, FALSE) != FALSE;
}

bool isLoaded(const std::string& name)
{
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        // A sanitizer keeps the file mapped, to read symbols; code can be run only when loaded.
        const bool isCode = line.find(" r-xp ") != std::string::npos;
        if (isCode && line.find("/lib" + name + ".") != std::string::npos)
            return true;
    }
    return false;
}

Range rangeOf(const std::string& library)
{
    Range range;
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        if (line.find("/lib" + library + ".") == std::string::npos)
            continue;
        char* end = nullptr;
        const auto begin = std::strtoull(line.c_str(), &end, 16);
        range.begin = range.begin ? range.begin : begin;
        range.end = std::strtoull(end + 1, nullptr, 16);
    }
    return range;
}

bool closeOff(const Range& range)
{
    void* const begin = reinterpret_cast<void*>(range.begin);
    constexpr int kFlags = MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED_NOREPLACE;
    return mmap(begin, range.end - range.begin, PROT_NONE, kFlags, -1, 0) == begin;
}

int threadCount()
{
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return static_cast<int>(std::distance(begin(tasks), end(tasks)));
}

std::size_t pageSize()
{
    return static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

void* makePages(std::size_t bytes)
{
    return mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
}

bool protectPages(void* pages, std::size_t bytes, bool isOpen)
{
    return mprotect(pages, bytes, isOpen ? PROT_READ | PROT_WRITE : PROT_NONE) == 0;
}

} // namespace native
