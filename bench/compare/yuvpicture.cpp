#include "yuvpicture.h"

#define GL_GLEXT_PROTOTYPES
#include <GL/gl.h>

#include <cstdio>
#include <cstdlib>

namespace compare {

namespace {

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

} // namespace

void useYuvProgram()
{
    const GLuint program = glCreateProgram();
    glAttachShader(program, shader(GL_VERTEX_SHADER, kVertexSource));
    glAttachShader(program, shader(GL_FRAGMENT_SHADER, kFragmentSource));
    glBindAttribLocation(program, 0, "corner");
    glLinkProgram(program);
    GLint linked = 0;
    glGetProgramiv(program, GL_LINK_STATUS, &linked);
    if (!linked) {
        std::fputs("no shader\n", stderr);
        std::exit(EXIT_FAILURE);
    }
    glUseProgram(program);
    glUniform1i(glGetUniformLocation(program, "planeY"), 0);
    glUniform1i(glGetUniformLocation(program, "planeU"), 1);
    glUniform1i(glGetUniformLocation(program, "planeV"), 2);
    static constexpr std::array<GLfloat, 8> kCorners{-1, -1, 1, -1, -1, 1, 1, 1};
    glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, kCorners.data());
    glEnableVertexAttribArray(0);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
}

void YuvTextures::create(int widthPx, int heightPx)
{
    m_widthPx = widthPx;
    m_heightPx = heightPx;
    glGenTextures(3, m_names.data());
    for (unsigned i = 0; i < 3; ++i) {
        glBindTexture(GL_TEXTURE_2D, m_names[i]);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RED, widthOf(i), heightOf(i), 0, GL_RED, GL_UNSIGNED_BYTE,
                     nullptr);
    }
}

void YuvTextures::upload(const zrhost::Picture& picture) const
{
    const std::uint8_t* plane = picture.data.data();
    bind();
    for (unsigned i = 0; i < 3; ++i) {
        const int width = widthOf(i);
        const int height = heightOf(i);
        glActiveTexture(GL_TEXTURE0 + i);
        glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, width, height, GL_RED, GL_UNSIGNED_BYTE, plane);
        plane += static_cast<std::ptrdiff_t>(width) * height;
    }
}

void YuvTextures::draw() const
{
    bind();
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

int YuvTextures::widthOf(unsigned plane) const
{
    return plane == 0 ? m_widthPx : (m_widthPx + 1) / 2;
}

int YuvTextures::heightOf(unsigned plane) const
{
    return plane == 0 ? m_heightPx : (m_heightPx + 1) / 2;
}

void YuvTextures::bind() const
{
    for (unsigned i = 0; i < 3; ++i) {
        glActiveTexture(GL_TEXTURE0 + i);
        glBindTexture(GL_TEXTURE_2D, m_names[i]);
    }
}

} // namespace compare
