/* A meeting in C, with nothing but Xlib and GLib around it. The pictures are what a hardware
 * decoder delivers: NV12, with bytes between the rows. */
#include <zrscreenmod_c.h>

#include <X11/Xlib.h>
#include <glib-unix.h>

#include <string.h>

enum
{
    WIDTH = 640,
    HEIGHT = 360,
    STRIDE = 768
};

typedef struct
{
    void* play;
    gint isOpen; /* the stream; read on another thread */
} Participant;

static void* g_screen = NULL;
static GMainLoop* g_loop = NULL;
static Display* g_display = NULL;
static Atom g_deleteWindow = 0;
static gint g_isRunning = 1;

/* Called on the thread that loaded the library, from inside its event handling. */
static int onMessage(unsigned long message, unsigned long long wParam, long long hostValue)
{
    (void)wParam;
    if (message == ZRMSG_VIDEO_SHOWN || message == ZRMSG_VIDEO_HIDDEN) {
        Participant* const person = (Participant*)(intptr_t)hostValue;
        const bool isShown = message == ZRMSG_VIDEO_SHOWN;
        g_atomic_int_set(&person->isOpen, isShown); /* a client opens or closes the stream here */
        ZRScreen_Preview(g_screen, person->play, isShown);
    }
    return 0;
}

static gpointer decode(gpointer data)
{
    static uint8_t nv12[STRIDE * HEIGHT * 3 / 2];
    const Participant* const person = data;
    const ZRPlanes picture = {nv12, nv12 + STRIDE * HEIGHT, NULL, STRIDE, STRIDE, 0, WIDTH, HEIGHT};
    size_t i;
    int row = 0;

    for (i = STRIDE * HEIGHT; i < sizeof nv12; i += 2) {
        nv12[i] = 214; /* U and V of magenta */
        nv12[i + 1] = 230;
    }
    while (g_atomic_int_get(&g_isRunning)) {
        row = (row + 4) % (HEIGHT - 40);
        memset(nv12, 78, STRIDE * HEIGHT);
        memset(nv12 + (size_t)row * STRIDE, 235, STRIDE * 40); /* a light bar */
        if (g_atomic_int_get(&person->isOpen))
            ZRScreenC_PlayPlanes(g_screen, person->play, &picture);
        g_usleep(40000);
    }
    return NULL;
}

static void place(int width, int height)
{
    tagRECT area = {0, 0, width, height};
    ZRScreen_MoveWindow(g_screen, &area, 0);
}

static gboolean onEvents(gint descriptor, GIOCondition condition, gpointer unused)
{
    (void)descriptor;
    (void)condition;
    (void)unused;
    while (XPending(g_display) > 0) {
        XEvent event;
        XNextEvent(g_display, &event);
        if (event.type == ConfigureNotify)
            place(event.xconfigure.width, event.xconfigure.height);
        if (event.type == ClientMessage && (Atom)event.xclient.data.l[0] == g_deleteWindow)
            g_main_loop_quit(g_loop);
    }
    return G_SOURCE_CONTINUE;
}

static Window openWindow(void)
{
    const Window window =
        XCreateSimpleWindow(g_display, DefaultRootWindow(g_display), 0, 0, WIDTH, HEIGHT, 0, 0, 0);
    g_deleteWindow = XInternAtom(g_display, "WM_DELETE_WINDOW", False);
    XSetWMProtocols(g_display, window, &g_deleteWindow, 1);
    XStoreName(g_display, window, "Meeting");
    XSelectInput(g_display, window, StructureNotifyMask);
    XMapWindow(g_display, window);
    XSync(g_display, False); /* the library's own connection can see the window now */
    return window;
}

int main(void)
{
    Participant ann = {NULL, 0};
    char id[] = "ann";
    char name[] = "Ann";
    Window window;
    GThread* decoder;

    g_display = XOpenDisplay(NULL);
    if (!g_display || ZRScreenC_GetVersion() / 100 != ZRSCREENMOD_VERSION / 100)
        return 1; /* below 1.0 each minor version may have another interface */
    window = openWindow();
    g_loop = g_main_loop_new(NULL, FALSE);
    g_unix_fd_add(ConnectionNumber(g_display), G_IO_IN, onEvents, NULL);

    g_screen = ZRScreen_Init((HWND)window, onMessage);
    place(WIDTH, HEIGHT);
    ann.play = ZRScreen_AddPerson(g_screen, id, name, /* joinTime */ 1, 0, &ann);
    ZRScreen_JoinMeetingFinish(g_screen, true); /* everybody who was there is told: arrange them */

    decoder = g_thread_new("decoder", decode, &ann);
    onEvents(0, G_IO_IN, NULL); /* what has been read already wakes no loop */
    g_main_loop_run(g_loop);
    g_atomic_int_set(&g_isRunning, 0);
    g_thread_join(decoder);

    ZRScreen_Release(g_screen); /* before its parent goes */
    XDestroyWindow(g_display, window);
    XCloseDisplay(g_display);
    g_main_loop_unref(g_loop);
    return 0;
}
