#include "i420frame.h"

#include <QtTest>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

using Bytes = std::vector<uchar>;

/// Every sample tells its plane, row and column.
uchar sampleAt(int plane, std::size_t row, std::size_t column)
{
    return static_cast<uchar>(1 + (plane * 83 + row * 7 + column * 3) % 251);
}

Bytes makePicture(quint32 w, quint32 h)
{
    const zr::I420Layout layout = zr::sourceLayout(w, h);
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
    void copyKeepsEverySampleOfTheAlignedColumns_data();
    void copyKeepsEverySampleOfTheAlignedColumns();
    void bufferHoldsTheLayoutAndTheNominalSize();
    void planeCopyFollowsTheStride();
    void blackIsBlankUntilALumaByteComes_data();
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
    const zr::I420Layout source = zr::sourceLayout(641, 361);
    QCOMPARE(source.chromaStride, std::size_t(321));
    QCOMPARE(source.chromaRows, std::size_t(181));
    QCOMPARE(source.totalBytes(), std::size_t(641 * 361 + 2 * 321 * 181));
    QCOMPARE(zr::sourceLayout(1, 1).totalBytes(), std::size_t(3));

    const zr::I420Layout tile = zr::tileLayout(641, 361);
    QCOMPARE(tile.lumaStride, std::size_t(640));
    QCOMPARE(tile.chromaStride, std::size_t(320));
    QCOMPARE(tile.chromaRows, std::size_t(181));
    QVERIFY(zr::tileLayout(7, 5).isEmpty());
    QVERIFY(!zr::tileLayout(8, 1).isEmpty());
}

void TestI420Frame::copyKeepsEverySampleOfTheAlignedColumns_data()
{
    QTest::addColumn<quint32>("width");
    QTest::addColumn<quint32>("height");
    for (const quint32 w : {1U, 7U, 8U, 9U, 15U, 16U, 174U, 176U, 641U, 642U}) {
        for (const quint32 h : {1U, 2U, 5U, 100U})
            QTest::addRow("%ux%u", w, h) << w << h;
    }
}

void TestI420Frame::copyKeepsEverySampleOfTheAlignedColumns()
{
    QFETCH(quint32, width);
    QFETCH(quint32, height);
    const Bytes picture = makePicture(width, height);
    // Exactly as large as they must be, on the heap: a byte too far shows under the sanitizer,
    // and the guard behind the target shows it without.
    const zr::I420Layout layout = zr::tileLayout(width, height);
    constexpr uchar kGuard = 0xEE;
    const auto target = std::make_unique<uchar[]>(layout.totalBytes() + 1);
    target[layout.totalBytes()] = kGuard;
    zr::copyFrameToTile(picture.data(), width, height, target.get());
    QCOMPARE(target[layout.totalBytes()], kGuard);

    const std::size_t offsets[] = {0, layout.uOffset(), layout.vOffset()};
    for (int plane = 0; plane < 3; ++plane) {
        const std::size_t rows = plane == 0 ? layout.lumaRows : layout.chromaRows;
        const std::size_t columns = plane == 0 ? layout.lumaStride : layout.chromaStride;
        QVERIFY(columns % 4 == 0); // what a texture upload expects of its rows
        for (std::size_t i = 0; i < rows * columns; ++i)
            QCOMPARE(target[offsets[plane] + i], sampleAt(plane, i / columns, i % columns));
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

void TestI420Frame::blackIsBlankUntilALumaByteComes_data()
{
    QTest::addColumn<quint32>("width");
    QTest::addColumn<quint32>("height");
    QTest::newRow("fewer luma bytes than are looked at") << 8U << 3U;
    QTest::newRow("large, in a larger block") << 642U << 481U;
}

void TestI420Frame::blackIsBlankUntilALumaByteComes()
{
    QFETCH(quint32, width);
    QFETCH(quint32, height);
    const zr::I420Layout layout = zr::tileLayout(width, height);
    Bytes buffer(layout.totalBytes() + 100, 0x55);
    zr::fillBlack(layout, buffer.data(), buffer.size());
    QVERIFY(zr::isBlank(layout, buffer.data()));
    const auto at = [&](std::size_t offset) {
        return buffer.begin() + static_cast<std::ptrdiff_t>(offset);
    };
    const auto all = [](auto first, auto last, uchar value) {
        return std::all_of(first, last, [value](uchar byte) { return byte == value; });
    };
    QVERIFY(all(buffer.begin(), at(layout.uOffset()), 0));
    QVERIFY(all(at(layout.uOffset()), at(layout.totalBytes()), 128));
    QVERIFY(all(at(layout.totalBytes()), buffer.end(), 0));

    const std::size_t lastLooked = std::min<std::size_t>(1024, layout.lumaBytes()) - 1;
    buffer[lastLooked] = 16;
    QVERIFY(!zr::isBlank(layout, buffer.data()));
}

QTEST_APPLESS_MAIN(TestI420Frame)
#include "tst_i420frame.moc"
