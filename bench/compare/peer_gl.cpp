// The least that can show the pictures: a window, a shader, three textures a tile.
#include "workload.h"
#include "yuvpicture.h"

#include <GL/glx.h>

#include <array>
#include <cstdio>
#include <cstdlib>

namespace {

using compare::kWindowHeightPx;
using compare::kWindowWidthPx;

[[noreturn]] void fail(const char* what)
{
    std::fprintf(stderr, "%s\n", what);
    std::exit(EXIT_FAILURE);
}

/// A window of X11 with a current context.
class GlWindow
{
public:
    GlWindow()
        : m_display(XOpenDisplay(nullptr))
    {
        if (!m_display)
            fail("no display");
        std::array<int, 8> wanted{GLX_RGBA, GLX_DOUBLEBUFFER, GLX_RED_SIZE, 8, GLX_GREEN_SIZE, 8,
                                  None};
        XVisualInfo* const visual =
            glXChooseVisual(m_display, DefaultScreen(m_display), wanted.data());
        if (!visual)
            fail("no visual");
        const Window root = DefaultRootWindow(m_display);
        XSetWindowAttributes attributes{};
        attributes.colormap = XCreateColormap(m_display, root, visual->visual, AllocNone);
        m_window =
            XCreateWindow(m_display, root, 0, 0, kWindowWidthPx, kWindowHeightPx, 0, visual->depth,
                          InputOutput, visual->visual, CWColormap | CWBorderPixel, &attributes);
        m_context = glXCreateContext(m_display, visual, nullptr, True);
        XFree(visual);
        XMapWindow(m_display, m_window);
        if (!glXMakeCurrent(m_display, m_window, m_context))
            fail("no context");
    }
    ~GlWindow()
    {
        glXMakeCurrent(m_display, None, nullptr);
        glXDestroyContext(m_display, m_context);
        XDestroyWindow(m_display, m_window);
        XCloseDisplay(m_display);
    }
    GlWindow(const GlWindow&) = delete;
    GlWindow& operator=(const GlWindow&) = delete;

    void swap() { glXSwapBuffers(m_display, m_window); }

private:
    Display* m_display;
    Window m_window = 0;
    GLXContext m_context = nullptr;
};

class GlPainter : public compare::Painter
{
public:
    explicit GlPainter(const compare::Workload& workload)
        : m_workload(workload)
        , m_textures(static_cast<std::size_t>(workload.tiles()))
    {
        compare::useYuvProgram();
        for (compare::YuvTextures& textures : m_textures)
            textures.create(workload.widthPx, workload.heightPx);
    }

    void upload(int tile, const zrhost::Picture& picture) override
    {
        m_textures[static_cast<std::size_t>(tile)].upload(picture);
    }

    void redraw() override
    {
        for (int tile = 0; tile < m_workload.tiles(); ++tile) {
            const auto [left, bottom, width, height] = compare::cellOf(tile, m_workload.columns);
            glViewport(left, bottom, width, height);
            m_textures[static_cast<std::size_t>(tile)].draw();
        }
        m_window.swap();
    }

private:
    GlWindow m_window; // first: the others need its context
    compare::Workload m_workload;
    std::vector<compare::YuvTextures> m_textures;
};

} // namespace

int main(int argc, char** argv)
{
    const compare::Workload workload = compare::workloadOf(argc, argv);
    GlPainter painter(workload);
    compare::runPeer(workload, painter);
}
