/* A meeting in a widget of GTK's: GTK runs the GLib main context that drives the library. */
#include <zrscreenmod.h>

#include <gdk/gdkx.h>
#include <gtk/gtk.h>

#include <string.h>

enum
{
    WIDTH = 640,
    HEIGHT = 360
};

typedef struct
{
    void* play;
    gboolean isOpen; /* the stream */
    int row;
} Participant;

static void* g_screen = NULL;

/* Called on the thread that loaded the library, from inside its event handling. */
static int onMessage(unsigned long message, unsigned long long wParam, long long hostValue)
{
    (void)wParam;
    if (message == ZRMSG_VIDEO_SHOWN || message == ZRMSG_VIDEO_HIDDEN) {
        Participant* const person = (Participant*)(intptr_t)hostValue;
        person->isOpen = message == ZRMSG_VIDEO_SHOWN; /* a client opens or closes the stream */
        ZRScreen_Preview(g_screen, person->play, person->isOpen);
    }
    return 0;
}

/* A picture in one block, without bytes between rows: it is copied once. */
static gboolean playNextPicture(gpointer data)
{
    static uint8_t i420[WIDTH * HEIGHT * 3 / 2];
    Participant* const person = data;
    VantrelRTCVideoFrameQT frame = {{0}, i420, 0, WIDTH, HEIGHT};

    person->row = (person->row + 4) % (HEIGHT - 40);
    memset(i420, 173, WIDTH * HEIGHT);                           /* green */
    memset(i420 + (size_t)person->row * WIDTH, 235, WIDTH * 40); /* a brighter bar */
    memset(i420 + WIDTH * HEIGHT, 42, WIDTH * HEIGHT / 4);
    memset(i420 + WIDTH * HEIGHT * 5 / 4, 26, WIDTH * HEIGHT / 4);
    if (person->isOpen)
        ZRScreen_PlayFrame(g_screen, person->play, &frame);
    return G_SOURCE_CONTINUE;
}

/* Sizes are physical pixels. */
static void onSize(GtkWidget* area, GtkAllocation* size, gpointer unused)
{
    const int scale = gtk_widget_get_scale_factor(area);
    tagRECT rect = {0, 0, size->width * scale, size->height * scale};
    (void)unused;
    if (g_screen)
        ZRScreen_MoveWindow(g_screen, &rect, 0);
}

static gboolean onClose(GtkWidget* window, GdkEvent* event, gpointer unused)
{
    (void)window;
    (void)event;
    (void)unused;
    gtk_main_quit();
    return TRUE; /* the window stays until the screen is released */
}

int main(int argc, char** argv)
{
    Participant ann = {NULL, FALSE, 0};
    char id[] = "ann";
    char name[] = "Ann";
    GtkWidget *window, *area;
    GtkAllocation size;
    guint pictures;

    gdk_set_allowed_backends("x11"); /* in a Wayland session by way of XWayland */
    gtk_init(&argc, &argv);
    window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    area = gtk_drawing_area_new();
    gtk_window_set_default_size(GTK_WINDOW(window), WIDTH, HEIGHT);
    gtk_container_add(GTK_CONTAINER(window), area);
    g_signal_connect(window, "delete-event", G_CALLBACK(onClose), NULL);
    g_signal_connect(area, "size-allocate", G_CALLBACK(onSize), NULL);
    gtk_widget_show_all(window);

    gdk_window_ensure_native(gtk_widget_get_window(area));
    gdk_display_sync(gdk_display_get_default()); /* the library can see the window now */
    g_screen = ZRScreen_Init((HWND)GDK_WINDOW_XID(gtk_widget_get_window(area)), onMessage);
    gtk_widget_get_allocation(area, &size);
    onSize(area, &size, NULL);
    ann.play = ZRScreen_AddPerson(g_screen, id, name, /* joinTime */ 1, 0, &ann);
    ZRScreen_JoinMeetingFinish(g_screen, true); /* everybody who was there is told: arrange them */

    pictures = g_timeout_add(40, playNextPicture, &ann);
    gtk_main();
    g_source_remove(pictures);
    ZRScreen_Release(g_screen); /* before its parent goes */
    gtk_widget_destroy(window);
    return 0;
}
