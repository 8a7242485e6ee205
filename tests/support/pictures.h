// Pictures: what a host delivers, and what is seen of it.
#pragma once

#include "desktop.h"
#include "synthetic_picture.h"
#include "zrscreenmod.h"

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <vector>

using zrhost::Yuv;

struct Rgb
{
    int r;
    int g;
    int b;
};

constexpr Rgb kRed{255, 0, 0};
constexpr Rgb kGreen{0, 255, 0};
constexpr Rgb kBlue{0, 0, 255};

inline Yuv yuvOf(const Rgb& colour)
{
    return zrhost::toBt709(colour.r, colour.g, colour.b);
}

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

/// An I420 picture, with the frame record that describes it. Its memory is as long as its planes.
class Picture
{
public:
    using ColourAt = std::function<Yuv(uint32_t x, uint32_t y)>;

    Picture(uint32_t widthPx, uint32_t heightPx, const Rgb& colour) ///< of one colour
        : Picture(widthPx, heightPx, [yuv = yuvOf(colour)](uint32_t, uint32_t) { return yuv; })
    {
    }
    Picture(uint32_t widthPx, uint32_t heightPx, const ColourAt& colourAt)
    {
        frame.width = widthPx;
        frame.height = heightPx;
        addPlane(1, &Yuv::y, colourAt);
        addPlane(2, &Yuv::u, colourAt);
        addPlane(2, &Yuv::v, colourAt);
        frame.pData = m_bytes.data();
    }
    Picture(Picture&&) = default;
    [[nodiscard]] const std::vector<uint8_t>& bytes() const { return m_bytes; }
    VantrelRTCVideoFrameQT frame{};

private:
    void addPlane(uint32_t step, uint8_t Yuv::*component, const ColourAt& colourAt)
    {
        for (uint32_t y = 0; y < frame.height; y += step) {
            for (uint32_t x = 0; x < frame.width; x += step)
                m_bytes.push_back(colourAt(x, y).*component);
        }
    }
    std::vector<uint8_t> m_bytes;
};
