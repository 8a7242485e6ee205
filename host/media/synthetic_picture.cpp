#include "synthetic_picture.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

namespace zrhost {

namespace {

/// Digits of 5 x 7 dots, a row per byte, the leftmost dot in bit 4.
constexpr int kGlyphColumns = 5;
constexpr int kGlyphRows = 7;
constexpr std::uint8_t kGlyphs[10][kGlyphRows] = {
    {0x0E, 0x11, 0x13, 0x15, 0x19, 0x11, 0x0E}, {0x04, 0x0C, 0x04, 0x04, 0x04, 0x04, 0x0E},
    {0x0E, 0x11, 0x01, 0x02, 0x04, 0x08, 0x1F}, {0x1F, 0x02, 0x04, 0x02, 0x01, 0x11, 0x0E},
    {0x02, 0x06, 0x0A, 0x12, 0x1F, 0x02, 0x02}, {0x1F, 0x10, 0x1E, 0x01, 0x01, 0x11, 0x0E},
    {0x06, 0x08, 0x10, 0x1E, 0x11, 0x11, 0x0E}, {0x1F, 0x01, 0x02, 0x04, 0x08, 0x08, 0x08},
    {0x0E, 0x11, 0x11, 0x0E, 0x11, 0x11, 0x0E}, {0x0E, 0x11, 0x11, 0x0F, 0x01, 0x02, 0x0C},
};

void fillPlane(std::uint8_t* plane, int planeWidth, int left, int top, int right, int bottom,
               std::uint8_t value)
{
    if (left >= right)
        return;
    for (int y = top; y < bottom; ++y)
        std::memset(plane + static_cast<std::ptrdiff_t>(y) * planeWidth + left, value,
                    static_cast<std::size_t>(right - left));
}

/// Fills [left, right) x [top, bottom), clipped to the picture.
void fillRect(Picture& picture, int left, int top, int right, int bottom, Yuv colour)
{
    left = std::clamp(left, 0, picture.width);
    right = std::clamp(right, 0, picture.width);
    top = std::clamp(top, 0, picture.height);
    bottom = std::clamp(bottom, 0, picture.height);
    if (left >= right || top >= bottom)
        return;
    const int chromaWidth = (picture.width + 1) / 2;
    const int chromaHeight = (picture.height + 1) / 2;
    std::uint8_t* const luma = picture.data.data();
    std::uint8_t* const u = luma + static_cast<std::ptrdiff_t>(picture.width) * picture.height;
    std::uint8_t* const v = u + static_cast<std::ptrdiff_t>(chromaWidth) * chromaHeight;
    fillPlane(luma, picture.width, left, top, right, bottom, colour.y);
    fillPlane(u, chromaWidth, left / 2, top / 2, (right + 1) / 2, (bottom + 1) / 2, colour.u);
    fillPlane(v, chromaWidth, left / 2, top / 2, (right + 1) / 2, (bottom + 1) / 2, colour.v);
}

void fillDisc(Picture& picture, int centreX, int centreY, int radius, Yuv colour)
{
    for (int dy = -radius; dy <= radius; ++dy) {
        const int half =
            static_cast<int>(std::sqrt(static_cast<double>(radius * radius - dy * dy)));
        fillRect(picture, centreX - half, centreY + dy, centreX + half + 1, centreY + dy + 1,
                 colour);
    }
}

void drawNumber(Picture& picture, int number, Yuv colour)
{
    const std::string digits = std::to_string(std::clamp(number, 0, 9999));
    const int columns = static_cast<int>(digits.size()) * (kGlyphColumns + 1) - 1;
    // About half the height, but never wider than the picture.
    const int dot =
        std::max(1, std::min(picture.height / (2 * kGlyphRows), picture.width / (columns + 2)));
    int left = (picture.width - columns * dot) / 2;
    const int top = (picture.height - kGlyphRows * dot) / 2;
    for (const char digit : digits) {
        for (int row = 0; row < kGlyphRows; ++row) {
            for (int column = 0; column < kGlyphColumns; ++column) {
                if (kGlyphs[digit - '0'][row] & (0x10 >> column))
                    fillRect(picture, left + column * dot, top + row * dot,
                             left + (column + 1) * dot, top + (row + 1) * dot, colour);
            }
        }
        left += (kGlyphColumns + 1) * dot;
    }
}

Yuv fromHsv(double hue, double saturation, double value)
{
    const auto channel = [&](double shift) {
        const double k = std::fmod(shift + hue * 6, 6.0);
        const double part = std::clamp(std::min(k, 4 - k), 0.0, 1.0);
        return static_cast<int>(std::lround(255 * value * (1 - saturation * part)));
    };
    return toBt709(channel(5), channel(3), channel(1));
}

} // namespace

Yuv toBt709(int red, int green, int blue)
{
    const double r = red / 255.0;
    const double g = green / 255.0;
    const double b = blue / 255.0;
    const double luma = 0.2126 * r + 0.7152 * g + 0.0722 * b;
    const auto byte = [](double value) { return static_cast<std::uint8_t>(std::lround(value)); };
    // 1.8556 = 2 (1 - 0.0722) and 1.5748 = 2 (1 - 0.2126) scale the differences to -0.5 .. 0.5.
    return {byte(16 + 219 * luma), byte(128 + 224 * (b - luma) / 1.8556),
            byte(128 + 224 * (r - luma) / 1.5748)};
}

double participantHue(int number, unsigned seed)
{
    // Steps of the golden ratio spread any count of hues evenly around the circle.
    constexpr double kGoldenRatio = 0.618033988749895;
    return std::fmod((number + static_cast<double>(seed % 1000)) * kGoldenRatio, 1.0);
}

SyntheticSource::SyntheticSource(int number, double hue, Size size, double fps)
    : m_mark(fromHsv(std::fmod(hue + 0.5, 1.0), 0.55, 1.0))
    , m_fps(fps)
{
    m_ground.width = size.width;
    m_ground.height = size.height;
    m_ground.data.resize(Picture::byteCount(size.width, size.height));
    constexpr int kBands = 16;
    for (int band = 0; band < kBands; ++band)
        fillRect(m_ground, 0, size.height * band / kBands, size.width,
                 size.height * (band + 1) / kBands, fromHsv(hue, 0.75, 0.75 - 0.4 * band / kBands));
    const Yuv white = toBt709(255, 255, 255);
    const int line = std::max(1, size.height / 120);
    fillRect(m_ground, 0, 0, size.width, line, white);
    fillRect(m_ground, 0, size.height - line, size.width, size.height, white);
    fillRect(m_ground, 0, 0, line, size.height, white);
    fillRect(m_ground, size.width - line, 0, size.width, size.height, white);
    drawNumber(m_ground, number, white);
}

bool SyntheticSource::next(Picture& picture)
{
    picture = m_ground; // an assignment reuses the target's storage
    const int radius = std::max(2, picture.height / 12);
    const int way = std::max(1, picture.width - 2 * radius);
    constexpr double kCrossingSeconds = 2.5;
    const double seconds = static_cast<double>(m_frame) / m_fps;
    const double phase = std::fmod(seconds / kCrossingSeconds, 2.0);
    const int x = radius + static_cast<int>(way * (phase < 1 ? phase : 2 - phase));
    const int y =
        picture.height / 4 - static_cast<int>(picture.height / 8.0 * std::sin(seconds * 3.0));
    fillDisc(picture, x, y, radius, m_mark);

    constexpr double kBarSeconds = 4;
    const int bar = static_cast<int>(picture.width * std::fmod(seconds / kBarSeconds, 1.0));
    fillRect(picture, 0, picture.height - picture.height / 20, bar, picture.height, m_mark);
    ++m_frame;
    return true;
}

} // namespace zrhost
