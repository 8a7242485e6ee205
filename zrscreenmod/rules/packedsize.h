// A size in one number, for threads that pass it on without a lock.
#pragma once

#include <QSize>
#include <QtGlobal>

namespace zr {

/// @param size in pixels @return the width in the upper half, the height in the lower one; never 0
/// for a size that is not empty
inline quint64 packSize(const QSize& size)
{
    return (quint64(quint32(size.width())) << 32) | quint32(size.height());
}

inline QSize unpackSize(quint64 packed)
{
    return {static_cast<int>(packed >> 32), static_cast<int>(packed & 0xFFFFFFFFU)};
}

} // namespace zr
