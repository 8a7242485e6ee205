// The watermark over shared screens: that the copied slices are what drawing every text would give,
// what is drawn anew, and how it looks.
#include "golden.h"
#include "testsupport.h"

#include "qzrscreenconfig.h"
#include "watermarkcache.h"

#include <QPainter>
#include <QtTest>

#include <atomic>
#include <thread>
#include <vector>

class TestWatermark : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_bFont = zrtest::useGoldenFont(); }
    void cleanup() { QZRScreenConfig::destroyInstance(); }

    void looksAsIfDrawn_data();
    void looksAsIfDrawn();
    void paintsOnlyTheClip();
    void drawsOnlyWhatHasChanged();
    void keepsItsMemoryBounded();
    void isOneRecordForAllThreads();

private:
    static QImage ground(const QSize& tile, int dpi);
    static QImage drawn(const QSize& tile, int dpi, const QString& text, bool centred);
    static QImage painted(WatermarkCache& cache, const QSize& tile, int dpi, const QString& text);
    bool m_bFont = false;
};

/// A shared document, light and dark.
QImage TestWatermark::ground(const QSize& tile, int dpi)
{
    QImage image(tile, QImage::Format_ARGB32_Premultiplied);
    image.setDotsPerMeterX(qRound(dpi / 0.0254));
    image.setDotsPerMeterY(qRound(dpi / 0.0254));
    image.fill(QColor(28, 32, 39));
    QPainter painter(&image);
    painter.fillRect(QRect(tile.width() / 3, 0, tile.width() / 3, tile.height()),
                     QColor(245, 246, 248));
    painter.fillRect(QRect(tile.width() * 2 / 3, 0, tile.width() / 3, tile.height()),
                     QColor(40, 80, 140));
    return image;
}

/// The same with every text drawn as one, wherever it is; in too small a tile one more at the
/// centre.
QImage TestWatermark::drawn(const QSize& tile, int dpi, const QString& text, bool centred)
{
    QImage image = ground(tile, dpi);
    QPainter painter(&image);
    QFont font(QString::fromUtf8("微软雅黑"));
    font.setPointSize(24);
    font.setLetterSpacing(QFont::AbsoluteSpacing, 0);
    painter.setFont(font);
    painter.setPen(QColor("#53B9B9B9"));
    painter.translate(QPoint(tile.width() / 2, tile.height() / 2));
    painter.rotate(-30);
    const QFontMetrics metrics = painter.fontMetrics();
    const int columnStep = metrics.horizontalAdvance(text) + metrics.averageCharWidth() * 20;
    const int rowStep = (metrics.ascent() + metrics.descent()) * 9;
    for (int x = -tile.width(); x < tile.width(); x += columnStep) {
        for (int y = -tile.height(); y <= tile.height(); y += rowStep)
            painter.drawText(x, y, text);
    }
    if (centred)
        painter.drawText(-metrics.horizontalAdvance(text) / 2, rowStep / 27, text);
    return image;
}

QImage TestWatermark::painted(WatermarkCache& cache, const QSize& tile, int dpi,
                              const QString& text)
{
    QImage image = ground(tile, dpi);
    QPainter painter(&image);
    cache.paint(painter, tile, text);
    return image;
}

void TestWatermark::looksAsIfDrawn_data()
{
    QTest::addColumn<QSize>("tile");
    QTest::addColumn<int>("dpi");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("centred");
    const QString text = QString::fromUtf8("张三-138****5678");
    QTest::newRow("large") << QSize(960, 540) << 96 << text << false;
    QTest::newRow("small") << QSize(320, 180) << 96 << text << true;
    QTest::newRow("large_4k") << QSize(960, 540) << 192 << text << true;
    QTest::newRow("small_4k") << QSize(320, 180) << 192 << text << true;
    QTest::newRow("long") << QSize(640, 360) << 96
                          << QString::fromUtf8("测试 watermark ").repeated(700) << false;
    QTest::newRow("upright") << QSize(200, 700) << 96 << QStringLiteral("Alice") << false;
    QTest::newRow("letters at the edge") << QSize(610, 400) << 96 << text << false;
}

