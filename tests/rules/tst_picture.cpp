// Pictures: how frames are packed and copied, where a picture stands in its tile, and its scale.
#include "i420frame.h"
#include "letterbox.h"
#include "packedpicture.h"
#include "screenscale.h"

#include <QtTest>

#include <algorithm>
#include <vector>

namespace {

using Bytes = std::vector<uchar>;

/// Every sample tells its plane, row and column.
Bytes makePicture(const zr::I420Layout& layout)
{
    Bytes picture;
    for (std::size_t plane = 0; plane < 3; ++plane) {
        const std::size_t rows = plane == 0 ? layout.lumaRows : layout.chromaRows;
        const std::size_t columns = plane == 0 ? layout.lumaStride : layout.chromaStride;
        for (std::size_t i = 0; i < rows * columns; ++i)
            picture.push_back(
                static_cast<uchar>(1 + (plane * 83 + i / columns * 7 + i % columns * 3) % 251));
    }
    return picture;
}

/// 5 x 3 pixels: 15 samples of luma, 3 x 2 of each chroma plane.
const Bytes kPacked{0,  1,  2,  3,  4,  5,  6,  7,   8,   9,   10,  11,  12, 13,
                    14, 50, 51, 52, 53, 54, 55, 100, 101, 102, 103, 104, 105};

/// Rows of `rowBytes` from `first` on in kPacked, with a stride, and the address of the first row.
struct Padded
{
    Padded(std::size_t first, std::size_t rowBytes, std::size_t rows, std::ptrdiff_t stride)
        : bytes(rows * static_cast<std::size_t>(std::abs(stride)), 0xEE)
        , start(bytes.data() + (stride < 0 ? static_cast<std::ptrdiff_t>(rows - 1) * -stride : 0))
    {
        for (std::size_t row = 0; row < rows; ++row)
            std::copy_n(kPacked.data() + first + row * rowBytes, rowBytes,
                        start + static_cast<std::ptrdiff_t>(row) * stride);
    }
    Bytes bytes;
    uchar* start;
};

Bytes packed(const ZRPlanes& planes)
{
    const zrc::PackedPicture picture(planes);
    return picture.data() ? Bytes(picture.data(), picture.data() + kPacked.size()) : Bytes();
}

} // namespace

class tst_Picture : public QObject
{
    Q_OBJECT

private slots:
    void sizesOutsideTheLimitsAreRefused()
    {
        QVERIFY(zr::isFrameSizeValid(1, 1));
        QVERIFY(zr::isFrameSizeValid(16384, 16384));
        for (const quint32 bad : {0U, 16385U, 0xFFFFFFFFU})
            QVERIFY(!zr::isFrameSizeValid(bad, 16) && !zr::isFrameSizeValid(16, bad));
        QVERIFY(zr::tileBufferBytes(16384, 16384) <= std::size_t(INT_MAX));
    }

    void copyKeepsEverySampleOfTheAlignedColumns()
    {
        QCOMPARE(zr::sourceLayout(641, 361).totalBytes(), std::size_t(641 * 361 + 2 * 321 * 181));
        for (const quint32 width : {1U, 7U, 8U, 15U, 176U, 641U}) {
            for (const quint32 height : {1U, 2U, 5U}) {
                const Bytes picture = makePicture(zr::sourceLayout(width, height));
                const zr::I420Layout layout = zr::tileLayout(width, height);
                QCOMPARE(layout.lumaStride, std::size_t(width / 8 * 8));
                QCOMPARE(layout.isEmpty(), width < 8);
                // With a guard behind what may be written.
                Bytes expected = makePicture(layout);
                expected.push_back(0xEE);
                Bytes target(expected.size(), 0xEE);
                zr::copyFrameToTile(picture.data(), width, height, target.data());
                QCOMPARE(target, expected);
                const std::size_t bytes = zr::tileBufferBytes(width, height);
                QVERIFY(bytes >= layout.totalBytes() && bytes >= width * height * 3 / 2);
            }
        }
        QCOMPARE(zr::tileBufferBytes(642, 480), std::size_t(642 * 480 * 3 / 2));
        // A plane from the bottom up, and one without gaps.
        Bytes target(4);
        zr::copyPlane(kPacked.data() + 4, -4, target.data(), 2, 2);
        QCOMPARE(target, (Bytes{4, 5, 0, 1}));
        zr::copyPlane(kPacked.data(), 2, target.data(), 2, 2);
        QCOMPARE(target, (Bytes{0, 1, 2, 3}));
    }

