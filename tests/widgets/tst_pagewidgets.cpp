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

QImage opaque(const QImage& image)
{
    return image.convertToFormat(QImage::Format_RGB32);
}

} // namespace

class TestPageWidgets : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_window.reset(); }

    void childrenStayWhereTheyArePut();
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
    QVERIFY(!marks.isWindow() && marks.pos().isNull());
    QVERIFY(!noVideo.isWindow() && noVideo.pos().isNull());
    QVERIFY(!m_window->childAt(5, 5)); // clicks go to what lies below
}

void TestPageWidgets::marksAreAColumnOfDots()
{
    const QImage blue(QStringLiteral(":/pic/circleBlue.png"));
    const QImage white(QStringLiteral(":/pic/circleWhite.png"));
    QDlgPageMark marks(m_window.get());
    marks.show();
    // No page, a single one, the last one, and one that is gone.
    const std::pair<int, int> states[]{{0, 0}, {0, 1}, {2, 3}, {3, 3}};
    for (const auto& [current, count] : states) {
        marks.setPages(current, count);
        QImage expected(32, 350, QImage::Format_ARGB32_Premultiplied);
        expected.fill(kBehind);
        QPainter painter(&expected);
        painter.setOpacity(0.5);
        const int step = blue.height() + 5;
        for (int page = 0; page < count; ++page)
            painter.drawImage(0, (355 - count * step) / 2 + page * step,
                              page == current ? blue : white);
        QCOMPARE(opaque(grab().copy(marks.geometry())), opaque(expected));
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
        QCOMPARE(opaque(grab().copy(noVideo.geometry())), opaque(expected));
    }
}

void TestPageWidgets::leftClickTurnsThePage()
{
    QMyPageCtrl next(m_window.get());
    next.setImage(QImage(QStringLiteral(":/pic/pageNext.png")));
    next.resize(next.sizeHint());
    next.show();
    QVERIFY(grab().pixelColor(23, 2) != kBehind);
    QVector<QWidget*> clicked;
    connect(QZRScreenConfig::getInstance(), &QZRScreenConfig::clickPageCtl, this,
            [&](QWidget* control) { clicked += control; });
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton, Qt::LeftButton})
        QTest::mouseClick(&next, button);
    QCOMPARE(clicked, QVector<QWidget*>{&next});
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
