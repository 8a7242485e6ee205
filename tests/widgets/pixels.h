// Pictures of known colours, and the colours they are to have on the screen.
#pragma once

#include "zrscreenmod.h"

#include <QColor>
#include <QImage>

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

namespace zrtest {

/// A colour as a picture carries it: BT.709, limited range.
struct Yuv
{
    int y, u, v;
};

constexpr Yuv kBlack{16, 128, 128};
constexpr Yuv kWhite{235, 128, 128};
constexpr Yuv kGrey{126, 128, 128};
constexpr Yuv kRed{63, 102, 240};
constexpr Yuv kGreen{173, 42, 26};
constexpr Yuv kBlue{32, 240, 118};

/// The colour that the standard's formula gives, computed from its luma coefficients.
inline QColor toRgb(const Yuv& yuv)
{
    constexpr double kR = 0.2126;
    constexpr double kB = 0.0722;
    const double y = (yuv.y - 16) / 219.0;
    const double b = (yuv.u - 128) / 224.0;
    const double r = (yuv.v - 128) / 224.0;
    const double red = y + 2 * (1 - kR) * r;
    const double blue = y + 2 * (1 - kB) * b;
    const double green = (y - kR * red - kB * blue) / (1 - kR - kB);
    const auto byte = [](double value) {
        return static_cast<int>(std::lround(std::clamp(value, 0.0, 1.0) * 255));
    };
    return {byte(red), byte(green), byte(blue)};
}

inline bool isNear(const QColor& a, const QColor& b, int tolerance = 2)
{
    return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance
           && std::abs(a.blue() - b.blue()) <= tolerance;
}

/// A delivered picture whose memory is exactly as long as its planes.
class Picture
{
public:
    using ColorAt = std::function<Yuv(unsigned x, unsigned y)>;

    Picture(unsigned w, unsigned h, const Yuv& color)
        : Picture(w, h, [color](unsigned, unsigned) { return color; })
    {
    }
    Picture(unsigned w, unsigned h, const ColorAt& colorAt)
    {
        const unsigned chromaWidth = (w + 1) / 2;
        const unsigned chromaHeight = (h + 1) / 2;
        m_bytes.reserve(std::size_t(w) * h + std::size_t(chromaWidth) * chromaHeight * 2);
        for (unsigned y = 0; y < h; ++y) {
            for (unsigned x = 0; x < w; ++x)
                m_bytes.push_back(static_cast<uint8_t>(colorAt(x, y).y));
        }
        for (int Yuv::*component : {&Yuv::u, &Yuv::v}) {
            for (unsigned y = 0; y < chromaHeight; ++y) {
                for (unsigned x = 0; x < chromaWidth; ++x)
                    m_bytes.push_back(static_cast<uint8_t>(colorAt(2 * x, 2 * y).*component));
            }
        }
        m_frame.pData = m_bytes.data();
        m_frame.width = w;
        m_frame.height = h;
    }
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    const VantrelRTCVideoFrameQT& frame() const { return m_frame; }

private:
    std::vector<uint8_t> m_bytes;
    VantrelRTCVideoFrameQT m_frame{};
};

} // namespace zrtest
