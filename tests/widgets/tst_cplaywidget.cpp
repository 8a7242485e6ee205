// The tile: what it paints, when it paints, and what a press becomes.
#include "picture.h"
#include "testsupport.h"

#include "cplaywidget.h"
#include "qdlgplayinfo.h"

#include <QSignalSpy>

#include <thread>

using zrtest::drag;

namespace {

constexpr int kChangeDelayMs = 100;
constexpr Yuv kBlack{16, 128, 128};
constexpr QPoint kMiddle(80, 45); ///< of the tile that showTile() shows

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

bool isColour(const QImage& image, const QPoint& at, const Yuv& expected)
{
    const QColor c = image.pixelColor(at);
    const bool ok = isNear({c.red(), c.green(), c.blue()}, expected.rgb(), 2);
    if (!ok)
        qInfo() << at << "is" << c.name();
    return ok;
}

} // namespace

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
        const Yuv colours[] = {kBlack, {235, 128, 128}, {126, 128, 128}, kRed,           kGreen,
                               kBlue,  {150, 110, 150}, {0, 128, 128},   {255, 128, 128}};
        play({240, 240, [&](uint32_t x, uint32_t y) { return colours[y / 80 * 3 + x / 80]; }});
        const QImage image = grab();
        for (int i = 0; i < 9; ++i)
            QVERIFY(isColour(image, {40 + i % 3 * 80, 40 + i / 3 * 80}, colours[i]));
    }

    /// A chroma plane that began at a wrong offset, a missing last odd row or the rest of a larger
    /// picture would show at the edges.
    void everySizeIsDrawnToItsEdges()
    {
        showTile({480, 300});
        for (const auto& [width, height] :
             {std::pair(641U, 361U), {640, 400}, {7, 5}, {174, 100}, {8, 1}, {16, 3}, {9, 400}}) {
            const uint32_t middle = height / 2;
            const auto half = [=](uint32_t, uint32_t y) { return y < middle ? kRed : kBlue; };
            play({width, height, half});
            const QImage image = grab();
            QRect view = image.rect();
            m_tile->MapVideoRect(view); // right and bottom lie one pixel outside
            view.adjust(0, 0, -1, -1);
            if (width < 8) { // no aligned column is left
                QVERIFY(isColour(image, view.center(), kBlack));
                continue;
            }
            const Yuv top = height == 1 ? kBlue : kRed;
            QVERIFY(isColour(image, view.topLeft(), top) && isColour(image, view.topRight(), top));
            QVERIFY(isColour(image, view.bottomLeft(), kBlue)
                    && isColour(image, view.bottomRight(), kBlue));
            // The overlay's bars cover the black that is left, and nothing of the picture.
            const auto isBar = [bars = m_tile->playInfo()->barsPath()](const QPoint& at) {
                return bars.contains(at + QPointF(0.5, 0.5));
            };
            const QPoint out =
                view.left() > 0 ? view.topLeft() - QPoint(1, 0) : view.bottomRight() + QPoint(0, 1);
            const bool barred = image.rect().contains(out);
            QVERIFY(!barred || isColour(image, out, kBlack));
            QVERIFY(isBar(out) == barred && !isBar(view.topLeft()) && !isBar(view.bottomRight()));
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
            QVERIFY(shows(kRed));
        }
    }

    // --- When it paints -----------------------------------------------------------------------

    void aPaintWithoutANewPictureUploadsNothing()
    {
        showRed();
        for (int i = 0; i < 5; ++i) {
            m_tile->repaint();
            m_tile->resize(160 + i, 90);
        }
        waitForPaints();
        QVERIFY(paints() > 0 && uploads() == 0);
        play(kGreen);
        QCOMPARE(uploads(), 1);
    }

    void aBurstFromAnotherThreadIsOneRepaint()
    {
        showRed();
        QTest::qWait(100); // the pacer is quiet again
        const zrtest::EventWatch overlay({m_tile->playInfo()}, {QEvent::Paint});
        const QSignalSpy renders(m_tile, &CPlayWidget::notifyRender);
        const Picture red(160, 90, kRed);
        const Picture last(160, 90, kGreen);
        std::thread([&] {
            for (int i = 0; i < 100; ++i)
                m_tile->PlayFrame(red.frame);
            m_tile->PlayFrame(last.frame);
        }).join();
        QCOMPARE(renders.count(), 1);
        waitForPaints();
        QVERIFY(paints() == 1 && shows(kGreen));
        play(kBlue); // none is lost after the burst
        QVERIFY(shows(kBlue));
        QCOMPARE(overlay.count, 0); // it lies above the picture, and none of its state has changed
    }

    void hiddenTileTakesNothing()
    {
        showRed();
        m_tile->HidePlay();
        (void)paints();
        const QSignalSpy renders(m_tile, &CPlayWidget::notifyRender);
        play(kGreen);
        m_tile->onRender(true);
        waitForPaints();
        QVERIFY(renders.isEmpty() && paints() == 0 && uploads() == 0);
        m_tile->ShowPlay();
        waitForPaints();
        QVERIFY(shows(kRed));
    }

    void pictureDuringTheChangeDelayIsShownAfterIt()
    {
        const auto other = makePerson(QStringLiteral("bob"));
        const auto isVisible = [this] { return m_tile->playInfo()->isPictureVisible(); };
        m_tile->setGeometry(0, 0, 160, 90);
        m_tile->SetPersonInfo(m_person.get(), false);
        m_tile->StartShow();
        QTest::qWait(20); // shown, painted
        (void)paints();
        m_tile->PlayFrame(Picture(160, 90, kRed).frame);
        m_tile->onRender(false);
        QVERIFY(paints() == 0 && !isVisible());
        QTRY_VERIFY(paints() > 0);
        QVERIFY(isVisible() && shows(kRed));
        // The same when another participant is bound while the tile is showing.
        m_tile->SetPersonInfo(other.get(), false);
        QVERIFY(m_tile->IsBufferBlank()); // nothing of the former one is left
        play(kGreen);
        QVERIFY(!isVisible());
        QTRY_VERIFY(isVisible());
        QVERIFY(shows(kGreen));
        m_tile->SetPersonInfo(nullptr, false);
    }

    void badNetworkFreezesThePicture()
    {
        showRed();
        m_tile->UpdateNetStatus(2, true, 1);
        (void)paints();
        play(kGreen);
        QCOMPARE(paints(), 0);
        m_tile->UpdateNetStatus(2, false, 5);
        waitForPaints();
        QVERIFY(paints() == 1 && shows(kGreen));
    }

    void localVideoIsConfirmedAfter69Pictures()
    {
        m_person->bLocalVideo = true;
        showTile();
        const Picture picture(160, 90, kRed);
        // A burst that costs one render counts with all its pictures.
        std::thread([&] {
            for (int i = 0; i < 68; ++i)
                m_tile->PlayFrame(picture.frame);
        }).join();
        QCoreApplication::processEvents();
        QVERIFY(!m_person->bLocalVideoConfirmed);
        m_tile->PlayFrame(picture.frame);
        QVERIFY(m_person->bLocalVideoConfirmed);
    }

    // --- The mouse ----------------------------------------------------------------------------

    void pressesBecomeClicks()
    {
        showTile();
        const QSignalSpy single(m_tile, &CPlayWidget::mouseLClick);
        const QSignalSpy twice(m_tile, &CPlayWidget::mouseLDClick);
        // Through the overlay, which covers the tile, as a real pointer comes.
        QWidget* const target = m_window->childAt(kMiddle);
        QCOMPARE(target, static_cast<QWidget*>(m_tile->playInfo()));
        drag(*target, kMiddle, kMiddle + QPoint(-5, 5));
        QTest::qWait(250); // it could become a double click
        QCOMPARE(single.count(), 0);
        QTest::qWait(150);
        QCOMPARE(single.count(), 1);
        const auto other = makePerson(QStringLiteral("bob"));
        const std::function<void()> noClicks[] = {
            [&] { drag(*target, kMiddle, kMiddle + QPoint(6, 0)); },
            [&] { drag(*target, kMiddle, kMiddle + QPoint(0, -6)); },
            // A click that waits goes with the participant it was on, and with the tile.
            [&] {
                QTest::mouseClick(target, Qt::LeftButton);
                m_tile->SetPersonInfo(other.get(), false);
            },
            [&] {
                QTest::mouseClick(target, Qt::LeftButton);
                m_tile->HidePlay();
                for (const QTimer* timer : m_tile->findChildren<QTimer*>())
                    QVERIFY(!timer->isActive());
                m_tile->SetPersonInfo(m_person.get(), false);
                m_tile->ShowPlay();
            },
            [&] { QTest::mouseClick(target, Qt::RightButton); },
            [&] { QTest::mouseDClick(target, Qt::MiddleButton); },
        };
        for (const auto& act : noClicks) {
            act();
            QTest::qWait(400);
        }
        QVERIFY(single.count() == 1 && twice.isEmpty());
        QTest::mouseClick(target, Qt::LeftButton);
        QTest::mouseDClick(target, Qt::LeftButton);
        QTest::qWait(400);
        QVERIFY(single.count() == 1 && twice.count() == 1);
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
        m_tile->PlayFrame(picture.frame);
        waitForPaints();
    }
    /// Plays a picture as large as the tile that showTile() shows.
    void play(const Yuv& colour) { play(Picture(160, 90, colour)); }
    void showRed()
    {
        showTile();
        play(kRed);
        (void)paints();
        (void)uploads();
    }
    QImage grab() const { return m_tile->grabFramebuffer(); }
    bool shows(const Yuv& colour) const { return isColour(grab(), kMiddle, colour); }
    void waitForPaints() { QTest::qWait(60); }
    // Since the last question.
    int paints() { return std::exchange(m_tile->paints, 0); }
    int uploads()
    {
        const quint64 before = std::exchange(m_uploads, m_tile->uploadCount());
        return int(m_uploads - before);
    }

    std::unique_ptr<tagPersonInfo> m_person;
    std::unique_ptr<QWidget> m_window;
    CountingTile* m_tile = nullptr; ///< child of the window
    quint64 m_uploads = 0;
};

ZR_WIDGET_TEST_MAIN(TestTile)
#include "tst_cplaywidget.moc"
