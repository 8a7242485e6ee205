#include "i420frame.h"

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
        for (std::size_t row = 0; row < rows; ++row) {
            for (std::size_t column = 0; column < columns; ++column)
                picture.push_back(
                    static_cast<uchar>(1 + (plane * 83 + row * 7 + column * 3) % 251));
        }
    }
    return picture;
}

} // namespace

class TestI420Frame : public QObject
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
    }

    void planeCopyFollowsTheStride()
    {
        const Bytes source{1, 2, 3, 4, 5, 6, 7, 8};
        Bytes target(4);
        zr::copyPlane(source.data() + 4, -4, target.data(), 2, 2);
        QCOMPARE(target, (Bytes{5, 6, 1, 2}));
        zr::copyPlane(source.data(), 2, target.data(), 2, 2);
        QCOMPARE(target, (Bytes{1, 2, 3, 4}));
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
};

QTEST_APPLESS_MAIN(TestI420Frame)
#include "tst_i420frame.moc"
