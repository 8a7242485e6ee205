// The least that can show the pictures: a window, a shader, three textures a tile.
#include "workload.h"

#define GL_GLEXT_PROTOTYPES
#include <GL/gl.h>
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

constexpr const char* kVertexSource = "attribute vec2 corner; varying vec2 at;"
                                      "void main() { gl_Position = vec4(corner, 0.0, 1.0);"
                                      " at = vec2(corner.x + 1.0, 1.0 - corner.y) * 0.5; }";

// BT.709, limited range.
constexpr const char* kFragmentSource =
    "varying vec2 at; uniform sampler2D planeY; uniform sampler2D planeU; uniform sampler2D planeV;"
    "void main() {"
    " float y = 1.1643836 * (texture2D(planeY, at).r - 0.0627451);"
    " float u = texture2D(planeU, at).r - 0.5019608;"
    " float v = texture2D(planeV, at).r - 0.5019608;"
    " gl_FragColor = vec4(y + 1.7927411 * v, y - 0.2132486 * u - 0.5329093 * v,"
    " y + 2.1124018 * u, 1.0); }";

GLuint shader(GLenum kind, const char* source)
{
    const GLuint name = glCreateShader(kind);
    glShaderSource(name, 1, &source, nullptr);
    glCompileShader(name);
    return name;
}

void useProgram()
{
    const GLuint program = glCreateProgram();
    glAttachShader(program, shader(GL_VERTEX_SHADER, kVertexSource));
    glAttachShader(program, shader(GL_FRAGMENT_SHADER, kFragmentSource));
    glBindAttribLocation(program, 0, "corner");
    glLinkProgram(program);
    GLint linked = 0;
    glGetProgramiv(program, GL_LINK_STATUS, &linked);
    if (!linked)
        fail("no shader");
    glUseProgram(program);
    glUniform1i(glGetUniformLocation(program, "planeY"), 0);
    glUniform1i(glGetUniformLocation(program, "planeU"), 1);
    glUniform1i(glGetUniformLocation(program, "planeV"), 2);
}

class GlPainter : public compare::Painter
{
public:
    explicit GlPainter(const compare::Workload& workload)
        : m_workload(workload)
        , m_textures(static_cast<std::size_t>(workload.tiles()))
    {
        useProgram();
        for (auto& textures : m_textures)
            makeTextures(textures);
        static constexpr std::array<GLfloat, 8> kCorners{-1, -1, 1, -1, -1, 1, 1, 1};
        glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, kCorners.data());
        glEnableVertexAttribArray(0);
        glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    }

    void upload(int tile, const zrhost::Picture& picture) override
    {
        const std::uint8_t* plane = picture.data.data();
        bind(tile);
        for (unsigned i = 0; i < 3; ++i) {
            const int width = widthOf(i);
            const int height = heightOf(i);
            glActiveTexture(GL_TEXTURE0 + i);
            glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, width, height, GL_RED, GL_UNSIGNED_BYTE, plane);
            plane += static_cast<std::ptrdiff_t>(width) * height;
        }
    }

    void redraw() override
    {
        const int cells = m_workload.columns;
        for (int tile = 0; tile < m_workload.tiles(); ++tile) {
            const int column = tile % cells;
            const int row = tile / cells;
            const int left = compare::edge(column, cells, kWindowWidthPx);
            const int bottom = compare::edge(row, cells, kWindowHeightPx);
            glViewport(left, bottom, compare::edge(column + 1, cells, kWindowWidthPx) - left,
                       compare::edge(row + 1, cells, kWindowHeightPx) - bottom);
            bind(tile);
            glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
        }
        m_window.swap();
    }

private:
    using Textures = std::array<GLuint, 3>;

    [[nodiscard]] int widthOf(unsigned plane) const
    {
        return plane == 0 ? m_workload.widthPx : (m_workload.widthPx + 1) / 2;
    }
    [[nodiscard]] int heightOf(unsigned plane) const
    {
        return plane == 0 ? m_workload.heightPx : (m_workload.heightPx + 1) / 2;
    }
    void makeTextures(Textures& textures) const
    {
        glGenTextures(3, textures.data());
        for (unsigned i = 0; i < 3; ++i) {
            glBindTexture(GL_TEXTURE_2D, textures[i]);
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
            glTexImage2D(GL_TEXTURE_2D, 0, GL_RED, widthOf(i), heightOf(i), 0, GL_RED,
                         GL_UNSIGNED_BYTE, nullptr);
        }
    }
    void bind(int tile) const
    {
        const Textures& textures = m_textures[static_cast<std::size_t>(tile)];
        for (unsigned i = 0; i < 3; ++i) {
            glActiveTexture(GL_TEXTURE0 + i);
            glBindTexture(GL_TEXTURE_2D, textures[i]);
        }
    }

    GlWindow m_window; // first: the others need its context
    compare::Workload m_workload;
    std::vector<Textures> m_textures;
};

} // namespace

int main(int argc, char** argv)
{
    const compare::Workload workload = compare::workloadOf(argc, argv);
    GlPainter painter(workload);
    compare::runPeer(workload, painter);
}
