#include "i420frame.h"

#include <algorithm>
#include <cstring>

namespace zr {

std::size_t tileBufferBytes(quint32 widthPx, quint32 heightPx)
{
    // One and a half bytes a pixel fall short of an odd height's extra chroma row, and the
    // aligned layout falls short of them for a width that is not a multiple of 8.
    const std::size_t nominal = std::size_t(widthPx) * heightPx * 3 / 2;
    return std::max(nominal, tileLayout(widthPx, heightPx).totalBytes());
}

void copyPlane(const uchar* source, std::ptrdiff_t sourceStride, uchar* target,
               std::size_t rowBytes, std::size_t rows)
{
    if (rowBytes == 0 || rows == 0)
        return;
    if (sourceStride == static_cast<std::ptrdiff_t>(rowBytes)) {
        std::memcpy(target, source, rowBytes * rows);
        return;
    }
    for (std::size_t row = 0; row < rows; ++row) {
        std::memcpy(target + row * rowBytes,
                    source + static_cast<std::ptrdiff_t>(row) * sourceStride, rowBytes);
    }
}

void copyFrameToTile(const uchar* source, quint32 widthPx, quint32 heightPx, uchar* target)
{
    const I420Layout from = sourceLayout(widthPx, heightPx);
    const I420Layout to = tileLayout(widthPx, heightPx);
    if (to.isEmpty())
        return;
    if (from.lumaStride == to.lumaStride) { // then the whole blocks are laid out alike
        std::memcpy(target, source, to.totalBytes());
        return;
    }
    const auto lumaStride = static_cast<std::ptrdiff_t>(from.lumaStride);
    const auto chromaStride = static_cast<std::ptrdiff_t>(from.chromaStride);
    copyPlane(source, lumaStride, target, to.lumaStride, to.lumaRows);
    copyPlane(source + from.uOffset(), chromaStride, target + to.uOffset(), to.chromaStride,
              to.chromaRows);
    copyPlane(source + from.vOffset(), chromaStride, target + to.vOffset(), to.chromaStride,
              to.chromaRows);
}

void fillBlack(const I420Layout& layout, uchar* buffer, std::size_t bufferBytes)
{
    constexpr int kNeutralChroma = 128;
    std::memset(buffer, 0, bufferBytes);
    std::memset(buffer + layout.uOffset(), kNeutralChroma, 2 * layout.chromaBytes());
}

bool isBlank(const I420Layout& layout, const uchar* buffer)
{
    constexpr std::size_t kProbeBytes = 1024;
    const uchar* const end = buffer + std::min(kProbeBytes, layout.lumaBytes());
    return std::all_of(buffer, end, [](uchar byte) { return byte == 0; });
}

} // namespace zr
