// Tells the pictures of a stream apart without keeping them.
#pragma once

#include "i420frame.h"

#include <QByteArray>

namespace zr {

/// The MD5 sum, in hexadecimal digits, of every `rowStep`-th row of the three planes of a delivered
/// picture, one after the other; with 1 that of all its bytes.
/// @param picture packed, layout.totalBytes() long
[[nodiscard]] QByteArray pictureChecksum(const uchar* picture, const I420Layout& layout,
                                         std::size_t rowStep);

} // namespace zr
