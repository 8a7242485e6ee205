#include "letterbox.h"

#include <QtTest>

class TestLetterbox : public QObject
{
    Q_OBJECT

private slots:
    void pictureIsPlaced_data();
    void pictureIsPlaced();
    void pictureLiesCentredInsideAndTouchesTwoEdges();
};

void TestLetterbox::pictureIsPlaced_data()
{
    QTest::addColumn<QSize>("video");
    QTest::addColumn<QSize>("widget");
    QTest::addColumn<QRect>("expected");
    QTest::newRow("bars above and below")
        << QSize(1920, 1080) << QSize(400, 400) << QRect(0, 87, 400, 225);
    QTest::newRow("bars left and right")
        << QSize(640, 360) << QSize(800, 360) << QRect(79, 0, 641, 360);
    QTest::newRow("portrait") << QSize(360, 640) << QSize(640, 640) << QRect(139, 0, 361, 640);
    QTest::newRow("portrait in a narrow tile")
        << QSize(360, 640) << QSize(90, 640) << QRect(0, 240, 90, 160);
    QTest::newRow("square") << QSize(100, 100) << QSize(300, 100) << QRect(99, 0, 101, 100);
    QTest::newRow("a gap of one pixel closes")
        << QSize(1920, 1080) << QSize(400, 226) << QRect(0, 0, 400, 226);
    QTest::newRow("a gap of two pixels stays")
        << QSize(1920, 1080) << QSize(400, 227) << QRect(0, 1, 400, 225);
    QTest::newRow("what the longer ratio adds is cut")
        << QSize(1, 1) << QSize(100, 150) << QRect(0, 0, 100, 150);
    QTest::newRow("no video") << QSize(0, 10) << QSize(100, 100) << QRect();
    QTest::newRow("no room") << QSize(10, 10) << QSize(0, 100) << QRect();
}

void TestLetterbox::pictureIsPlaced()
{
    QFETCH(QSize, video);
    QFETCH(QSize, widget);
    QFETCH(QRect, expected);
    QCOMPARE(zr::letterboxRect(video, widget), expected);
}

void TestLetterbox::pictureLiesCentredInsideAndTouchesTwoEdges()
{
    const QVector<int> sides{1, 2, 7, 90, 361, 640, 1081, 16384};
    for (const int vw : sides) {
        for (const int vh : sides) {
            for (const int w : sides) {
                for (const int h : sides) {
                    const QRect view = zr::letterboxRect({vw, vh}, {w, h});
                    const auto name = [&] {
                        return qPrintable(
                            QStringLiteral("%1x%2 in %3x%4").arg(vw).arg(vh).arg(w).arg(h));
                    };
                    const QRect widget(0, 0, w, h);
                    QVERIFY2(view.isEmpty() || widget.contains(view), name());
                    QVERIFY2(view.width() == w || view.height() == h, name());
                    const int right = w - view.x() - view.width();
                    const int bottom = h - view.y() - view.height();
                    QVERIFY2(right - view.x() == 0 || right - view.x() == 1, name());
                    QVERIFY2(bottom - view.y() == 0 || bottom - view.y() == 1, name());
                }
            }
        }
    }
}

QTEST_APPLESS_MAIN(TestLetterbox)
#include "tst_letterbox.moc"
