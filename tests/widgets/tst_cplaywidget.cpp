// The tile: what it paints, when it paints, and what a press becomes.
#include "pixels.h"
#include "testsupport.h"

#include "cplaywidget.h"
#include "qdlgplayinfo.h"

#include <QSignalSpy>

#include <thread>

using namespace zrtest;

namespace {

constexpr int kChangeDelayMs = 100;

/// A tile that counts its paints.
class CountingTile : public CPlayWidget
{
public:
    explicit CountingTile(QWidget* parent)
        : CPlayWidget(parent, false)
    {
    }
    int paints = 0;

protected:
    void paintGL() override
    {
        ++paints;
        CPlayWidget::paintGL();
    }
};

/// Somebody whose video runs.
std::unique_ptr<tagPersonInfo> makePerson(const QString& id)
{
    auto person = std::make_unique<tagPersonInfo>();
    person->userID = id;
    person->bPreview = true;
    person->iStreamStatus = kStreamRunning;
    return person;
}

} // namespace

#define COMPARE_COLOR(actual, expected)                                                            \
    do {                                                                                           \
        const QColor a = (actual);                                                                 \
        const QColor e = (expected);                                                               \
        QVERIFY2(isNear(a, e), qPrintable(a.name() + " instead of " + e.name()));                  \
    } while (false)

/// The middle of the tile that showTile() shows.
#define COMPARE_MIDDLE(yuv) COMPARE_COLOR(grab().pixelColor(80, 45), toRgb(yuv))

