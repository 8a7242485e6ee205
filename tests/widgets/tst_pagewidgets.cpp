// The page marks, page controls and the no-video picture, by what they paint and announce.
#include "golden.h"
#include "testsupport.h"

#include "qdlgnovideo.h"
#include "qdlgpagemark.h"
#include "qmypagectrl.h"
#include "qmypagescroll.h"
#include "qmyscrollbar.h"

class TestPageWidgets : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_window.setPalette(QPalette(QColor(200, 0, 200))); // stands for the tiles
        m_window.resize(600, 400);
        m_window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&m_window));
    }

    void lookAsTheirGolden()
    {
        QDlgPageMark marks[4]{QDlgPageMark(&m_window), QDlgPageMark(&m_window),
                              QDlgPageMark(&m_window), QDlgPageMark(&m_window)};
        // No page, a single one, the last one, and one that is gone.
        const std::pair<int, int> pages[] = {{0, 0}, {0, 1}, {2, 3}, {3, 3}};
        for (int i = 0; i < 4; ++i) {
            marks[i].move(40 * i, 0);
            marks[i].setPages(pages[i].first, pages[i].second);
            marks[i].show();
        }
        QDlgNoVideo noVideo[2]{QDlgNoVideo(&m_window), QDlgNoVideo(&m_window)};
        const QSize camera = QImage(":/pic/nocamera.png").size();
        noVideo[0].setGeometry(QRect({160, 0}, camera + QSize(41, 30)));
        noVideo[1].setGeometry(450, 0, camera.width() / 2, 200);       // cut
        QVERIFY(!m_window.childAt(5, 5) && !m_window.childAt(165, 5)); // clicks go to what is below
        QMyPageCtrl next(&m_window);
        next.setImage(QImage(":/pic/pageNext.png"));
        next.setGeometry(QRect({160, 250}, next.sizeHint()));
        next.show();
        QMyPageScroll bar(&m_window);
        bar.setBarHeight(120);
        bar.move(580, 0);
        bar.show();
        QMyScrollbar scrollbar(&m_window);
        scrollbar.setGeometry(560, 0, scrollbar.sizeHint().width(), 200);
        scrollbar.setRange(0, 10000); // the handle keeps a size that can be caught
        scrollbar.show();
        ZR_COMPARE_GOLDEN(m_window.grab(), "page_widgets");
    }

    void leftClickTurnsThePage()
    {
        QMyPageCtrl next(&m_window);
        next.resize(48, 48);
        next.show();
        QVector<QWidget*> clicked;
        connect(&zrtest::hub(), &QZRScreenConfig::clickPageCtl, this,
                [&](QWidget* control) { clicked += control; });
        for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton, Qt::LeftButton})
            QTest::mouseClick(&next, button);
        QCOMPARE(clicked, QVector<QWidget*>{&next});
    }

private:
    QWidget m_window; ///< the gallery
};

ZR_WIDGET_TEST_MAIN(TestPageWidgets)
#include "tst_pagewidgets.moc"
