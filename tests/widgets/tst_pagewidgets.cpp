// The page marks, page controls and the no-video picture, by what they paint and announce.
#include "testsupport.h"

#include "qdlgnovideo.h"
#include "qdlgpagemark.h"
#include "qmypagectrl.h"
#include "qmypagescroll.h"
#include "qmyscrollbar.h"
#include "qzrscreenconfig.h"

#include <QPainter>

namespace {

const QColor kBehind(200, 0, 200); ///< stands for the tiles

/// The rows of column `x` on which something is painted, as runs of (first, last).
QVector<QPair<int, int>> paintedRuns(const QImage& image, int x)
{
    QVector<QPair<int, int>> runs;
    for (int y = 0; y < image.height(); ++y) {
        if (image.pixelColor(x, y) == kBehind)
            continue;
        if (!runs.isEmpty() && runs.last().second == y - 1)
            runs.last().second = y;
        else
            runs.append({y, y});
    }
    return runs;
}

} // namespace

class TestPageWidgets : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_window.reset(); }

    void childrenStayWhereTheyArePut();
    void marksAreAColumnOfDots_data();
    void marksAreAColumnOfDots();
    void noVideoIsCentredAndCut();
    void leftClickTurnsThePage();
    void barsKeepTheirWidth();

private:
    QImage grab() { return m_window->grab().toImage(); }

    std::unique_ptr<QWidget> m_window; ///< the gallery
};

void TestPageWidgets::init()
{
    m_window = std::make_unique<QWidget>();
    m_window->setPalette(QPalette(kBehind));
    m_window->resize(600, 400);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void TestPageWidgets::childrenStayWhereTheyArePut()
{
    QDlgPageMark marks(m_window.get());
    QVERIFY(marks.isHidden());
    marks.show();
    QDlgNoVideo noVideo(m_window.get());
    QVERIFY(noVideo.isVisible());
    for (const QDialog* dialog : {static_cast<QDialog*>(&marks), static_cast<QDialog*>(&noVideo)}) {
        QVERIFY(!dialog->isWindow());
        QCOMPARE(dialog->pos(), QPoint(0, 0));
    }
    QVERIFY(!m_window->childAt(5, 5)); // clicks go to what lies below
}

void TestPageWidgets::marksAreAColumnOfDots_data()
{
    QTest::addColumn<int>("current");
    QTest::addColumn<int>("count");
    QTest::newRow("no page") << 0 << 0;
    QTest::newRow("one page") << 0 << 1;
    QTest::newRow("the last of three") << 2 << 3;
    QTest::newRow("a page that is gone") << 3 << 3;
}

void TestPageWidgets::marksAreAColumnOfDots()
{
    QFETCH(int, current);
    QFETCH(int, count);
    QDlgPageMark marks(m_window.get());
    marks.setPages(current, count);
    marks.show();
    const QImage dot(QStringLiteral(":/pic/circleBlue.png"));
    const QImage shown = grab();
    const int x = dot.width() / 2;
    const auto runs = paintedRuns(shown.copy(marks.geometry()), x);
    QCOMPARE(runs.size(), count);
    for (int page = 0; page < count; ++page) {
        // The middle of all dots is the middle of the widget.
        const int middle = 175 + (2 * page - (count - 1)) * (dot.height() + 5) / 2;
        QVERIFY(qAbs((runs[page].first + runs[page].second + 1) / 2 - middle) <= 1);
        // Half of the dot and half of what lies behind.
        const QColor color = shown.pixelColor(x, middle);
        QCOMPARE(color.green() < 100, page == current);
        QVERIFY(color.red() > 100);
    }
}

void TestPageWidgets::noVideoIsCentredAndCut()
{
    const QImage camera(QStringLiteral(":/pic/nocamera.png"));
    QDlgNoVideo noVideo(m_window.get());
    const QSize sizes[]{{camera.width() + 41, camera.height() + 30}, {camera.width() / 2, 200}};
    for (const QSize& size : sizes) {
        noVideo.resize(size);
        QImage expected(size, QImage::Format_ARGB32_Premultiplied);
        expected.fill(Qt::black);
        QPainter(&expected).drawImage((size.width() - camera.width()) / 2,
                                      (size.height() - camera.height()) / 2, camera);
        const QImage shown = grab().copy(noVideo.geometry());
        QCOMPARE(shown.convertToFormat(QImage::Format_RGB32),
                 expected.convertToFormat(QImage::Format_RGB32));
    }
}

void TestPageWidgets::leftClickTurnsThePage()
{
    QMyPageCtrl next(m_window.get());
    next.setImage(QImage(QStringLiteral(":/pic/pageNext.png")));
    next.resize(next.sizeHint());
    next.show();
    QCOMPARE(grab().pixelColor(23, 2) == kBehind, false);
    QWidget* clicked = nullptr;
    int clicks = 0;
    connect(QZRScreenConfig::getInstance(), &QZRScreenConfig::clickPageCtl, this,
            [&](QWidget* control) {
                clicked = control;
                ++clicks;
            });
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton, Qt::LeftButton})
        QTest::mouseClick(&next, button);
    QCOMPARE(clicks, 1);
    QCOMPARE(clicked, &next);
}

void TestPageWidgets::barsKeepTheirWidth()
{
    QMyPageScroll pages(m_window.get());
    QVERIFY(pages.isHidden());
    QCOMPARE(pages.size(), QSize(6, 500));
    pages.setBarHeight(120);
    pages.show();
    const QImage shown = grab();
    QCOMPARE(shown.pixelColor(3, 60), QColor(0xBD, 0xC2, 0xCB));
    QCOMPARE(shown.pixelColor(3, 125), kBehind);

    QMyScrollbar scrollbar(m_window.get());
    scrollbar.resize(scrollbar.sizeHint().width(), 200);
    scrollbar.setRange(0, 10000);
    scrollbar.move(100, 0);
    scrollbar.show();
    QCOMPARE(scrollbar.width(), 8);
    // The handle keeps a size that can be caught.
    const QImage bar = grab().copy(scrollbar.geometry());
    int handleRows = 0;
    for (int y = 0; y < bar.height(); ++y)
        handleRows += bar.pixelColor(4, y) == QColor(86, 94, 108) ? 1 : 0;
    QVERIFY(handleRows >= 48 && handleRows <= 52);
}

ZR_WIDGET_TEST_MAIN(TestPageWidgets)
#include "tst_pagewidgets.moc"
