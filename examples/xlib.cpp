// A meeting in a window of Xlib's. The library has no event loop of its own: on Linux the default
// GLib main context drives it, which takes the events of the program's own connection along.
#include <zrscreenmod.h>

#include <X11/Xlib.h>
#include <glib-unix.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <thread>
#include <vector>

namespace {

struct Participant
{
    void* play = nullptr;
    std::atomic<bool> isOpen{false}; ///< the stream
};

void* g_screen = nullptr;
GMainLoop* g_loop = nullptr;
Display* g_display = nullptr;
Atom g_deleteWindow = 0;

/// Called on the thread that loaded the library, from inside its event handling.
int onMessage(unsigned long message, unsigned long long, long long hostValue)
{
    if (message != ZRMSG_VIDEO_SHOWN && message != ZRMSG_VIDEO_HIDDEN)
        return 0;
    auto* const person = reinterpret_cast<Participant*>(hostValue);
    person->isOpen = message == ZRMSG_VIDEO_SHOWN; // a client opens or closes the stream here
    ZRScreen_Preview(g_screen, person->play, person->isOpen);
    return 0;
}

/// What a decoder does: any thread, any size, any rate. The picture is copied at once.
void decode(const Participant& person, const std::atomic<bool>& isRunning)
{
    constexpr uint32_t width = 640;
    constexpr uint32_t height = 360;
    constexpr size_t luma = size_t{width} * height;
    std::vector<uint8_t> i420(luma * 3 / 2);
    for (uint32_t row = 0; isRunning; row = (row + 4) % (height - 40)) {
        std::memset(i420.data(), 63, luma);                                      // red
        std::memset(i420.data() + size_t{row} * width, 235, size_t{40} * width); // a brighter bar
        std::memset(i420.data() + luma, 102, luma / 4);
        std::memset(i420.data() + luma * 5 / 4, 240, luma / 4);
        VantrelRTCVideoFrameQT frame = {{}, i420.data(), 0, width, height};
        if (person.isOpen)
            ZRScreen_PlayFrame(g_screen, person.play, &frame);
        std::this_thread::sleep_for(std::chrono::milliseconds(40));
    }
}

void place(int width, int height)
{
    tagRECT area = {0, 0, width, height};
    ZRScreen_MoveWindow(g_screen, &area, 0);
}

gboolean onEvents(gint, GIOCondition, gpointer)
{
    while (XPending(g_display) > 0) {
        XEvent event;
        XNextEvent(g_display, &event);
        if (event.type == ConfigureNotify)
            place(event.xconfigure.width, event.xconfigure.height);
        if (event.type == ClientMessage
            && static_cast<Atom>(event.xclient.data.l[0]) == g_deleteWindow)
            g_main_loop_quit(g_loop);
    }
    return G_SOURCE_CONTINUE;
}

Window openWindow(unsigned width, unsigned height)
{
    const Window window =
        XCreateSimpleWindow(g_display, DefaultRootWindow(g_display), 0, 0, width, height, 0, 0, 0);
    g_deleteWindow = XInternAtom(g_display, "WM_DELETE_WINDOW", False);
    XSetWMProtocols(g_display, window, &g_deleteWindow, 1);
    XStoreName(g_display, window, "Meeting");
    XSelectInput(g_display, window, StructureNotifyMask);
    XMapWindow(g_display, window);
    XSync(g_display, False); // the library's own connection can see the window now
    return window;
}

} // namespace

int main()
{
    g_display = XOpenDisplay(nullptr);
    if (!g_display)
        return 1;
    const Window window = openWindow(640, 360);
    g_loop = g_main_loop_new(nullptr, FALSE);
    g_unix_fd_add(ConnectionNumber(g_display), G_IO_IN, onEvents, nullptr);

    Participant ann;
    char id[] = "ann";
    char name[] = "Ann";
    g_screen = ZRScreen_Init(reinterpret_cast<HWND>(window), onMessage);
    place(640, 360);
    ann.play = ZRScreen_AddPerson(g_screen, id, name, /*joinTime*/ 1, 0, &ann);
    ZRScreen_JoinMeetingFinish(g_screen, true); // everybody who was there is told: arrange them

    std::atomic<bool> isRunning{true};
    std::thread decoder([&] { decode(ann, isRunning); });
    onEvents(0, G_IO_IN, nullptr); // what has been read already wakes no loop
    g_main_loop_run(g_loop);
    isRunning = false;
    decoder.join();

    ZRScreen_Release(g_screen); // before its parent goes
    XDestroyWindow(g_display, window);
    XCloseDisplay(g_display);
    g_main_loop_unref(g_loop);
    return 0;
}
