// What the arrangements share; not for anybody else.
#pragma once

#include "layoutgeometry.h"

#include <algorithm>
#include <cstddef>

namespace zr {

/// A dialog's size, as any arrangement can calculate with it.
inline QSize bounded(QSize size)
{
    return {std::clamp(size.width(), 0, kMaxSidePx), std::clamp(size.height(), 0, kMaxSidePx)};
}

/// The half-open range of list indices on a page; empty for a page outside the list.
struct PageRange
{
    int first;
    int last;

    [[nodiscard]] std::size_t size() const { return static_cast<std::size_t>(last - first); }
};

inline PageRange pageRange(int page, int count, int tilesPerPage)
{
    const qint64 first = static_cast<qint64>(page) * tilesPerPage;
    if (page < 0 || first >= count)
        return {0, 0};
    return {static_cast<int>(first),
            static_cast<int>(std::min<qint64>(first + tilesPerPage, count))};
}

} // namespace zr
