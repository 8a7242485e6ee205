#include "check.h"
#include "desktop.h"
#include "native.h"

#include <X11/Xlib.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <dlfcn.h>
#include <fstream>
#include <glib.h>
#include <sys/mman.h>
#include <unistd.h>

namespace {

Display* display(void* connection)
{
    return static_cast<Display*>(connection);
}

Window id(HWND window)
{
    return static_cast<Window>(reinterpret_cast<uintptr_t>(window));
}

bool isCodeLoaded(const char* library)
{
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        // A sanitizer keeps the file mapped, to read symbols; code can be run only when loaded.
        const bool isCode = line.find(" r-xp ") != std::string::npos;
        if (isCode && line.find(library) != std::string::npos)
            return true;
    }
    return false;
}

} // namespace

NativeWindow::NativeWindow(int widthPx, int heightPx, int x, int y)
    : m_display(XOpenDisplay(nullptr))
{
    REQUIRE(m_display != nullptr);
    Display* const d = display(m_display);
    const int screen = DefaultScreen(d);
    const Window window =
        XCreateSimpleWindow(d, RootWindow(d, screen), x, y, static_cast<unsigned>(widthPx),
                            static_cast<unsigned>(heightPx), 0, 0, WhitePixel(d, screen));
    m_window = reinterpret_cast<HWND>(static_cast<uintptr_t>(window));
    XMapWindow(d, window);
    XSync(d, False);
}

NativeWindow::~NativeWindow()
{
    XDestroyWindow(display(m_display), id(m_window));
    XCloseDisplay(display(m_display));
}

HWND NativeWindow::hwnd() const
{
    return m_window;
}

Screenshot NativeWindow::grab() const
{
    Display* const d = display(m_display);
    XWindowAttributes attributes;
    XGetWindowAttributes(d, id(m_window), &attributes);
    return desktop::grab(attributes.x, attributes.y, attributes.width, attributes.height);
}

int NativeWindow::childCount() const
{
    Window root = 0;
    Window parent = 0;
    Window* children = nullptr;
    unsigned count = 0;
    XSync(display(m_display), False);
    XQueryTree(display(m_display), id(m_window), &root, &parent, &children, &count);
    if (children)
        XFree(children);
    return static_cast<int>(count);
}

EndlessText::EndlessText()
    : m_size(static_cast<size_t>(sysconf(_SC_PAGESIZE)))
    , m_pages(static_cast<char*>(
          mmap(nullptr, 2 * m_size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)))
{
    REQUIRE(m_pages != MAP_FAILED);
    REQUIRE(mprotect(m_pages + m_size, m_size, PROT_NONE) == 0);
    std::memset(m_pages, 'a', m_size);
}

EndlessText::~EndlessText()
{
    munmap(m_pages, 2 * m_size);
}

namespace native {

const char* const kLibraryFile = "libZRScreenMod.so.0";

bool runEventLoopOnce()
{
    return g_main_context_iteration(nullptr, FALSE) != FALSE;
}

bool hasDisplay()
{
    return std::getenv("DISPLAY") != nullptr;
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

bool isModuleLoaded()
{
    return isCodeLoaded("libZRScreenMod");
}

bool isQtLoaded()
{
    return isCodeLoaded("libQt5Core") && isCodeLoaded("libQt5Gui") && isCodeLoaded("libQt5Widgets");
}

int threadCount()
{
    int count = 0;
    DIR* tasks = opendir("/proc/self/task");
    while (const dirent* entry = readdir(tasks))
        count += entry->d_name[0] != '.' ? 1 : 0;
    closedir(tasks);
    return count;
}

} // namespace native
