#include "yuvrenderer.h"

#include <QDebug>
#include <QOpenGLContext>

#include <utility>

namespace {

constexpr GLuint kVertexLocation = 3;
constexpr GLuint kTextureLocation = 4;

const char* const kVertexSource =
    "attribute vec4 vertexIn; attribute vec2 textureIn; varying vec2 textureOut; "
    "void main(void) { gl_Position = vertexIn; textureOut = textureIn; }";

// BT.709, limited range. The offsets of the samples are folded into the fourth column; the colour
// is a row vector times the matrix.
const char* const kFragmentSource =
    "#ifdef GL_ES\n precision mediump float; \n #endif\n "
    "varying vec2 textureOut; "
    "uniform sampler2D tex_y; uniform sampler2D tex_u; uniform sampler2D tex_v; "
    "const mat4 YUV2RGB = mat4( "
    "1.1643835616, 0, 1.7927410714, -0.9729450750, "
    "1.1643835616, -0.2132486143, -0.5329093286, 0.3014826655, "
    "1.1643835616, 2.1124017857, 0, -1.1334022179, "
    "0, 0, 0, 1); "
    "void main(void) { vec3 yuv; "
    "yuv.x = texture2D(tex_y, textureOut).r; "
    "yuv.y = texture2D(tex_u, textureOut).r; "
    "yuv.z = texture2D(tex_v, textureOut).r; "
    "gl_FragColor = vec4(yuv, 1.0) * YUV2RGB; }";

constexpr GLfloat kVertices[] = {-1, -1, 1, -1, -1, 1, 1, 1};
// A texture's first row is the picture's top.
constexpr GLfloat kTextureCoordinates[] = {0, 1, 1, 1, 0, 0, 1, 0};

/// A plane in a tile's block: bytes, which are samples.
struct Plane
{
    std::size_t offset;
    std::size_t width;
    std::size_t height;
};

/// Red-only textures came with OpenGL 3.0; before that, and in ES 2, luminance does the same for
/// a shader that reads the red component.
GLenum singleChannelFormat(const QOpenGLContext& context)
{
    const bool hasRed = !context.isOpenGLES()
                        && (context.format().majorVersion() >= 3
                            || context.hasExtension(QByteArray("GL_ARB_texture_rg")));
    return hasRed ? GL_RED : GL_LUMINANCE;
}

} // namespace

YuvRenderer::~YuvRenderer()
{
    release();
}

const char* YuvRenderer::textOf(GLenum name)
{
    return reinterpret_cast<const char*>(glGetString(name));
}

void YuvRenderer::initialize()
{
    release();
    initializeOpenGLFunctions();
    static bool logged = false; // every tile has the same
    if (!std::exchange(logged, true))
        qDebug() << "GL renderer:" << textOf(GL_RENDERER) << ",version:" << textOf(GL_VERSION);
    m_planeFormat = singleChannelFormat(*QOpenGLContext::currentContext());
    buildProgram();
    createTextures();
    m_bInitialized = true;
}

void YuvRenderer::buildProgram()
{
    m_pVertexShader = std::make_unique<QOpenGLShader>(QOpenGLShader::Vertex);
    if (!m_pVertexShader->compileSourceCode(kVertexSource))
        qDebug() << "Vertex shader log:" << m_pVertexShader->log();
    m_pFragmentShader = std::make_unique<QOpenGLShader>(QOpenGLShader::Fragment);
    if (!m_pFragmentShader->compileSourceCode(kFragmentSource))
        qDebug() << "Fragment shader log:" << m_pFragmentShader->log();

    m_pProgram = std::make_unique<QOpenGLShaderProgram>();
    m_pProgram->addShader(m_pFragmentShader.get());
    m_pProgram->addShader(m_pVertexShader.get());
    m_pProgram->bindAttributeLocation("vertexIn", kVertexLocation);
    m_pProgram->bindAttributeLocation("textureIn", kTextureLocation);
    if (!m_pProgram->link())
        qDebug() << "Shader program log:" << m_pProgram->log();
    m_samplers = {m_pProgram->uniformLocation("tex_y"), m_pProgram->uniformLocation("tex_u"),
                  m_pProgram->uniformLocation("tex_v")};
}

void YuvRenderer::createTextures()
{
    for (auto& texture : m_textures) {
        texture = std::make_unique<QOpenGLTexture>(QOpenGLTexture::Target2D);
        texture->create();
        glBindTexture(GL_TEXTURE_2D, texture->textureId());
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    }
    glBindTexture(GL_TEXTURE_2D, 0);
}

void YuvRenderer::release()
{
    if (!m_bInitialized)
        return;
    for (auto& texture : m_textures)
        texture.reset();
    m_pVertexShader.reset();
    m_pFragmentShader.reset();
    m_pProgram.reset();
    m_uUploadedSerial = 0;
    m_bInitialized = false;
}

void YuvRenderer::upload(const zr::I420Layout& layout, const uchar* bytes, quint64 serial)
{
    if (layout.isEmpty())
        m_uUploadedSerial = 0; // the textures hold an earlier picture
    if (!m_bInitialized || layout.isEmpty() || serial == m_uUploadedSerial)
        return;
    const std::array<Plane, 3> planes{
        Plane{0, layout.lumaStride, layout.lumaRows},
        Plane{layout.uOffset(), layout.chromaStride, layout.chromaRows},
        Plane{layout.vOffset(), layout.chromaStride, layout.chromaRows}};
    for (std::size_t i = 0; i < m_textures.size(); ++i) {
        glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(i));
        glBindTexture(GL_TEXTURE_2D, m_textures[i]->textureId());
        // The default unpack alignment of 4 is met by every row: the luma stride is a multiple
        // of 8, and so the chroma stride one of 4.
        glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(m_planeFormat),
                     static_cast<GLsizei>(planes[i].width), static_cast<GLsizei>(planes[i].height),
                     0, m_planeFormat, GL_UNSIGNED_BYTE, bytes + planes[i].offset);
    }
    glActiveTexture(GL_TEXTURE0);
    m_uUploadedSerial = serial;
    ++m_uUploadCount;
}

bool YuvRenderer::hasPicture() const
{
    return m_bInitialized && m_uUploadedSerial != 0 && m_pProgram->isLinked();
}

void YuvRenderer::draw()
{
    if (!hasPicture())
        return;
    m_pProgram->bind();
    for (std::size_t i = 0; i < m_textures.size(); ++i) {
        glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(i));
        glBindTexture(GL_TEXTURE_2D, m_textures[i]->textureId());
        glUniform1i(m_samplers[i], static_cast<GLint>(i));
    }
    // Client-side arrays: the pointers refer to constants, which outlive every draw.
    glVertexAttribPointer(kVertexLocation, 2, GL_FLOAT, GL_FALSE, 0, kVertices);
    glVertexAttribPointer(kTextureLocation, 2, GL_FLOAT, GL_FALSE, 0, kTextureCoordinates);
    glEnableVertexAttribArray(kVertexLocation);
    glEnableVertexAttribArray(kTextureLocation);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glDisableVertexAttribArray(kTextureLocation);
    glDisableVertexAttribArray(kVertexLocation);
    glActiveTexture(GL_TEXTURE0);
    m_pProgram->release();
}
