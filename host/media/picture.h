// Pictures on their way to the module, and where they come from.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace zrhost {

/// A planar YUV 4:2:0 picture without padding: Y, then U and V with their sizes rounded up.
/// BT.709, limited range.
struct Picture
{
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> data;

    [[nodiscard]] static std::size_t byteCount(int width, int height)
    {
        const auto luma = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
        const auto chroma =
            static_cast<std::size_t>((width + 1) / 2) * static_cast<std::size_t>((height + 1) / 2);
        return luma + 2 * chroma;
    }
};

/// Delivers pictures one after the other. Used by one thread.
class PictureSource
{
public:
    virtual ~PictureSource() = default;

    /// Writes the next picture; its storage is reused from call to call.
    /// @return false at the end of the source @throws HostError, Stopped
    [[nodiscard]] virtual bool next(Picture& picture) = 0;
    /// Pictures a second, above 0. Constant once the source is open.
    [[nodiscard]] virtual double fps() const = 0;
};

/// Thrown out of a blocking read when the reader shall end.
struct Stopped
{
};

/// Bytes of a file or a pipe.
class ByteSource
{
public:
    virtual ~ByteSource() = default;

    /// Blocks until there are bytes. @return how many were read, 0 at the end
    /// @throws HostError when reading fails, Stopped when reading shall end
    [[nodiscard]] virtual std::size_t read(std::uint8_t* bytes, std::size_t size) = 0;
    /// Goes back to the first byte. @return false where that is impossible (a pipe)
    [[nodiscard]] virtual bool rewind() = 0;
};

} // namespace zrhost
