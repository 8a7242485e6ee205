// Drawn pictures: a coloured ground with the participant's number and something that moves.
#pragma once

#include "picture.h"
#include "text.h"

namespace zrhost {

/// One colour as BT.709 limited-range samples.
struct Yuv
{
    std::uint8_t y;
    std::uint8_t u;
    std::uint8_t v;
};

/// Converts 8-bit RGB (ITU-R BT.709 luma weights, Y 16 to 235, U and V 16 to 240).
[[nodiscard]] Yuv toBt709(int red, int green, int blue);

/// The hue of a participant, 0 to 1: neighbours differ clearly, and a seed gives the same hues in
/// every run.
[[nodiscard]] double participantHue(int number, unsigned seed);

/// A moving picture. Each shows the number in big digits, a frame line at the picture's very edge
/// (a cropped picture has lost it), a ball that crosses the picture and a bar that fills once
/// every four seconds.
class SyntheticSource : public PictureSource
{
public:
    /// @param number drawn into the picture, 0 to 9999
    SyntheticSource(int number, double hue, Size size, double fps);

    bool next(Picture& picture) override;
    double fps() const override { return m_fps; }

private:
    Picture m_ground; ///< what does not move
    Yuv m_mark;
    double m_fps;
    long long m_frame = 0;
};

} // namespace zrhost
