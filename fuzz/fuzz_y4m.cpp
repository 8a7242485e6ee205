// YUV4MPEG2 streams: any bytes, in pieces of any size, are pictures or a refusal.
#include "host_error.h"
#include "y4m_reader.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace {

/// Gives as many bytes at a time as the first byte says.
class Pieces : public zrhost::ByteSource
{
public:
    Pieces(const std::uint8_t* data, std::size_t size)
        : m_data(data)
        , m_left(size)
    {
        if (size > 0)
            m_piece += *take(1);
    }
    std::size_t read(std::uint8_t* to, std::size_t size) override
    {
        const std::size_t given = std::min({size, m_piece, m_left});
        std::memcpy(to, take(given), given);
        return given;
    }
    bool rewind() override { return false; }

private:
    const std::uint8_t* take(std::size_t size)
    {
        m_left -= size;
        return std::exchange(m_data, m_data + size);
    }
    const std::uint8_t* m_data;
    std::size_t m_left;
    std::size_t m_piece = 1;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // What a header may promise takes longer to clear than to read.
    constexpr std::size_t kMostBytes = 1 << 20;
    Pieces bytes(data, size);
    try {
        zrhost::Y4mReader reader(bytes);
        const zrhost::Y4mHeader& header = reader.header();
        if (zrhost::Picture::byteCount(header.width, header.height) > kMostBytes)
            return 0;
        zrhost::Picture picture;
        while (reader.readFrame(picture)) {
            if (picture.width != header.width || picture.height != header.height)
                std::abort();
        }
    } catch (const zrhost::HostError&) {
        // refused
    }
    return 0;
}
