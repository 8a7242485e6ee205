#include "picturechecksum.h"

#include <QCryptographicHash>

namespace zr {

QByteArray pictureChecksum(const uchar* picture, const I420Layout& layout, std::size_t rowStep)
{
    QCryptographicHash sum(QCryptographicHash::Md5);
    const auto addPlane = [&](std::size_t offset, std::size_t stride, std::size_t rows) {
        for (std::size_t row = 0; row < rows; row += rowStep)
            sum.addData(reinterpret_cast<const char*>(picture + offset + row * stride),
                        static_cast<int>(stride));
    };
    addPlane(0, layout.lumaStride, layout.lumaRows);
    addPlane(layout.uOffset(), layout.chromaStride, layout.chromaRows);
    addPlane(layout.vOffset(), layout.chromaStride, layout.chromaRows);
    return sum.result().toHex();
}

} // namespace zr