void TestWatermark::looksAsIfDrawn()
{
    QVERIFY2(m_bFont, "the package fonts-noto-cjk is not installed");
    QFETCH(QSize, tile);
    QFETCH(int, dpi);
    QFETCH(QString, text);
    QFETCH(bool, centred);
    WatermarkCache cache;
    const QImage image = painted(cache, tile, dpi, text);
    const QImage expected = drawn(tile, dpi, text, centred);
    QVERIFY(zrtest::looksLike(image.convertToFormat(QImage::Format_RGB32),
                              expected.convertToFormat(QImage::Format_RGB32)));
    QVERIFY(image != ground(tile, dpi));
    const QByteArray name = QTest::currentDataTag();
    if (name.startsWith("large") || name.startsWith("small"))
        ZR_COMPARE_GOLDEN(QPixmap::fromImage(image), "watermark_" + name);
}

void TestWatermark::paintsOnlyTheClip()
{
    const QSize tile(640, 360);
    const QRect part(200, 100, 300, 150);
    WatermarkCache cache;
    QImage image = ground(tile, 96);
    QPainter painter(&image);
    painter.setClipRect(part);
    cache.paint(painter, tile, QStringLiteral("Alice"));
    painter.end();
    QImage expected = ground(tile, 96);
    QPainter(&expected).drawImage(part.topLeft(), painted(cache, tile, 96, "Alice"), part);
    QCOMPARE(image, expected);
}

void TestWatermark::drawsOnlyWhatHasChanged()
{
    WatermarkCache cache;
    const QString text = QStringLiteral("Alice");
    const auto drawings = [&](const QSize& tile, int dpi, const QString& of) {
        const int before = cache.drawings();
        painted(cache, tile, dpi, of);
        return cache.drawings() - before;
    };
    QCOMPARE(drawings({1280, 720}, 96, text), 1);
    QCOMPARE(drawings({1280, 720}, 96, text), 0);
    QCOMPARE(drawings({640, 360}, 96, text), 0); // the text is as it was
    QCOMPARE(drawings({640, 360}, 192, text), 1);
    QCOMPARE(drawings({640, 360}, 192, QStringLiteral("Bob")), 1);
    QCOMPARE(drawings({640, 360}, 192, QString()), 0);
}

void TestWatermark::keepsItsMemoryBounded()
{
    WatermarkCache cache;
    painted(cache, {1920, 1080}, 96, QString::fromUtf8("张三-138****5678"));
    QVERIFY2(cache.bytes() < 512 * 1024, qPrintable(QString::number(cache.bytes())));
    painted(cache, {1920, 1080}, 96, QString(10000, QLatin1Char('W')));
    QVERIFY2(cache.bytes() < 4 * 1024 * 1024, qPrintable(QString::number(cache.bytes())));
}

void TestWatermark::isOneRecordForAllThreads()
{
    const QString name = QString::fromUtf8("张三");
    const zr::WatermarkInfo info{true, 1, name, "13812345678", {}};
    std::atomic<bool> stop{false};
    std::vector<std::thread> hosts;
    for (int i = 0; i < 2; ++i) {
        hosts.emplace_back([&] {
            for (bool on = false; !stop; on = !on) {
                QZRScreenConfig::setWatermarkInfo(info);
                QZRScreenConfig::setWatermarkEnabled(on);
            }
        });
    }
    for (int i = 0; i < 2000; ++i) {
        const QString text = QZRScreenConfig::getInstance()->getWatermarkText();
        QVERIFY(text.isEmpty() || text == name + "-138****5678");
    }
    stop = true;
    for (std::thread& host : hosts)
        host.join();
    // The switch leaves the record, and the record outlives the hub.
    QZRScreenConfig::setWatermarkInfo(info);
    for (const bool on : {false, true}) {
        QZRScreenConfig::setWatermarkEnabled(on);
        QCOMPARE(QZRScreenConfig::getInstance()->getWatermarkText(),
                 on ? name + "-138****5678" : QString());
        QZRScreenConfig::destroyInstance();
    }
    QZRScreenConfig::setWatermarkInfo({});
    QVERIFY(QZRScreenConfig::getInstance()->getWatermarkText().isEmpty());
}

ZR_WIDGET_TEST_MAIN(TestWatermark)
#include "tst_watermarkcache.moc"
