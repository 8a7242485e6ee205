#include "glwatch.h"

#include <GL/gl.h>
#include <GL/glx.h>

#include <cstring>
#include <dlfcn.h>

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

} // namespace

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

// Qt asks for most functions here.
ZR_SEEN __GLXextFuncPtr glXGetProcAddressARB(const GLubyte* name)
{
    static const auto real = next<decltype(glXGetProcAddressARB)>("glXGetProcAddressARB");
    const char* const text = reinterpret_cast<const char*>(name);
    if (std::strcmp(text, "glTexImage2D") == 0)
        return reinterpret_cast<__GLXextFuncPtr>(&glTexImage2D);
    if (std::strcmp(text, "glTexSubImage2D") == 0)
        return reinterpret_cast<__GLXextFuncPtr>(&glTexSubImage2D);
    return real(name);
}

ZR_SEEN __GLXextFuncPtr glXGetProcAddress(const GLubyte* name)
{
    return glXGetProcAddressARB(name);
}
