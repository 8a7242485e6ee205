// Pictures of decoders, packed for the module.
#include "packedpicture.h"

#include <QtTest>

#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;

/// 5 x 3 pixels: 15 samples of luma, 3 x 2 of each chroma plane.
const Bytes kPacked{0,  1,  2,  3,  4,  5,  6,  7,   8,   9,   10,  11,  12, 13,
                    14, 50, 51, 52, 53, 54, 55, 100, 101, 102, 103, 104, 105};

/// Rows of `rowBytes` from `first` on in kPacked, with a stride, and the address of the first row.
struct Padded
{
    Padded(std::size_t first, std::size_t rowBytes, std::size_t rows, std::ptrdiff_t strideBytes)
        : bytes(rows * static_cast<std::size_t>(std::abs(strideBytes)), 0xEE)
        , stride(strideBytes)
    {
        const std::size_t step = static_cast<std::size_t>(std::abs(stride));
        for (std::size_t row = 0; row < rows; ++row) {
            const std::size_t at = (stride < 0 ? rows - 1 - row : row) * step;
            std::copy_n(kPacked.begin() + static_cast<std::ptrdiff_t>(first + row * rowBytes),
                        rowBytes, bytes.begin() + static_cast<std::ptrdiff_t>(at));
        }
        start = bytes.data() + (stride < 0 ? (rows - 1) * step : 0);
    }
    Bytes bytes;
    std::ptrdiff_t stride;
    const uint8_t* start;
};

Bytes packed(const ZRPlanes& planes)
{
    const zrc::PackedPicture picture(planes);
    return picture.data() ? Bytes(picture.data(), picture.data() + kPacked.size()) : Bytes();
}

} // namespace

class TestPackedPicture : public QObject
{
    Q_OBJECT

private slots:
    void packedOneIsPassedOn()
    {
        const uint8_t* const p = kPacked.data();
        QCOMPARE(zrc::PackedPicture({p, p + 15, p + 21, 5, 3, 3, 5, 3}).data(), p);
    }
    void rowsArePacked()
    {
        for (const std::ptrdiff_t stride : {5, 8, -8, -5}) {
            const Padded y(0, 5, 3, stride);
            const Padded u(15, 3, 2, stride);
            const Padded v(21, 3, 2, -stride);
            QCOMPARE(packed({y.start, u.start, v.start, stride, stride, -stride, 5, 3}), kPacked);
        }
    }
    void pairsAreTakenApart()
    {
        const Bytes pairs{50, 100, 51, 101, 52, 102, 0, 0, 53, 103, 54, 104, 55, 105, 0, 0};
        QCOMPARE(packed({kPacked.data(), pairs.data(), nullptr, 5, 8, 0, 5, 3}), kPacked);
    }
    void whatCannotBeIsRefused()
    {
        const uint8_t* const p = kPacked.data();
        const ZRPlanes good{p, p + 15, p + 21, 5, 3, 3, 5, 3};
        const auto refuses = [&good](auto change) {
            ZRPlanes planes = good;
            change(planes);
            return packed(planes).empty();
        };
        QVERIFY(refuses([](ZRPlanes& planes) { planes.width = 0; }));
        QVERIFY(refuses([](ZRPlanes& planes) { planes.height = 16385; }));
        QVERIFY(refuses([](ZRPlanes& planes) { planes.y = nullptr; }));
        QVERIFY(refuses([](ZRPlanes& planes) { planes.u = reinterpret_cast<uint8_t*>(8); }));
        QVERIFY(refuses([](ZRPlanes& planes) { planes.yStride = 4; }));
        QVERIFY(refuses([](ZRPlanes& planes) { planes.vStride = 0; }));
        for (const std::ptrdiff_t stray : {PTRDIFF_MIN, PTRDIFF_MAX})
            QVERIFY(refuses([stray](ZRPlanes& planes) { planes.uStride = stray; }));
    }
};

QTEST_APPLESS_MAIN(TestPackedPicture)
#include "tst_packedpicture.moc"
