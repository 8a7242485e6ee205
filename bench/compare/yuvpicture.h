// A picture drawn with the least that GL can do: one shader, three textures that are refilled.
#pragma once

#include "picture.h"

#include <array>

namespace compare {

/// Makes the shader and the rectangle, and leaves them bound in the current context for good.
void useYuvProgram();

/// The planes of one tile's picture. Every call needs the context of the first one.
class YuvTextures
{
public:
    void create(int widthPx, int heightPx);
    /// @param picture of that size
    void upload(const zrhost::Picture& picture) const;
    /// Over the current viewport.
    void draw() const;

private:
    [[nodiscard]] int widthOf(unsigned plane) const;
    [[nodiscard]] int heightOf(unsigned plane) const;
    void bind() const;

    int m_widthPx = 0;
    int m_heightPx = 0;
    std::array<unsigned, 3> m_names{}; ///< Y, U, V
};

} // namespace compare
