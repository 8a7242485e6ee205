#include "letterbox.h"

#include <QtTest>

class TestLetterbox : public QObject
{
    Q_OBJECT

private slots:
    void pictureIsPlaced()
    {
        const struct
        {
            QSize video, widget;
            QRect placed;
        } rows[] = {
            {{1920, 1080}, {400, 400}, {0, 87, 400, 225}},
            {{640, 360}, {800, 360}, {79, 0, 641, 360}},
            {{360, 640}, {640, 640}, {139, 0, 361, 640}},
            {{360, 640}, {90, 640}, {0, 240, 90, 160}},
            {{1920, 1080}, {400, 226}, {0, 0, 400, 226}}, // a gap of one pixel closes
            {{1920, 1080}, {400, 227}, {0, 1, 400, 225}},
            {{16, 9}, {101, 56}, {0, 0, 101, 56}},  // also at the sides
            {{1, 1}, {100, 150}, {0, 0, 100, 150}}, // what the longer ratio adds is cut
            {{0, 10}, {100, 100}, {}},
            {{10, 10}, {0, 100}, {}},
        };
        for (const auto& row : rows)
            QCOMPARE(zr::letterboxRect(row.video, row.widget), row.placed);
    }
};

QTEST_APPLESS_MAIN(TestLetterbox)
#include "tst_letterbox.moc"