class TestTile : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_person = makePerson(QStringLiteral("alice"));
        m_window = std::make_unique<QWidget>();
        m_window->resize(800, 600);
        m_tile = new CountingTile(m_window.get());
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }
    void cleanup()
    {
        m_window.reset();
        m_person.reset();
        QZRScreenConfig::destroyInstance();
    }

    // --- What it paints -----------------------------------------------------------------------

    void everyColourIsInItsPlace()
    {
        showTile({240, 240});
        const Yuv colors[] = {kBlack, kWhite,          kGrey,         kRed,           kGreen,
                              kBlue,  {150, 110, 150}, {0, 128, 128}, {255, 128, 128}};
        play(
            Picture(240, 240, [&](unsigned x, unsigned y) { return colors[y / 80 * 3 + x / 80]; }));
        const QImage image = grab();
        for (int i = 0; i < 9; ++i)
            COMPARE_COLOR(image.pixelColor(40 + i % 3 * 80, 40 + i / 3 * 80), toRgb(colors[i]));
    }

    /// A chroma plane that began at a wrong offset, a missing last odd row or the rest of a larger
    /// picture would show at the edges.
    void everySizeIsDrawnToItsEdges()
    {
        showTile({480, 300});
        for (const auto& [width, height] :
             {std::pair(641U, 361U), {640, 400}, {7, 5}, {174, 100}, {8, 1}, {16, 3}, {9, 400}}) {
            const unsigned middle = height / 2;
            play(Picture(width, height,
                         [middle](unsigned, unsigned y) { return y < middle ? kRed : kBlue; }));
            QRect view(100, 100, 480, 300);
            m_tile->MapVideoRect(view); // right and bottom lie one pixel outside
            view = QRect(view.topLeft() - QPoint(100, 100), view.bottomRight() - QPoint(101, 101));
            const QImage image = grab();
            if (width < 8) { // no aligned column is left
                COMPARE_COLOR(image.pixelColor(view.center()), Qt::black);
                continue;
            }
            for (const QPoint& top : {view.topLeft(), view.topRight()})
                COMPARE_COLOR(image.pixelColor(top), toRgb(height == 1 ? kBlue : kRed));
            for (const QPoint& bottom : {view.bottomLeft(), view.bottomRight()})
                COMPARE_COLOR(image.pixelColor(bottom), toRgb(kBlue));
            // The overlay's bars cover the black that is left, and nothing of the picture.
            const QPainterPath bars = m_tile->playInfo()->barsPath();
            const QPoint out =
                view.left() > 0 ? view.topLeft() - QPoint(1, 0) : view.bottomRight() + QPoint(0, 1);
            if (image.rect().contains(out))
                COMPARE_COLOR(image.pixelColor(out), Qt::black);
            QCOMPARE(bars.contains(out + QPointF(0.5, 0.5)), image.rect().contains(out));
            QCOMPARE(bars.isEmpty(), view.size() == image.size());
            for (const QPoint& corner : {view.topLeft(), view.bottomRight()})
                QVERIFY(!bars.contains(corner + QPointF(0.5, 0.5)));
        }
    }

    /// Another window has a context of its own, with textures of its own.
    void keepsItsPictureInAnotherWindow()
    {
        showRed();
        QWidget other;
        other.resize(300, 300);
        other.show();
        QVERIFY(QTest::qWaitForWindowExposed(&other));
        for (QWidget* window : {&other, m_window.get()}) {
            m_tile->setParent(window);
            m_tile->show();
            waitForPaints();
            COMPARE_MIDDLE(kRed);
        }
    }

    // --- When it paints -----------------------------------------------------------------------

    void aPaintWithoutANewPictureUploadsNothing()
    {
        showRed();
        const quint64 uploads = m_tile->uploadCount();
        const int paints = m_tile->paints;
        for (int i = 0; i < 5; ++i) {
            m_tile->repaint();
            m_tile->resize(160 + i, 90);
        }
        waitForPaints();
        QVERIFY(m_tile->paints > paints);
        QCOMPARE(m_tile->uploadCount(), uploads);
        play(kGreen);
        QCOMPARE(m_tile->uploadCount(), uploads + 1);
    }

    void aBurstFromAnotherThreadIsOneRepaint()
    {
        showRed();
        QTest::qWait(100); // the pacer is quiet again
        const int paints = m_tile->paints;
        const EventWatch overlay({m_tile->playInfo()}, {QEvent::Paint});
        const QSignalSpy renders(m_tile, &CPlayWidget::notifyRender);
        const Picture red(160, 90, kRed);
        const Picture last(160, 90, kGreen);
        std::thread([&] {
            for (int i = 0; i < 100; ++i)
                m_tile->PlayFrame(red.frame());
            m_tile->PlayFrame(last.frame());
        }).join();
        QCOMPARE(renders.count(), 1);
        waitForPaints();
        QCOMPARE(m_tile->paints, paints + 1);
        COMPARE_MIDDLE(kGreen);
        // None is lost after the burst.
        play(kBlue);
        QCOMPARE(overlay.count, 0); // it lies above the picture, and none of its state has changed
        COMPARE_MIDDLE(kBlue);
    }

    void hiddenTileTakesNothing()
    {
        showRed();
        m_tile->HidePlay();
        const quint64 uploads = m_tile->uploadCount();
        const int paints = m_tile->paints;
        const QSignalSpy renders(m_tile, &CPlayWidget::notifyRender);
        play(kGreen);
        QCOMPARE(renders.count(), 0);
        m_tile->onRender(true);
        waitForPaints();
        QCOMPARE(m_tile->paints, paints);
        QCOMPARE(m_tile->uploadCount(), uploads);
        m_tile->ShowPlay();
        waitForPaints();
        COMPARE_MIDDLE(kRed);
    }

    void pictureDuringTheChangeDelayIsShownAfterIt()
    {
        m_tile->setGeometry(0, 0, 160, 90);
        m_tile->SetPersonInfo(m_person.get(), false);
        m_tile->StartShow();
        QTest::qWait(20); // shown, painted
        const int paints = m_tile->paints;
        m_tile->PlayFrame(Picture(160, 90, kRed).frame());
        m_tile->onRender(false);
        QCOMPARE(m_tile->paints, paints);
        QVERIFY(!m_tile->playInfo()->isPictureVisible());
        QTRY_VERIFY(m_tile->paints > paints);
        QVERIFY(m_tile->playInfo()->isPictureVisible());
        COMPARE_MIDDLE(kRed);
        // The same when another participant is bound while the tile is showing.
        const auto other = makePerson(QStringLiteral("bob"));
        m_tile->SetPersonInfo(other.get(), false);
        QVERIFY(m_tile->IsBufferBlank()); // nothing of the former one is left
        play(kGreen);
        QVERIFY(!m_tile->playInfo()->isPictureVisible());
        QTRY_VERIFY(m_tile->playInfo()->isPictureVisible());
        COMPARE_MIDDLE(kGreen);
        m_tile->SetPersonInfo(nullptr, false);
    }

    void badNetworkFreezesThePicture()
    {
        showRed();
        m_tile->UpdateNetStatus(2, true, 1);
        const int paints = m_tile->paints;
        play(kGreen);
        QCOMPARE(m_tile->paints, paints);
        m_tile->UpdateNetStatus(2, false, 5);
        waitForPaints();
        QCOMPARE(m_tile->paints, paints + 1);
        COMPARE_MIDDLE(kGreen);
    }

    void pausedShareIsNotDrawn()
    {
        m_person->userID = QStringLiteral("sharescreen_7");
        showRed();
        for (const bool paused : {true, false}) {
            hub().settings.pauseShare = paused;
            emit hub().sigRefreshPlayDlg();
            waitForPaints();
            COMPARE_MIDDLE(paused ? kBlack : kRed);
        }
    }

    void localVideoIsConfirmedAfter69Pictures()
    {
        m_person->bLocalVideo = true;
        showTile();
        const Picture picture(160, 90, kRed);
        // A burst that costs one render counts with all its pictures.
        std::thread([&] {
            for (int i = 0; i < 68; ++i)
                m_tile->PlayFrame(picture.frame());
        }).join();
        QCoreApplication::processEvents();
        QVERIFY(!m_person->bLocalVideoConfirmed);
        m_tile->PlayFrame(picture.frame());
        QVERIFY(m_person->bLocalVideoConfirmed);
    }

    // --- The mouse ----------------------------------------------------------------------------

    void pressesBecomeClicks()
    {
        showTile();
        const QSignalSpy single(m_tile, &CPlayWidget::mouseLClick);
        const QSignalSpy twice(m_tile, &CPlayWidget::mouseLDClick);
        // Through the overlay, which covers the tile, as a real pointer comes.
        QWidget* const target = m_window->childAt(80, 45);
        QCOMPARE(target, static_cast<QWidget*>(m_tile->playInfo()));
        const QPoint middle(80, 45);
        drag(*target, middle, middle + QPoint(-5, 5));
        QTest::qWait(250); // it could become a double click
        QCOMPARE(single.count(), 0);
        QTest::qWait(150);
        QCOMPARE(single.count(), 1);
        for (const QPoint& move : {QPoint(6, 0), QPoint(0, -6)}) {
            drag(*target, middle, middle + move);
            QTest::qWait(400);
        }
        // A click that waits goes with the participant it was on, and with the tile.
        const auto other = makePerson(QStringLiteral("bob"));
        QTest::mouseClick(target, Qt::LeftButton);
        m_tile->SetPersonInfo(other.get(), false);
        QTest::qWait(400);
        QTest::mouseClick(target, Qt::LeftButton);
        m_tile->HidePlay();
        for (const QTimer* timer : m_tile->findChildren<QTimer*>())
            QVERIFY(!timer->isActive());
        m_tile->SetPersonInfo(m_person.get(), false);
        m_tile->ShowPlay();
        QTest::mouseClick(target, Qt::RightButton);
        QTest::mouseDClick(target, Qt::MiddleButton);
        QTest::qWait(400);
        QCOMPARE(twice.count(), 0);
        QTest::mouseClick(target, Qt::LeftButton);
        QTest::mouseDClick(target, Qt::LeftButton);
        QTest::qWait(400);
        QCOMPARE(twice.count(), 1);
        QCOMPARE(single.count(), 1);
    }

private:
    /// Shows the tile with a participant, and lets the change delay pass.
    void showTile(const QSize& size = {160, 90})
    {
        m_tile->setGeometry(QRect(QPoint(0, 0), size));
        m_tile->SetPersonInfo(m_person.get(), false);
        m_tile->StartShow();
        QTest::qWait(kChangeDelayMs + 50);
    }
    void play(const Picture& picture)
    {
        m_tile->PlayFrame(picture.frame());
        waitForPaints();
    }
    /// Plays a picture as large as the tile that showTile() shows.
    void play(const Yuv& color) { play(Picture(160, 90, color)); }
    void showRed()
    {
        showTile();
        play(kRed);
    }
    QImage grab() const { return m_tile->grabFramebuffer(); }
    void waitForPaints() { QTest::qWait(60); }

    std::unique_ptr<tagPersonInfo> m_person;
    std::unique_ptr<QWidget> m_window;
    CountingTile* m_tile = nullptr; ///< child of the window
};

ZR_WIDGET_TEST_MAIN(TestTile)
#include "tst_cplaywidget.moc"
