// Planar YUV 4:2:0 (I420) pictures: the packed layout in which the host delivers them, the layout
// in which a tile keeps and uploads them, and the copy from one to the other.
#pragma once

#include "zrtypes.h"

#include <QtGlobal>

#include <cstddef>

namespace zr {

/// A picture with pixels in it and with sides that are accepted: every size below fits an int.
constexpr bool isFrameSizeValid(quint32 widthPx, quint32 heightPx)
{
    return widthPx >= 1 && heightPx >= 1 && widthPx <= ZR_MAX_FRAME_SIDE_PX
           && heightPx <= ZR_MAX_FRAME_SIDE_PX;
}

/// The three planes of a picture in one block without gaps between rows or planes; sizes and
/// offsets in bytes. A byte is a sample, so strides are widths as well.
struct I420Layout
{
    std::size_t lumaStride = 0;
    std::size_t lumaRows = 0;
    std::size_t chromaStride = 0;
    std::size_t chromaRows = 0;

    constexpr std::size_t lumaBytes() const { return lumaStride * lumaRows; }
    constexpr std::size_t chromaBytes() const { return chromaStride * chromaRows; }
    constexpr std::size_t uOffset() const { return lumaBytes(); }
    constexpr std::size_t vOffset() const { return lumaBytes() + chromaBytes(); }
    constexpr std::size_t totalBytes() const { return lumaBytes() + 2 * chromaBytes(); }
    /// No column or no row is left to draw.
    constexpr bool isEmpty() const { return lumaStride == 0 || lumaRows == 0; }
};

/// The layout of a delivered picture: odd sides are rounded up for the chroma planes.
/// @pre isFrameSizeValid
constexpr I420Layout sourceLayout(quint32 widthPx, quint32 heightPx)
{
    return {widthPx, heightPx, (std::size_t(widthPx) + 1) / 2, (std::size_t(heightPx) + 1) / 2};
}

/// The layout of a picture in a tile. Its width is cut to a multiple of 8, which keeps the rows
/// of all three planes multiples of 4 bytes, as a texture upload expects by default. A picture
/// narrower than 8 pixels has no column left: its layout is empty and the tile stays black.
/// A last odd row keeps its row of chroma, as in the delivered picture: sizes taken as one and a
/// half bytes a pixel would write past the block there.
/// @pre isFrameSizeValid
constexpr I420Layout tileLayout(quint32 widthPx, quint32 heightPx)
{
    const std::size_t width = widthPx & ~7U;
    return {width, heightPx, width / 2, (std::size_t(heightPx) + 1) / 2};
}

/// Bytes to allocate for pictures of this size: enough for the tile's layout, and never below
/// the nominal one and a half bytes a pixel.
/// @pre isFrameSizeValid
std::size_t tileBufferBytes(quint32 widthPx, quint32 heightPx);

/// Copies a delivered picture into a tile's block, cutting the columns beyond the aligned width.
/// @param source the packed picture of widthPx x heightPx, sourceLayout().totalBytes() long
/// @param target tileLayout().totalBytes() long; must not overlap the source
/// @pre isFrameSizeValid
void copyFrameToTile(const uchar* source, quint32 widthPx, quint32 heightPx, uchar* target);

/// Copies `rows` rows of `rowBytes` bytes that begin `sourceStride` bytes apart (negative for a
/// picture stored bottom up) to rows without a gap.
void copyPlane(const uchar* source, std::ptrdiff_t sourceStride, uchar* target,
               std::size_t rowBytes, std::size_t rows);

/// Makes a block of `bufferBytes` bytes a black picture; bytes behind the picture become 0.
/// Luma is 0 and not 16, so that the block can be told from a delivered picture: see isBlank.
/// @pre bufferBytes >= layout.totalBytes()
void fillBlack(const I420Layout& layout, uchar* buffer, std::size_t bufferBytes);

/// True when the first 1024 luma bytes (fewer in a smaller picture) are all 0: no picture has
/// arrived, since black is 16 in a limited-range picture.
bool isBlank(const I420Layout& layout, const uchar* buffer);

} // namespace zr
