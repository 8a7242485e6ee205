// What the user sees of the screen, and his mouse. One implementation per system: desktop_x11.cpp
// and desktop_win32.cpp.
#pragma once

#include "stage.h"

#include <cstdint>
#include <vector>

namespace zrhost {

/// What is seen of a part of the screen: 8-bit RGB, rows without padding.
struct RgbImage
{
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> data;
};

/// Points are pixels of the screen. GUI thread. All of it @throws HostError.
namespace desktop {

/// Of all screens together.
[[nodiscard]] Size size();
/// Reads a part of the screen, whatever windows lie there. What lies off the screen is left out.
[[nodiscard]] RgbImage grab(Point at, Size size);

void moveTo(Point at);
/// Moves the mouse there and clicks so many times with the left button.
void click(Point at, int times = 1);
/// Turns the wheel there: away from the user for positive steps.
void turnWheel(Point at, int steps);

} // namespace desktop

} // namespace zrhost
