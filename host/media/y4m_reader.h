// Reader of YUV4MPEG2 streams, the uncompressed format that mjpegtools and FFmpeg exchange.
#pragma once

#include "picture.h"

#include <string>

namespace zrhost {

struct Y4mHeader
{
    int width = 0;
    int height = 0;
    double fps = 25; ///< also where the stream gives none or "0:0"

    /// @param line the stream's first line without its line end
    /// @throws HostError for anything but 8-bit 4:2:0 with a size that the module takes
    [[nodiscard]] static Y4mHeader parse(const std::string& line);
};

/// Reads one stream from its first byte. The byte source must outlive the reader.
class Y4mReader
{
public:
    /// Reads the stream header. @throws HostError, Stopped
    explicit Y4mReader(ByteSource& bytes);

    [[nodiscard]] const Y4mHeader& header() const { return m_header; }
    /// @return false when the stream ends after a whole frame @throws HostError, Stopped
    [[nodiscard]] bool readFrame(Picture& picture);

private:
    [[nodiscard]] bool fill();
    /// Reads up to a line feed. @return false when the stream ends before the first byte
    [[nodiscard]] bool readLine(std::string& line);
    [[nodiscard]] std::size_t readUpTo(std::uint8_t* to, std::size_t size);

    ByteSource& m_bytes;
    std::vector<std::uint8_t> m_buffer;
    std::size_t m_at = 0;
    std::size_t m_end = 0;
    Y4mHeader m_header;
    long long m_frames = 0;
};

} // namespace zrhost
