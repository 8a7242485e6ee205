// Draws a tile's picture: three single-channel textures and a shader that converts to RGB.
#pragma once

#include "i420frame.h"

#include <QOpenGLFunctions>
#include <QOpenGLShader>
#include <QOpenGLShaderProgram>
#include <QOpenGLTexture>

#include <array>
#include <memory>

/// Owns the GL objects of one tile in one context. Every call needs that context current, except
/// that `release` and the destructor need none while nothing is initialized. GUI thread.
class YuvRenderer : private QOpenGLFunctions
{
public:
    YuvRenderer() = default;
    ~YuvRenderer();
    Q_DISABLE_COPY(YuvRenderer)

    /// Creates shaders, program and textures in the current context. Shaders that do not compile
    /// are logged; the tile then stays black.
    void initialize();
    [[nodiscard]] bool isInitialized() const { return m_bInitialized; }
    /// Deletes all GL objects; may be called again, and be followed by another `initialize`.
    void release();

    /// Uploads all three planes, unless the picture `serial` has been uploaded already: a paint
    /// without a new picture uploads nothing. The bytes are not needed any more afterwards.
    /// @param serial of the picture, never 0
    void upload(const zr::I420Layout& layout, const uchar* bytes, quint64 serial);
    /// `draw` will draw something.
    [[nodiscard]] bool hasPicture() const;
    /// Draws the last picture that was uploaded over the current viewport; nothing without one.
    void draw();

    /// Pictures uploaded so far, over all contexts.
    [[nodiscard]] quint64 uploadCount() const { return m_uUploadCount; }

private:
    const char* textOf(GLenum name);
    void buildProgram();
    void createTextures();

    bool m_bInitialized = false;
    GLenum m_planeFormat = 0; ///< the single-channel format of the context
    std::unique_ptr<QOpenGLShader> m_pVertexShader;
    std::unique_ptr<QOpenGLShader> m_pFragmentShader;
    std::unique_ptr<QOpenGLShaderProgram> m_pProgram;
    std::array<std::unique_ptr<QOpenGLTexture>, 3> m_textures; ///< Y, U, V
    std::array<int, 3> m_samplers{-1, -1, -1};                 ///< uniform locations
    quint64 m_uUploadedSerial = 0;                             ///< 0: no picture in the textures
    quint64 m_uUploadCount = 0;
};
