// Pictures: what a host delivers, and what is seen of it.
#pragma once

#include "zrscreenmod.h"

#include <cstdint>
#include <functional>
#include <vector>

struct Rgb
{
    int r;
    int g;
    int b;
};

/// Whether two colours differ by at most `tolerance` in every channel.
bool isNear(const Rgb& a, const Rgb& b, int tolerance = 6);

/// What was seen of a part of the screen.
class Screenshot
{
public:
    /// @return a colour that there is not beyond the edges
    [[nodiscard]] Rgb at(int x, int y) const;
    int widthPx = 0;
    int heightPx = 0;
    std::vector<Rgb> pixels; ///< rows from the top
};

/// A colour as a picture carries it: BT.709, limited range.
struct Yuv
{
    uint8_t y;
    uint8_t u;
    uint8_t v;
    [[nodiscard]] Rgb rgb() const;
};

constexpr Yuv kRed{63, 102, 240};
constexpr Yuv kGreen{173, 42, 26};
constexpr Yuv kBlue{32, 240, 118};
constexpr Yuv kYellow{219, 16, 138};
constexpr Yuv kMagenta{78, 214, 230};
constexpr Yuv kCyan{188, 154, 16};

/// An I420 picture, with the frame record that describes it. Its memory is as long as its planes.
class Picture
{
public:
    using ColourAt = std::function<Yuv(uint32_t x, uint32_t y)>;

    Picture(uint32_t widthPx, uint32_t heightPx, const Yuv& colour); ///< of one colour
    Picture(uint32_t widthPx, uint32_t heightPx, const ColourAt& colourAt);
    Picture(Picture&&) = default;
    [[nodiscard]] const std::vector<uint8_t>& bytes() const { return m_bytes; }
    VantrelRTCVideoFrameQT frame{};

private:
    std::vector<uint8_t> m_bytes;
};
