#include "letterbox.h"

#include <QtTest>

class TestLetterbox : public QObject
{
    Q_OBJECT

private slots:
    void pictureIsPlaced();
    void pictureLiesCentredInsideAndTouchesTwoEdges();
};

void TestLetterbox::pictureIsPlaced()
{
    struct Row
    {
        QSize video, widget;
        QRect placed;
    };
    const Row rows[] = {
        {{1920, 1080}, {400, 400}, {0, 87, 400, 225}},
        {{640, 360}, {800, 360}, {79, 0, 641, 360}},
        {{360, 640}, {640, 640}, {139, 0, 361, 640}},
        {{360, 640}, {90, 640}, {0, 240, 90, 160}},
        {{1920, 1080}, {400, 226}, {0, 0, 400, 226}}, // a gap of one pixel closes
        {{1920, 1080}, {400, 227}, {0, 1, 400, 225}},
        {{1, 1}, {100, 150}, {0, 0, 100, 150}}, // what the longer ratio adds is cut
        {{0, 10}, {100, 100}, {}},
        {{10, 10}, {0, 100}, {}},
    };
    for (const Row& row : rows)
        QCOMPARE(zr::letterboxRect(row.video, row.widget), row.placed);
}

void TestLetterbox::pictureLiesCentredInsideAndTouchesTwoEdges()
{
    const QVector<int> sides{1, 2, 7, 90, 361, 640, 1081, 16384};
    for (const int vw : sides) {
        for (const int vh : sides) {
            for (const int w : sides) {
                for (const int h : sides) {
                    const QRect view = zr::letterboxRect({vw, vh}, {w, h});
                    const int right = w - view.x() - view.width();
                    const int bottom = h - view.y() - view.height();
                    const bool inside = view.isEmpty() || QRect(0, 0, w, h).contains(view);
                    const bool touches = view.width() == w || view.height() == h;
                    const bool centred = (right - view.x()) / 2 == 0 && right >= view.x()
                                         && (bottom - view.y()) / 2 == 0 && bottom >= view.y();
                    QVERIFY2(inside && touches && centred,
                             qPrintable(QString("%1x%2 in %3x%4").arg(vw).arg(vh).arg(w).arg(h)));
                }
            }
        }
    }
}

QTEST_APPLESS_MAIN(TestLetterbox)
#include "tst_letterbox.moc"
