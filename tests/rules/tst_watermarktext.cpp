// What the watermark says and where it is repeated.
#include "watermarktext.h"

#include <QtTest>

class TestWatermarkText : public QObject
{
    Q_OBJECT

private slots:
    void says();
    void boundsItsLength();
    void hasAlwaysAPlace();
};

void TestWatermarkText::says()
{
    const QString name = QString::fromUtf8("张三");
    const struct
    {
        int kind;
        QString name, phone, email, text;
    } rows[] = {
        {0, name, "13812345678", "zhang@example.com", name},
        {3, name, "13812345678", "zhang@example.com", name}, // no such kind
        {1, name, "13812345678", "", name + "-138****5678"},
        {1, name, "1234567", "", name + "-123****"},
        {1, name, "123456", "", name + "-123456"},
        {1, name, "", "zhang@example.com", name},
        {2, name, "13812345678", "zhang@example.com", name + "-zhang@example.com"},
        {2, name, "13812345678", "", name},
        {1, "", "13812345678", "", ""},
        {2, "a\nb", "", "c\td", "a b-c d"},
    };
    for (const auto& row : rows) {
        QCOMPARE(zr::watermarkText({true, row.kind, row.name, row.phone, row.email}), row.text);
        QCOMPARE(zr::watermarkText({false, row.kind, row.name, row.phone, row.email}), QString());
    }
}

void TestWatermarkText::boundsItsLength()
{
    QCOMPARE(zr::watermarkText({true, 0, QString(10000, 'x'), {}, {}}).size(), 10000);
    QCOMPARE(zr::watermarkText({true, 2, QString(350000, 'x'), {}, "a"}).size(), 20000);
}

void TestWatermarkText::hasAlwaysAPlace()
{
    const std::pair<QSize, int> rows[] = {
        {{16, 9}, 420}, {{7680, 4320}, 1}, {{1280, 720}, 300000}, {{100, 0}, 420}};
    for (const auto& [tile, textWidth] : rows) {
        const QVector<QPoint> grid = zr::watermarkGrid(tile, {textWidth, 45, 16});
        QVERIFY(grid.size() < 1000);
        QCOMPARE(grid.isEmpty(), tile.isEmpty());
    }
}

QTEST_APPLESS_MAIN(TestWatermarkText)
#include "tst_watermarktext.moc"
