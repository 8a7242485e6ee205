// Sees what the program does with OpenGL: Qt, and with it the module, call these functions by name,
// and a program's own ones are found before those of the libraries.
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

namespace glwatch {

struct Upload
{
    bool isPlane;       ///< one byte a pixel; else four
    std::size_t bytes;  ///< in the texture
    const void* pixels; ///< the first row
};

/// Called on the thread that draws, after a texture was given pixels and after a swap. Set them
/// before the module is used.
extern std::function<void(const Upload&)> onUpload;
extern std::function<void()> onSwap;

/// Objects of OpenGL that have been made and not been deleted. Any thread.
struct Objects
{
    const char* kind;
    long long count;
};
std::vector<Objects> objects();

} // namespace glwatch