    void blackIsBlankUntilALumaByteComes()
    {
        // Fewer luma bytes than are looked at, and more, in a larger block.
        for (const zr::I420Layout& layout : {zr::tileLayout(8, 3), zr::tileLayout(642, 481)}) {
            Bytes buffer(layout.totalBytes() + 100, 0x55);
            zr::fillBlack(layout, buffer.data(), buffer.size());
            QVERIFY(zr::isBlank(layout, buffer.data()));
            Bytes black(buffer.size(), 0);
            std::fill_n(black.data() + layout.uOffset(), 2 * layout.chromaBytes(), uchar(128));
            QCOMPARE(buffer, black);

            buffer[std::min<std::size_t>(1024, layout.lumaBytes()) - 1] = 16;
            QVERIFY(!zr::isBlank(layout, buffer.data()));
        }
    }

    void decodersPicturesArePacked()
    {
        const uchar* const p = kPacked.data();
        QCOMPARE(zrc::PackedPicture({p, p + 15, p + 21, 5, 3, 3, 5, 3}).data(), p); // it is
        for (const std::ptrdiff_t stride : {5, 8, -8, -5}) {
            const Padded y(0, 5, 3, stride);
            const Padded u(15, 3, 2, stride);
            const Padded v(21, 3, 2, -stride);
            QCOMPARE(packed({y.start, u.start, v.start, stride, stride, -stride, 5, 3}), kPacked);
        }
        const Bytes pairs{50, 100, 51, 101, 52, 102, 0, 0, 53, 103, 54, 104, 55, 105, 0, 0};
        QCOMPARE(packed({p, pairs.data(), nullptr, 5, 8, 0, 5, 3}), kPacked);

        const auto* const nearNull = reinterpret_cast<const uchar*>(8);
        const ZRPlanes refused[] = {{p, p + 15, p + 21, 5, 3, 3, 0, 3},
                                    {p, p + 15, p + 21, 5, 3, 3, 5, 16385},
                                    {nullptr, p + 15, p + 21, 5, 3, 3, 5, 3},
                                    {p, nearNull, p + 21, 5, 3, 3, 5, 3},
                                    {p, p + 15, p + 21, 4, 3, 3, 5, 3},
                                    {p, p + 15, p + 21, 5, 3, 0, 5, 3},
                                    {p, p + 15, p + 21, 5, PTRDIFF_MIN, 3, 5, 3},
                                    {p, p + 15, p + 21, 5, PTRDIFF_MAX, 3, 5, 3}};
        for (const ZRPlanes& planes : refused)
            QVERIFY(packed(planes).empty());
    }

    void standsInTheMiddleOfItsTile()
    {
        const std::tuple<QSize, QSize, QRect> rows[] = {
            {{1920, 1080}, {400, 400}, {0, 87, 400, 225}},
            {{640, 360}, {800, 360}, {79, 0, 641, 360}},
            {{360, 640}, {640, 640}, {139, 0, 361, 640}},
            {{360, 640}, {90, 640}, {0, 240, 90, 160}},
            {{1920, 1080}, {400, 226}, {0, 0, 400, 226}}, // a gap of one pixel closes
            {{1920, 1080}, {400, 227}, {0, 1, 400, 225}},
            {{640, 360}, {642, 360}, {0, 0, 642, 360}}, // also at the sides
            {{1, 1}, {100, 150}, {0, 0, 100, 150}},     // what the longer ratio adds is cut
            {{0, 10}, {100, 100}, {}},
            {{10, 10}, {0, 100}, {}},
        };
        for (const auto& [video, tile, placed] : rows)
            QCOMPARE(zr::letterboxRect(video, tile), placed);
    }

    void scales()
    {
        QVERIFY(!zr::isHighResolutionScreen(3500) && zr::isHighResolutionScreen(3501));
        QCOMPARE(zr::scaledSize(24, 2.0F, false), 24);
        QCOMPARE(zr::scaledSize(-7, 1.5F, true), -10); // truncates toward zero
        // The product rounds up to 7 in single precision and stays below it in double.
        QCOMPARE(zr::scaledSize(10, 0.7F, true), 7);
    }
};

QTEST_APPLESS_MAIN(tst_Picture)
#include "tst_picture.moc"
