#include "packedpicture.h"

#include "hostmemory.h"

#include <cstring>
#include <mutex>
#include <utility>
#include <vector>

namespace zrc {

namespace {

/// Blocks that are kept for the next pictures; decoders that run at once need one each.
constexpr std::size_t kMaxSpareBlocks = 16;

struct Plane
{
    const uint8_t* first; ///< of the first row
    std::ptrdiff_t stride;
    std::size_t rowBytes;
    std::size_t rows;

    [[nodiscard]] std::size_t bytes() const { return rowBytes * rows; }
    [[nodiscard]] bool isPacked() const
    {
        return rows == 1 || stride == static_cast<std::ptrdiff_t>(rowBytes);
    }
    [[nodiscard]] bool isReadable() const
    {
        const auto step = stride < 0 ? std::size_t(0) - static_cast<std::size_t>(stride)
                                     : static_cast<std::size_t>(stride);
        // No decoder pads a row by more than this; a stray number would leave the address space.
        constexpr std::size_t kMaxStride = std::size_t(1) << 20U;
        if (step < rowBytes || step > kMaxStride)
            return false;
        const std::size_t between = step * (rows - 1);
        const uint8_t* const lowest = stride < 0 ? first - between : first;
        return platform::isReadable(lowest, between + rowBytes);
    }
};

void copyRows(const Plane& plane, uint8_t* to)
{
    for (std::size_t row = 0; row < plane.rows; ++row)
        std::memcpy(to + row * plane.rowBytes,
                    plane.first + static_cast<std::ptrdiff_t>(row) * plane.stride, plane.rowBytes);
}

/// Takes the pairs of NV12 apart.
void splitRows(const Plane& pairs, uint8_t* u, uint8_t* v)
{
    const std::size_t columns = pairs.rowBytes / 2;
    for (std::size_t row = 0; row < pairs.rows; ++row) {
        const uint8_t* from = pairs.first + static_cast<std::ptrdiff_t>(row) * pairs.stride;
        for (std::size_t column = 0; column < columns; ++column) {
            u[row * columns + column] = from[2 * column];
            v[row * columns + column] = from[2 * column + 1];
        }
    }
}

/// Memory for packed pictures. A decoder's pictures have one size for long, so a block that has
/// come back fits the next one; a fresh one for each picture would have the system fill it with
/// zeros first.
class Pool
{
public:
    std::vector<uint8_t> take()
    {
        const std::lock_guard<std::mutex> lock(m_lock);
        if (m_spare.empty())
            return {};
        std::vector<uint8_t> block = std::move(m_spare.back());
        m_spare.pop_back();
        return block;
    }
    void giveBack(std::vector<uint8_t> block)
    {
        const std::lock_guard<std::mutex> lock(m_lock);
        if (m_spare.size() < kMaxSpareBlocks)
            m_spare.push_back(std::move(block));
    }

private:
    std::mutex m_lock;
    std::vector<std::vector<uint8_t>> m_spare;
};
Pool s_pool;

} // namespace

PackedPicture::PackedPicture(const ZRPlanes& planes)
{
    const std::size_t width = planes.width;
    const std::size_t height = planes.height;
    if (width == 0 || height == 0 || width > ZR_MAX_FRAME_SIDE_PX || height > ZR_MAX_FRAME_SIDE_PX)
        return;
    const bool isNv12 = !planes.v;
    const std::size_t columns = (width + 1) / 2;
    const std::size_t rows = (height + 1) / 2;
    const Plane y{planes.y, planes.yStride, width, height};
    const Plane u{planes.u, planes.uStride, isNv12 ? 2 * columns : columns, rows};
    const Plane v{planes.v, planes.vStride, columns, rows};
    if (!y.isReadable() || !u.isReadable() || !(isNv12 || v.isReadable()))
        return;
    const bool isOneBlock = !isNv12 && y.isPacked() && u.isPacked() && v.isPacked()
                            && u.first == y.first + y.bytes() && v.first == u.first + u.bytes();
    if (isOneBlock) {
        m_data = planes.y;
        return;
    }
    m_block = s_pool.take();
    m_block.resize(y.bytes() + 2 * columns * rows);
    uint8_t* const uTo = m_block.data() + y.bytes();
    uint8_t* const vTo = uTo + columns * rows;
    copyRows(y, m_block.data());
    if (isNv12) {
        splitRows(u, uTo, vTo);
    } else {
        copyRows(u, uTo);
        copyRows(v, vTo);
    }
    m_data = m_block.data();
}

PackedPicture::~PackedPicture()
{
    if (!m_block.empty())
        s_pool.giveBack(std::move(m_block));
}

} // namespace zrc
