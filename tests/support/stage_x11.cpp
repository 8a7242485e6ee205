// The stage on X11.
#include "check.h"
#include "desktop.h"
#include "hostprocess.h"
#include "hostwindow.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <cstdlib>
#include <dlfcn.h>
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

} // namespace

// --- Windows ----------------------------------------------------------------------------------

namespace {

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
    waitForServer();
    XQueryTree(display(), window, &root, &family.parent, &children, &count);
    family.children.assign(children, children + count);
    if (children)
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

Screenshot HostWindow::grab() const
{
    const Box box = nativehost::geometryOf(m_id); // it is at the top level
    return desktop::grab(box.x, box.y, box.w, box.h);
}

// --- The user ---------------------------------------------------------------------------------

namespace {

constexpr unsigned kLeft = 1;
constexpr unsigned kWheelAway = 4;
constexpr unsigned kWheelTowards = 5;

void pressButton(unsigned button)
{
    XTestFakeButtonEvent(display(), button, True, CurrentTime);
    XTestFakeButtonEvent(display(), button, False, CurrentTime);
    waitForServer();
}

void moveKey(KeySym symbol, bool down)
{
    const KeyCode code = XKeysymToKeycode(display(), symbol);
    REQUIRE(code != 0);
    XTestFakeKeyEvent(display(), code, down ? True : False, CurrentTime);
    waitForServer();
}

/// The symbols of letters, digits and the blank are their characters.
void pressKey(char character)
{
    const KeySym symbol = character == '\t' ? KeySym{XK_Tab} : static_cast<KeySym>(character);
    moveKey(symbol, true);
    moveKey(symbol, false);
}

} // namespace

int desktop::widthPx()
{
    return DisplayWidth(display(), DefaultScreen(display()));
}

int desktop::heightPx()
{
    return DisplayHeight(display(), DefaultScreen(display()));
}

Screenshot desktop::grab(int left, int top, int widthPx, int heightPx)
{
    XImage* const image =
        XGetImage(display(), nativehost::desktop(), left, top, static_cast<unsigned>(widthPx),
                  static_cast<unsigned>(heightPx), AllPlanes, ZPixmap);
    REQUIRE(image != nullptr);
    Screenshot shot{widthPx, heightPx, {}};
    for (int y = 0; y < heightPx; ++y) {
        for (int x = 0; x < widthPx; ++x) {
            const auto pixel = static_cast<int>(XGetPixel(image, x, y));
            shot.pixels.push_back({pixel >> 16 & 0xFF, pixel >> 8 & 0xFF, pixel & 0xFF});
        }
    }
    XDestroyImage(image);
    return shot;
}

void desktop::moveTo(int x, int y)
{
    XTestFakeMotionEvent(display(), -1, x, y, CurrentTime);
    waitForServer();
}

void desktop::click(int x, int y)
{
    moveTo(x, y);
    pressButton(kLeft);
}

void desktop::turnWheel(int x, int y, int steps)
{
    moveTo(x, y);
    for (int i = 0; i < std::abs(steps); ++i)
        pressButton(steps > 0 ? kWheelAway : kWheelTowards);
}

void keyboard::type(const std::string& text)
{
    for (const char character : text)
        pressKey(character);
}

void keyboard::pressWithControl(char letter)
{
    moveKey(XK_Control_L, true);
    pressKey(letter);
    moveKey(XK_Control_L, false);
}

// --- The process ------------------------------------------------------------------------------

namespace native {

const char* const kLibraryFile = "libZRScreenMod.so.0";

bool runEventLoopOnce()
{
    return g_main_context_iteration(nullptr, FALSE) != FALSE;
}

void* loadLibrary(const char* path)
{
    void* const library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (!library)
        check::fail(__FILE__, __LINE__, dlerror());
    return library;
}

void* findSymbol(void* library, const char* name)
{
    return dlsym(library, name);
}

bool unloadLibrary(void* library)
{
    return dlclose(library) == 0;
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

void freePages(void* pages, std::size_t bytes)
{
    munmap(pages, bytes);
}

bool protectPages(void* pages, std::size_t bytes, bool isOpen)
{
    return mprotect(pages, bytes, isOpen ? PROT_READ | PROT_WRITE : PROT_NONE) == 0;
}

} // namespace native
