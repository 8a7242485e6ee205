#include "glwatch.h"

#include <GL/gl.h>
#include <GL/glx.h>

#include <algorithm>
#include <atomic>
#include <dlfcn.h>
#include <iterator>
#include <string_view>

std::function<void(const glwatch::Upload&)> glwatch::onUpload;
std::function<void()> glwatch::onSwap;

namespace {

/// The function of this name in the libraries.
template<typename Function>
Function* next(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

void noteUpload(GLsizei width, GLsizei height, GLenum format, const void* pixels)
{
    if (!pixels || !glwatch::onUpload)
        return;
    const bool isPlane = format == GL_RED || format == GL_LUMINANCE;
    const auto texels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    glwatch::onUpload({isPlane, texels * (isPlane ? 1 : 4), pixels});
}

std::atomic<long long> g_textures{0};
std::atomic<long long> g_framebuffers{0};
std::atomic<long long> g_renderbuffers{0};
std::atomic<long long> g_buffers{0};
std::atomic<long long> g_shaders{0};
std::atomic<long long> g_programs{0};

} // namespace

std::vector<glwatch::Objects> glwatch::objects()
{
    return {{"gl_textures", g_textures},
            {"gl_framebuffers", g_framebuffers},
            {"gl_renderbuffers", g_renderbuffers},
            {"gl_buffers", g_buffers},
            {"gl_shaders", g_shaders},
            {"gl_programs", g_programs}};
}

// What is found in place of the libraries' functions.
#define ZR_SEEN extern "C" __attribute__((visibility("default")))

ZR_SEEN void glXSwapBuffers(Display* display, GLXDrawable drawable)
{
    static const auto real = next<decltype(glXSwapBuffers)>("glXSwapBuffers");
    real(display, drawable);
    if (glwatch::onSwap)
        glwatch::onSwap();
}

ZR_SEEN void glTexImage2D(GLenum target, GLint level, GLint inside, GLsizei width, GLsizei height,
                          GLint border, GLenum format, GLenum type, const void* pixels)
{
    static const auto real = next<decltype(glTexImage2D)>("glTexImage2D");
    real(target, level, inside, width, height, border, format, type, pixels);
    noteUpload(width, height, format, pixels);
}

ZR_SEEN void glTexSubImage2D(GLenum target, GLint level, GLint x, GLint y, GLsizei width,
                             GLsizei height, GLenum format, GLenum type, const void* pixels)
{
    static const auto real = next<decltype(glTexSubImage2D)>("glTexSubImage2D");
    real(target, level, x, y, width, height, format, type, pixels);
    noteUpload(width, height, format, pixels);
}

// Objects that are made and deleted by the array.
#define ZR_COUNTED_ARRAY(Kind, counter)                                                            \
    ZR_SEEN void glGen##Kind(GLsizei count, GLuint* names)                                         \
    {                                                                                              \
        static const auto real = next<void(GLsizei, GLuint*)>("glGen" #Kind);                      \
        real(count, names);                                                                        \
        (counter) += count;                                                                        \
    }                                                                                              \
    ZR_SEEN void glDelete##Kind(GLsizei count, const GLuint* names)                                \
    {                                                                                              \
        static const auto real = next<void(GLsizei, const GLuint*)>("glDelete" #Kind);             \
        (counter) -= std::count_if(names, names + count, [](GLuint name) { return name != 0; });   \
        real(count, names);                                                                        \
    }
ZR_COUNTED_ARRAY(Textures, g_textures)
ZR_COUNTED_ARRAY(Framebuffers, g_framebuffers)
ZR_COUNTED_ARRAY(Renderbuffers, g_renderbuffers)
ZR_COUNTED_ARRAY(Buffers, g_buffers)

ZR_SEEN GLuint glCreateShader(GLenum kind)
{
    static const auto real = next<GLuint(GLenum)>("glCreateShader");
    ++g_shaders;
    return real(kind);
}

ZR_SEEN void glDeleteShader(GLuint shader)
{
    static const auto real = next<void(GLuint)>("glDeleteShader");
    g_shaders -= shader != 0 ? 1 : 0;
    real(shader);
}

ZR_SEEN GLuint glCreateProgram()
{
    static const auto real = next<GLuint()>("glCreateProgram");
    ++g_programs;
    return real();
}

ZR_SEEN void glDeleteProgram(GLuint program)
{
    static const auto real = next<void(GLuint)>("glDeleteProgram");
    g_programs -= program != 0 ? 1 : 0;
    real(program);
}

// Qt asks for its functions here.
ZR_SEEN __GLXextFuncPtr glXGetProcAddressARB(const GLubyte* name)
{
    struct Seen
    {
        std::string_view name;
        __GLXextFuncPtr function;
    };
#define ZR_SEEN_AS(function)                                                                       \
    Seen                                                                                           \
    {                                                                                              \
#        function, reinterpret_cast < __GLXextFuncPtr>(&(function))                                \
    }
    static const Seen kSeen[] = {ZR_SEEN_AS(glTexImage2D),       ZR_SEEN_AS(glTexSubImage2D),
                                 ZR_SEEN_AS(glGenTextures),      ZR_SEEN_AS(glDeleteTextures),
                                 ZR_SEEN_AS(glGenFramebuffers),  ZR_SEEN_AS(glDeleteFramebuffers),
                                 ZR_SEEN_AS(glGenRenderbuffers), ZR_SEEN_AS(glDeleteRenderbuffers),
                                 ZR_SEEN_AS(glGenBuffers),       ZR_SEEN_AS(glDeleteBuffers),
                                 ZR_SEEN_AS(glCreateShader),     ZR_SEEN_AS(glDeleteShader),
                                 ZR_SEEN_AS(glCreateProgram),    ZR_SEEN_AS(glDeleteProgram)};
    const std::string_view text(reinterpret_cast<const char*>(name));
    const auto found = std::find_if(std::begin(kSeen), std::end(kSeen),
                                    [&](const Seen& one) { return one.name == text; });
    static const auto real = next<decltype(glXGetProcAddressARB)>("glXGetProcAddressARB");
    return found != std::end(kSeen) ? found->function : real(name);
}

ZR_SEEN __GLXextFuncPtr glXGetProcAddress(const GLubyte* name)
{
    return glXGetProcAddressARB(name);
}
