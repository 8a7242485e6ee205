// What the watermark says and where it is repeated.
#include "watermarktext.h"

#include <QPointF>
#include <QtTest>

#include <cmath>

class TestWatermarkText : public QObject
{
    Q_OBJECT

private slots:
    void says_data();
    void says();
    void boundsItsLength();
    void coversTheTile_data();
    void coversTheTile();
};

void TestWatermarkText::says_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("phone");
    QTest::addColumn<QString>("email");
    QTest::addColumn<QString>("text");
    const QString name = QString::fromUtf8("张三");
    const QString phone = "13812345678";
    const QString email = "zhang@example.com";
    QTest::newRow("name only") << 0 << name << phone << email << name;
    QTest::newRow("unknown kind") << 3 << name << phone << email << name;
    QTest::newRow("negative kind") << -1 << name << phone << email << name;
    QTest::newRow("phone") << 1 << name << phone << email << name + "-138****5678";
    QTest::newRow("seven digits") << 1 << name << "1234567" << email << name + "-123****";
    QTest::newRow("six digits") << 1 << name << "123456" << email << name + "-123456";
    QTest::newRow("no phone") << 1 << name << "" << email << name;
    QTest::newRow("e-mail") << 2 << name << phone << email << name + "-zhang@example.com";
    QTest::newRow("no e-mail") << 2 << name << phone << "" << name;
    QTest::newRow("no name") << 1 << "" << phone << email << "";
    QTest::newRow("two lines") << 2 << "a\nb" << phone << "c\td"
                               << "a b-c d";
}

void TestWatermarkText::says()
{
    QFETCH(int, kind);
    QFETCH(QString, name);
    QFETCH(QString, phone);
    QFETCH(QString, email);
    QFETCH(QString, text);
    QCOMPARE(zr::watermarkText({true, kind, name, phone, email}), text);
    QCOMPARE(zr::watermarkText({false, kind, name, phone, email}), QString());
}

void TestWatermarkText::boundsItsLength()
{
    QCOMPARE(zr::watermarkText({true, 0, QString(10000, 'x'), {}, {}}).size(), 10000);
    QCOMPARE(zr::watermarkText({true, 2, QString(350000, 'x'), {}, "a"}).size(), 20000);
}

void TestWatermarkText::coversTheTile_data()
{
    QTest::addColumn<QSize>("tile");
    QTest::addColumn<int>("textWidth");
    QTest::newRow("full screen") << QSize(1920, 1080) << 420;
    QTest::newRow("small") << QSize(320, 180) << 420;
    QTest::newRow("tiny") << QSize(16, 9) << 420;
    QTest::newRow("short text") << QSize(160, 90) << 1;
    QTest::newRow("upright") << QSize(300, 1600) << 200;
    QTest::newRow("endless text") << QSize(1280, 720) << 300000;
    QTest::newRow("empty") << QSize(0, 0) << 420;
}

/// No corner of the tile is further from a text than the texts are from each other.
void TestWatermarkText::coversTheTile()
{
    QFETCH(QSize, tile);
    QFETCH(int, textWidth);
    const zr::WatermarkMetrics metrics{textWidth, 45, 16};
    const QVector<QPoint> grid = zr::watermarkGrid(tile, metrics);
    QVERIFY(grid.size() < 1000);
    QCOMPARE(grid.isEmpty(), tile.isEmpty());
    // The longest way from the first column to a corner.
    QVERIFY(zr::visibleWatermarkPx(tile)
            >= tile.width() + std::hypot(tile.width(), tile.height()) / 2);
    for (const QPoint corner : {QPoint(0, 0), QPoint(tile.width(), 0), QPoint(0, tile.height()),
                                QPoint(tile.width(), tile.height())}) {
        // Turned back around the centre.
        const QPointF from = corner - QPoint(tile.width() / 2, tile.height() / 2);
        const double c = std::cos(zr::kWatermarkDegrees * -M_PI / 180);
        const double s = std::sin(zr::kWatermarkDegrees * -M_PI / 180);
        const QPointF at(from.x() * c - from.y() * s, from.x() * s + from.y() * c);
        double nearest = std::hypot(tile.width(), tile.height()) * 10 + 1;
        for (const QPoint& origin : grid) {
            const double beforeText = std::max(0.0, origin.x() - at.x());
            const double afterText = std::max(0.0, at.x() - origin.x() - textWidth);
            nearest = std::min(nearest, std::hypot(beforeText + afterText, at.y() - origin.y()));
        }
        if (!tile.isEmpty())
            QVERIFY2(nearest <= std::hypot(textWidth + 16 * 20, 45 * 9),
                     qPrintable(QString::number(nearest)));
    }
}

QTEST_APPLESS_MAIN(TestWatermarkText)
#include "tst_watermarktext.moc"
