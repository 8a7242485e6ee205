#include "png_file.h"

#include "host_error.h"

#include <png.h>

namespace zrhost {

void writePng(const RgbImage& image, const std::string& file)
{
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(image.width);
    png.height = static_cast<png_uint_32>(image.height);
    png.format = PNG_FORMAT_RGB;
    if (!png_image_write_to_file(&png, file.c_str(), 0, image.data.data(), 0, nullptr))
        throw HostError("cannot write '" + file + "': " + png.message);
}

} // namespace zrhost
