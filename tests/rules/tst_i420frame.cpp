#include "i420frame.h"

#include <QtTest>

#include <algorithm>
#include <vector>

namespace {

using Bytes = std::vector<uchar>;

/// Every sample tells its plane, row and column.
uchar sampleAt(int plane, std::size_t row, std::size_t column)
{
    return static_cast<uchar>(
        1 + (static_cast<std::size_t>(plane) * 83 + row * 7 + column * 3) % 251);
}

Bytes makePicture(const zr::I420Layout& layout)
{
    Bytes picture;
    for (int plane = 0; plane < 3; ++plane) {
        const std::size_t rows = plane == 0 ? layout.lumaRows : layout.chromaRows;
        const std::size_t columns = plane == 0 ? layout.lumaStride : layout.chromaStride;
        for (std::size_t row = 0; row < rows; ++row) {
            for (std::size_t column = 0; column < columns; ++column)
                picture.push_back(sampleAt(plane, row, column));
        }
    }
    return picture;
}

} // namespace

class TestI420Frame : public QObject
{
    Q_OBJECT

private slots:
    void sizesOutsideTheLimitsAreRefused();
    void oddSidesRoundChromaUp();
    void copyKeepsEverySampleOfTheAlignedColumns();
    void bufferHoldsTheLayoutAndTheNominalSize();
    void planeCopyFollowsTheStride();
    void blackIsBlankUntilALumaByteComes();
};

void TestI420Frame::sizesOutsideTheLimitsAreRefused()
{
    QVERIFY(zr::isFrameSizeValid(1, 1));
    QVERIFY(zr::isFrameSizeValid(16384, 16384));
    for (const quint32 bad : {0U, 16385U, 0x80000000U, 0xFFFFFFFFU}) {
        QVERIFY(!zr::isFrameSizeValid(bad, 16));
        QVERIFY(!zr::isFrameSizeValid(16, bad));
    }
    QVERIFY(zr::tileBufferBytes(16384, 16384) <= std::size_t(std::numeric_limits<int>::max()));
}

void TestI420Frame::oddSidesRoundChromaUp()
{
    QCOMPARE(zr::sourceLayout(641, 361).totalBytes(), std::size_t(641 * 361 + 2 * 321 * 181));
    QCOMPARE(zr::tileLayout(641, 361).totalBytes(), std::size_t(640 * 361 + 2 * 320 * 181));
    QVERIFY(zr::tileLayout(7, 5).isEmpty());
    QVERIFY(!zr::tileLayout(8, 1).isEmpty());
}

void TestI420Frame::copyKeepsEverySampleOfTheAlignedColumns()
{
    for (const quint32 width : {1U, 7U, 8U, 9U, 15U, 16U, 174U, 176U, 641U, 642U}) {
        for (const quint32 height : {1U, 2U, 5U, 100U}) {
            const Bytes picture = makePicture(zr::sourceLayout(width, height));
            const zr::I420Layout layout = zr::tileLayout(width, height);
            QVERIFY(layout.chromaStride % 4 == 0); // what a texture upload expects of its rows
            // With a guard behind what may be written.
            Bytes expected = makePicture(layout);
            expected.push_back(0xEE);
            Bytes target(expected.size(), 0xEE);
            zr::copyFrameToTile(picture.data(), width, height, target.data());
            QCOMPARE(target, expected);
        }
    }
}

void TestI420Frame::bufferHoldsTheLayoutAndTheNominalSize()
{
    for (quint32 w = 1; w < 40; ++w) {
        for (quint32 h = 1; h < 40; ++h) {
            const std::size_t bytes = zr::tileBufferBytes(w, h);
            QVERIFY(bytes >= zr::tileLayout(w, h).totalBytes());
            QVERIFY(bytes >= static_cast<std::size_t>(w * h * 3.0 / 2.0));
        }
    }
    QCOMPARE(zr::tileBufferBytes(642, 480), std::size_t(642 * 480 * 3 / 2));
}

void TestI420Frame::planeCopyFollowsTheStride()
{
    const Bytes source{1, 2, 3, 4, 5, 6, 7, 8};
    Bytes target(4);
    zr::copyPlane(source.data(), 4, target.data(), 2, 2);
    QCOMPARE(target, (Bytes{1, 2, 5, 6}));
    zr::copyPlane(source.data() + 4, -4, target.data(), 2, 2);
    QCOMPARE(target, (Bytes{5, 6, 1, 2}));
    zr::copyPlane(source.data(), 2, target.data(), 2, 2);
    QCOMPARE(target, (Bytes{1, 2, 3, 4}));
}

void TestI420Frame::blackIsBlankUntilALumaByteComes()
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

QTEST_APPLESS_MAIN(TestI420Frame)
#include "tst_i420frame.moc"
