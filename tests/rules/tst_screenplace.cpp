#include "screenplace.h"

#include <QtTest>

class TestScreenPlace : public QObject
{
    Q_OBJECT

private slots:
    void windowIsBroughtIntoView();
};

void TestScreenPlace::windowIsBroughtIntoView()
{
    const QRect left(0, 0, 1920, 1040); // a bar below
    const QRect right(1920, 200, 1280, 800);
    struct Row
    {
        const char* name;
        std::vector<QRect> screens;
        QPoint wanted;
        QPoint expected;
    };
    const Row rows[] = {
        {"touches both edges", {left}, {1648, 815}, {1648, 815}},
        {"past right and below", {left}, {1649, 2000}, {1648, 815}},
        {"past left and above", {left}, {-50, -1}, {0, 0}},
        {"across two screens", {left, right}, {1800, 400}, {1800, 400}},
        {"across, above one of them", {left, right}, {1850, 100}, {1920, 200}},
        {"mostly on the taller one", {left, right}, {1700, 50}, {1648, 50}},
        {"its screen is gone", {left}, {2500, 400}, {1648, 400}},
        {"gone to the left", {right}, {100, 100}, {1920, 200}},
        {"the nearest of two", {left, right}, {5000, 5000}, {2928, 775}},
        {"no screen", {}, {-5000, 7}, {-5000, 7}},
    };
    for (const Row& row : rows) {
        QVERIFY2(zr::visiblePlace({row.wanted, QSize(272, 225)}, row.screens) == row.expected,
                 row.name);
    }
    // A window larger than every screen shows its beginning.
    QCOMPARE(zr::visiblePlace({QPoint(7, 900), QSize(4000, 4000)}, {right}), right.topLeft());
}

QTEST_APPLESS_MAIN(TestScreenPlace)
#include "tst_screenplace.moc"
