// Pictures: what a host delivers, and what is seen of it.
#pragma once

#include "desktop.h"
#include "synthetic_picture.h"
#include "zrscreenmod.h"

#include <cstdint>
#include <cstdlib>
#include <vector>

struct Rgb
{
    int r;
    int g;
    int b;
};

constexpr Rgb kRed{255, 0, 0};
constexpr Rgb kGreen{0, 255, 0};
constexpr Rgb kBlue{0, 0, 255};

/// Whether two colours differ by at most `tolerance` in every channel.
inline bool isNear(const Rgb& a, const Rgb& b, int tolerance = 6)
{
    return std::abs(a.r - b.r) <= tolerance && std::abs(a.g - b.g) <= tolerance
           && std::abs(a.b - b.b) <= tolerance;
}

/// What was seen of a part of the screen.
struct Screenshot : zrhost::RgbImage
{
    [[nodiscard]] Rgb at(int x, int y) const
    {
        const uint8_t* const pixel = &data.at(static_cast<size_t>(y * width + x) * 3);
        return {pixel[0], pixel[1], pixel[2]};
    }
};

/// An I420 picture of one colour, with the frame record that describes it.
class Picture
{
public:
    Picture(uint32_t widthPx, uint32_t heightPx, const Rgb& colour)
    {
        const zrhost::Yuv yuv = zrhost::toBt709(colour.r, colour.g, colour.b);
        const size_t luma = size_t{widthPx} * heightPx;
        const size_t chroma = size_t{(widthPx + 1) / 2} * ((heightPx + 1) / 2);
        m_bytes.resize(luma, yuv.y);
        m_bytes.resize(luma + chroma, yuv.u);
        m_bytes.resize(luma + 2 * chroma, yuv.v);
        frame.pData = m_bytes.data();
        frame.width = widthPx;
        frame.height = heightPx;
    }
    Picture(Picture&&) = default;
    [[nodiscard]] const std::vector<uint8_t>& bytes() const { return m_bytes; }
    VantrelRTCVideoFrameQT frame{};

private:
    std::vector<uint8_t> m_bytes;
};
