// A picture with its planes in one block, as ZRScreenMod takes it.
#pragma once

#include "zrscreenmod_c.h"

#include <vector>

namespace zrc {

/// Packs a picture unless it is packed. Any thread.
class PackedPicture
{
public:
    explicit PackedPicture(const ZRPlanes& planes);
    ~PackedPicture();
    PackedPicture(const PackedPicture&) = delete;
    PackedPicture& operator=(const PackedPicture&) = delete;

    /// The block: the host's own memory when the picture is packed already. Null for a picture that
    /// cannot be: its size, its strides, or memory that cannot be read.
    [[nodiscard]] const uint8_t* data() const { return m_data; }

private:
    const uint8_t* m_data = nullptr;
    std::vector<uint8_t> m_block; ///< empty for a picture that was packed
};

} // namespace zrc
