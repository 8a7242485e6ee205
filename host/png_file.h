// Writing PNG files.
#pragma once

#include "host_window.h"

#include <string>

namespace zrhost {

/// @throws HostError when the file cannot be written
void writePng(const RgbImage& image, const std::string& file);

} // namespace zrhost
