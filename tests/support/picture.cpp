#include "picture.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

bool isNear(const Rgb& a, const Rgb& b, int tolerance)
{
    return std::abs(a.r - b.r) <= tolerance && std::abs(a.g - b.g) <= tolerance
           && std::abs(a.b - b.b) <= tolerance;
}

Rgb Yuv::rgb() const
{
    const double luma = 255.0 / 219.0 * (y - 16);
    const double cb = 255.0 / 224.0 * (u - 128);
    const double cr = 255.0 / 224.0 * (v - 128);
    const auto toByte = [](double value) {
        return static_cast<int>(std::lround(std::clamp(value, 0.0, 255.0)));
    };
    return {toByte(luma + 1.5748 * cr), toByte(luma - 0.1873 * cb - 0.4681 * cr),
            toByte(luma + 1.8556 * cb)};
}

Rgb Screenshot::at(int x, int y) const
{
    if (x < 0 || y < 0 || x >= widthPx || y >= heightPx)
        return {-1, -1, -1};
    return pixels[static_cast<size_t>(y) * static_cast<size_t>(widthPx) + static_cast<size_t>(x)];
}

Picture::Picture(uint32_t widthPx, uint32_t heightPx, const Yuv& colour)
{
    const size_t luma = size_t{widthPx} * heightPx;
    const size_t chroma = size_t{(widthPx + 1) / 2} * ((heightPx + 1) / 2);
    m_bytes.resize(luma, colour.y);
    m_bytes.resize(luma + chroma, colour.u);
    m_bytes.resize(luma + 2 * chroma, colour.v);
    frame.pData = m_bytes.data();
    frame.width = widthPx;
    frame.height = heightPx;
}

Picture::Picture(uint32_t widthPx, uint32_t heightPx, const ColourAt& colourAt)
    : Picture(widthPx, heightPx, kRed)
{
    auto next = m_bytes.begin();
    for (uint32_t y = 0; y < heightPx; ++y) {
        for (uint32_t x = 0; x < widthPx; ++x)
            *next++ = colourAt(x, y).y;
    }
    for (uint8_t Yuv::*component : {&Yuv::u, &Yuv::v}) {
        for (uint32_t y = 0; y < heightPx; y += 2) {
            for (uint32_t x = 0; x < widthPx; x += 2)
                *next++ = colourAt(x, y).*component;
        }
    }
}
