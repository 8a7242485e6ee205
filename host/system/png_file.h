// Writing PNG files. One implementation per system: png_file.cpp (libpng) and png_file_win32.cpp.
#pragma once

#include "desktop.h"

#include <string>

namespace zrhost {

/// @throws HostError when the file cannot be written
void writePng(const RgbImage& image, const std::string& file);

} // namespace zrhost
