#include "screenplace.h"

#include <QtTest>

class TestScreenPlace : public QObject
{
    Q_OBJECT

private slots:
    void windowIsBroughtIntoView()
    {
        const QRect left(0, 0, 1920, 1040); // a bar below
        const QRect right(1920, 200, 1280, 800);
        const struct
        {
            const char* name;
            std::vector<QRect> screens;
            QPoint wanted, expected;
            QSize window{272, 225};
        } rows[] = {
            {"past right and below", {left}, {1649, 2000}, {1648, 815}},
            {"past left and above", {left}, {-50, -1}, {0, 0}},
            {"across two screens", {left, right}, {1800, 400}, {1800, 400}},
            {"across, above one of them", {left, right}, {1850, 100}, {1920, 200}},
            {"mostly on the taller one", {left, right}, {1700, 50}, {1648, 50}},
            {"the nearest of two", {left, right}, {5000, 5000}, {2928, 775}},
            {"beside them, nearer above", {left, {-500, 1400, 1900, 800}}, {500, 1100}, {500, 815}},
            {"above both, nearer by both axes", {right, left}, {2000, -300}, {1648, 0}},
            {"no screen", {}, {-5000, 7}, {-5000, 7}},
            {"larger than the screen", {right}, {7, 900}, right.topLeft(), {4000, 4000}},
        };
        for (const auto& row : rows)
            QVERIFY2(zr::visiblePlace({row.wanted, row.window}, row.screens) == row.expected,
                     row.name);
    }
};

QTEST_APPLESS_MAIN(TestScreenPlace)
#include "tst_screenplace.moc"
