// What the watermark says and where it is repeated.
#include "watermarktext.h"

#include <QtTest>

class TestWatermarkText : public QObject
{
    Q_OBJECT

private slots:
    void says_data();
    void says();
    void boundsItsLength();
    void hasAlwaysAPlace_data();
    void hasAlwaysAPlace();
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

void TestWatermarkText::hasAlwaysAPlace_data()
{
    QTest::addColumn<QSize>("tile");
    QTest::addColumn<int>("textWidth");
    QTest::newRow("tiny") << QSize(16, 9) << 420;
    QTest::newRow("short text") << QSize(7680, 4320) << 1;
    QTest::newRow("endless text") << QSize(1280, 720) << 300000;
    QTest::newRow("no height") << QSize(100, 0) << 420;
}

void TestWatermarkText::hasAlwaysAPlace()
{
    QFETCH(QSize, tile);
    QFETCH(int, textWidth);
    const QVector<QPoint> grid = zr::watermarkGrid(tile, {textWidth, 45, 16});
    QVERIFY(grid.size() < 1000);
    QCOMPARE(grid.isEmpty(), tile.isEmpty());
}

QTEST_APPLESS_MAIN(TestWatermarkText)
#include "tst_watermarktext.moc"
