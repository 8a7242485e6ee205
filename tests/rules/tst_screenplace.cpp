#include "screenplace.h"

#include <QtTest>

class TestScreenPlace : public QObject
{
    Q_OBJECT

private slots:
    void windowIsBroughtIntoView_data();
    void windowIsBroughtIntoView();
};

void TestScreenPlace::windowIsBroughtIntoView_data()
{
    QTest::addColumn<QPoint>("wanted");
    QTest::addColumn<int>("screens"); // 0: none, 1: the left one, 2: both, 3: the right one
    QTest::addColumn<QPoint>("expected");
    QTest::newRow("inside") << QPoint(100, 90) << 1 << QPoint(100, 90);
    QTest::newRow("touches both edges") << QPoint(1648, 815) << 1 << QPoint(1648, 815);
    QTest::newRow("past right and below") << QPoint(1649, 2000) << 1 << QPoint(1648, 815);
    QTest::newRow("past left and above") << QPoint(-50, -1) << 1 << QPoint(0, 0);
    QTest::newRow("across two screens") << QPoint(1800, 400) << 2 << QPoint(1800, 400);
    QTest::newRow("across, above one of them") << QPoint(1850, 100) << 2 << QPoint(1920, 200);
    QTest::newRow("mostly on the taller one") << QPoint(1700, 50) << 2 << QPoint(1648, 50);
    QTest::newRow("its screen is gone") << QPoint(2500, 400) << 1 << QPoint(1648, 400);
    QTest::newRow("gone to the left") << QPoint(100, 100) << 3 << QPoint(1920, 200);
    QTest::newRow("the nearest of two") << QPoint(5000, 5000) << 2 << QPoint(2928, 775);
    QTest::newRow("no screen") << QPoint(-5000, 7) << 0 << QPoint(-5000, 7);
}

void TestScreenPlace::windowIsBroughtIntoView()
{
    QFETCH(QPoint, wanted);
    QFETCH(int, screens);
    QFETCH(QPoint, expected);
    std::vector<QRect> areas;
    if (screens == 1 || screens == 2)
        areas.emplace_back(0, 0, 1920, 1040); // a bar below
    if (screens >= 2)
        areas.emplace_back(1920, 200, 1280, 800);
    QCOMPARE(zr::visiblePlace({wanted, QSize(272, 225)}, areas), expected);
    // A window larger than every screen shows its beginning.
    if (!areas.empty())
        QCOMPARE(zr::visiblePlace({wanted, QSize(4000, 4000)}, {areas[0]}), areas[0].topLeft());
}

QTEST_APPLESS_MAIN(TestScreenPlace)
#include "tst_screenplace.moc"
