// The tile: what it paints, when it paints, and what a press becomes.
#include "testsupport.h"

#include "cplaywidget.h"
#include "pixels.h"
#include "qdlgplayinfo.h"
#include "qzrscreenconfig.h"

#include <QSignalSpy>
#include <QtTest>

#include <memory>
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

QZRScreenConfig& hub()
{
    return *QZRScreenConfig::getInstance();
}

} // namespace

class TestTile : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void colorsFollowBt709();
    void pictureIsUpright();
    void barsAreBlack();
    void everySizeIsDrawnToItsEdges();
    void refusedPicturesChangeNothing();
    void planesAndBuffersAreCopiedWithinBounds();
    void blackFrameIsBlackForEveryWidth();

    void movesToAnotherWindow();
    void aPaintWithoutANewPictureUploadsNothing();
    void aBurstFromAnotherThreadIsOneRepaint();
    void hiddenTileTakesNothing();
    void pictureDuringTheChangeDelayIsShownAfterIt();
    void badNetworkFreezesThePicture();
    void pausedShareIsNotDrawn();
    void localVideoIsConfirmedAfter69Pictures();
    void bindingTellsWhetherThePersonChanged();
    void pressesBecomeClicks();

private:
    /// Shows the tile with a participant, and lets the change delay pass.
    void showTile(const QSize& size = {160, 90});
    void play(const Picture& picture);
    /// Plays a picture as large as the tile that showTile() shows.
    void play(const Yuv& color) { play(Picture(160, 90, color)); }
    void showRed()
    {
        showTile();
        play(kRed);
    }
    QColor pixel(int x, int y) const { return m_tile->grabFramebuffer().pixelColor(x, y); }
    void waitForPaints() { QTest::qWait(60); }

    std::unique_ptr<tagPersonInfo> m_person;
    std::unique_ptr<QWidget> m_window;
    CountingTile* m_tile = nullptr; ///< child of the window
};

#define COMPARE_COLOR(actual, expected)                                                            \
    do {                                                                                           \
        const QColor a = (actual);                                                                 \
        const QColor e = (expected);                                                               \
        QVERIFY2(isNear(a, e), qPrintable(a.name() + " instead of " + e.name()));                  \
    } while (false)

/// The middle of the tile that showTile() shows.
#define COMPARE_MIDDLE(yuv) COMPARE_COLOR(pixel(80, 45), toRgb(yuv))

void TestTile::init()
{
    m_person = makePerson(QStringLiteral("alice"));
    m_window = std::make_unique<QWidget>();
    m_window->resize(800, 600);
    m_tile = new CountingTile(m_window.get());
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void TestTile::cleanup()
{
    m_window.reset();
    m_person.reset();
    QZRScreenConfig::destroyInstance();
}

void TestTile::showTile(const QSize& size)
{
    m_tile->setGeometry(QRect(QPoint(0, 0), size));
    m_tile->SetPersonInfo(m_person.get(), false);
    m_tile->StartShow();
    QTest::qWait(kChangeDelayMs + 50);
}

void TestTile::play(const Picture& picture)
{
    m_tile->PlayFrame(picture.frame());
    waitForPaints();
}

void TestTile::colorsFollowBt709()
{
    showTile();
    constexpr Yuv kSkin{150, 110, 150};
    constexpr Yuv kBelowBlack{0, 128, 128};
    constexpr Yuv kAboveWhite{255, 128, 128};
    for (const Yuv& color :
         {kBlack, kWhite, kGrey, kRed, kGreen, kBlue, kSkin, kBelowBlack, kAboveWhite}) {
        play(color);
        const QImage image = m_tile->grabFramebuffer();
        for (const QPoint& point : {QPoint(0, 0), QPoint(80, 45), QPoint(159, 89)})
            COMPARE_COLOR(image.pixelColor(point), toRgb(color));
    }
}

void TestTile::pictureIsUpright()
{
    showTile({160, 160});
    const Yuv quarters[] = {kRed, kGreen, kBlue, kWhite};
    play(Picture(160, 160, [&](unsigned x, unsigned y) { return quarters[y / 80 * 2 + x / 80]; }));
    for (int i = 0; i < 4; ++i)
        COMPARE_COLOR(pixel(40 + i % 2 * 80, 40 + i / 2 * 80), toRgb(quarters[i]));
}

void TestTile::barsAreBlack()
{
    showTile({400, 400});
    play(Picture(1920, 1080, kWhite));
    const QImage image = m_tile->grabFramebuffer();
    COMPARE_COLOR(image.pixelColor(200, 86), Qt::black);
    COMPARE_COLOR(image.pixelColor(200, 87), Qt::white);
    COMPARE_COLOR(image.pixelColor(0, 311), Qt::white);
    COMPARE_COLOR(image.pixelColor(399, 312), Qt::black);
    // The overlay covers the very same rows.
    QVERIFY(m_tile->playInfo()->barsPath().contains(QPointF(200, 86.5)));
    QVERIFY(!m_tile->playInfo()->barsPath().contains(QPointF(200, 87.5)));

    QRect onScreen(QPoint(1000, 500), QSize(400, 400));
    m_tile->MapVideoRect(onScreen); // right and bottom lie one pixel outside
    QCOMPARE(onScreen, QRect(QPoint(1000, 587), QPoint(1400, 812)));
}

void TestTile::everySizeIsDrawnToItsEdges()
{
    showTile({480, 300});
    const std::pair<unsigned, unsigned> sizes[] = {{641, 361}, {642, 480}, {7, 5},  {174, 100},
                                                   {8, 1},     {1, 1},     {16, 3}, {9, 400}};
    for (const auto& [width, height] : sizes) {
        const unsigned middle = height / 2;
        play(Picture(width, height,
                     [middle](unsigned, unsigned y) { return y < middle ? kRed : kBlue; }));
        QRect view;
        m_tile->MapVideoRect(view);
        view = QRect(view.topLeft(), QPoint(view.right() - 1, view.bottom() - 1));
        const QImage image = m_tile->grabFramebuffer();
        if (width < 8) { // no aligned column is left
            COMPARE_COLOR(image.pixelColor(view.center()), Qt::black);
            continue;
        }
        // A chroma plane that began at a wrong offset, a missing last odd row or the rest of a
        // larger picture would show at the edges.
        const QColor top = toRgb(height == 1 ? kBlue : kRed);
        COMPARE_COLOR(image.pixelColor(view.topLeft()), top);
        COMPARE_COLOR(image.pixelColor(view.topRight()), top);
        COMPARE_COLOR(image.pixelColor(view.bottomLeft()), toRgb(kBlue));
        COMPARE_COLOR(image.pixelColor(view.bottomRight()), toRgb(kBlue));
    }
}

void TestTile::refusedPicturesChangeNothing()
{
    showRed();
    const quint64 uploads = m_tile->uploadCount();
    VantrelRTCVideoFrameQT bad{};
    bad.width = 160;
    bad.height = 90;
    m_tile->PlayFrame(bad); // no data
    const Picture small(16, 16, kBlue);
    for (const auto& [w, h] : {std::pair(0U, 16U), {16U, 0U}, {16385U, 1U}, {1U, 0xFFFFFFFFU}}) {
        VantrelRTCVideoFrameQT frame = small.frame();
        frame.width = w;
        frame.height = h;
        m_tile->PlayFrame(frame);
        m_tile->SetVideoSize(w, h);
    }
    m_tile->PlayBuffer(nullptr, 10);
    m_tile->PlayBuffer(small.bytes().data(), -1);
    m_tile->PlayPlanes(nullptr, nullptr);
    waitForPaints();
    QCOMPARE(m_tile->uploadCount(), uploads);
    COMPARE_MIDDLE(kRed);
}

void TestTile::planesAndBuffersAreCopiedWithinBounds()
{
    showTile();
    std::vector<uchar> bytes(Picture(160, 91, kRed).bytes());
    bytes.resize(bytes.size() + 1000, 0);
    // Without a size there is no block to copy to.
    m_tile->PlayBuffer(bytes.data(), static_cast<int>(bytes.size()));
    QVERIFY(m_tile->IsBufferBlank());
    m_tile->SetVideoSize(160, 91);
    m_tile->PlayBuffer(bytes.data(), static_cast<int>(bytes.size()));
    waitForPaints();
    COMPARE_MIDDLE(kRed);

    // Rows with a gap; the chroma planes have the 45 rows that half of 91 is, rounded down.
    std::vector<uchar> y(200 * 91, static_cast<uchar>(kGreen.y));
    std::vector<uchar> u(100 * 45, static_cast<uchar>(kGreen.u));
    std::vector<uchar> v(100 * 45, static_cast<uchar>(kGreen.v));
    uchar* planes[] = {y.data(), u.data(), v.data()};
    int strides[] = {200, 100, 100};
    m_tile->PlayPlanes(planes, strides);
    waitForPaints();
    for (const int row : {0, 45, 89})
        COMPARE_COLOR(pixel(80, row), toRgb(kGreen));
}

void TestTile::blackFrameIsBlackForEveryWidth()
{
    showTile({200, 120});
    for (const unsigned w : {160U, 174U}) {
        play(Picture(w, 99, kWhite));
        QVERIFY(!m_tile->IsBufferBlank());
        m_tile->ResetBlackFrame();
        waitForPaints();
        QVERIFY(m_tile->IsBufferBlank());
        const QImage image = m_tile->grabFramebuffer();
        for (int y = 0; y < image.height(); y += 7)
            COMPARE_COLOR(image.pixelColor(100, y), Qt::black);
    }
}

void TestTile::movesToAnotherWindow()
{
    showRed();
    QWidget other;
    other.resize(300, 300);
    other.show();
    QVERIFY(QTest::qWaitForWindowExposed(&other));
    // There and back: each window has a context of its own, and the textures go with it.
    for (QWidget* window : {&other, m_window.get()}) {
        m_tile->setParent(window);
        m_tile->show();
        waitForPaints();
        COMPARE_MIDDLE(kRed);
        play(kGreen);
        COMPARE_MIDDLE(kGreen);
        play(kRed);
    }
}

void TestTile::aPaintWithoutANewPictureUploadsNothing()
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

void TestTile::aBurstFromAnotherThreadIsOneRepaint()
{
    showRed();
    QTest::qWait(100); // the pacer is quiet again
    const int paints = m_tile->paints;
    const EventWatch overlay(m_tile->playInfo(), {QEvent::Paint});
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

void TestTile::hiddenTileTakesNothing()
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

void TestTile::pictureDuringTheChangeDelayIsShownAfterIt()
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
    m_tile->PlayFrame(Picture(160, 90, kGreen).frame());
    QVERIFY(!m_tile->playInfo()->isPictureVisible());
    QTRY_VERIFY(m_tile->playInfo()->isPictureVisible());
    COMPARE_MIDDLE(kGreen);
    m_tile->SetPersonInfo(nullptr, false);
}

void TestTile::badNetworkFreezesThePicture()
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

void TestTile::pausedShareIsNotDrawn()
{
    m_person->userID = QStringLiteral("sharescreen_7");
    showRed();
    hub().settings.pauseShare = true;
    emit hub().sigRefreshPlayDlg();
    waitForPaints();
    COMPARE_MIDDLE(kBlack);
    hub().settings.pauseShare = false;
    emit hub().sigRefreshPlayDlg();
    waitForPaints();
    COMPARE_MIDDLE(kRed);
}

void TestTile::localVideoIsConfirmedAfter69Pictures()
{
    m_person->bLocalVideo = true;
    showTile();
    const Picture picture(160, 90, kRed);
    for (int i = 0; i < 34; ++i)
        m_tile->PlayFrame(picture.frame());
    // A burst that costs one render counts with all its pictures.
    std::thread([&] {
        for (int i = 0; i < 34; ++i)
            m_tile->PlayFrame(picture.frame());
    }).join();
    QCoreApplication::processEvents();
    QVERIFY(!m_person->bLocalVideoConfirmed);
    m_tile->PlayFrame(picture.frame());
    QVERIFY(m_person->bLocalVideoConfirmed);
}

void TestTile::bindingTellsWhetherThePersonChanged()
{
    QCOMPARE(m_tile->geometry(), QRect(0, 0, 1, 1));
    QVERIFY(m_tile->isHidden() && m_tile->IsBufferBlank() && !m_tile->GetPersonInfo());
    QVERIFY(m_tile->SetPersonInfo(m_person.get(), false));
    QVERIFY(!m_tile->SetPersonInfo(m_person.get(), false));
    QCOMPARE(m_tile->GetPersonInfo(), m_person.get());
    m_tile->StartShow();
    QVERIFY(!m_tile->SetPersonInfo(nullptr, false));
    QVERIFY(!m_tile->GetPersonInfo());
    // The record goes; the tile lives on, is painted, is shown again and takes pictures.
    m_person.reset();
    m_tile->setGeometry(0, 0, 160, 90);
    m_tile->UpdateNetStatus(2, true, 0);
    m_tile->UpdateNetStatus(2, false, 0);
    m_tile->StopShow();
    m_tile->StartShow();
    play(kRed);
    QTest::qWait(kChangeDelayMs);
    m_window->grab();
}

void TestTile::pressesBecomeClicks()
{
    showTile();
    const QSignalSpy single(m_tile, &CPlayWidget::mouseLClick);
    const QSignalSpy twice(m_tile, &CPlayWidget::mouseLDClick);
    // Through the overlay, which covers the tile, as a real pointer comes.
    QWidget* const target = m_window->childAt(80, 45);
    QCOMPARE(target, static_cast<QWidget*>(m_tile->playInfo()));
    const QPoint middle(80, 45);
    int clicks = 0;
    for (const QPoint& move : {QPoint(), QPoint(-5, 5)}) {
        pressAndMove(target, middle, middle + move);
        QTest::qWait(250); // it could become a double click
        QCOMPARE(single.count(), clicks);
        QTest::qWait(150);
        QCOMPARE(single.count(), ++clicks);
    }
    for (const QPoint& move : {QPoint(6, 0), QPoint(0, -6)}) {
        pressAndMove(target, middle, middle + move);
        QTest::qWait(400);
        QCOMPARE(single.count(), clicks);
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
    QTest::qWait(400);
    QCOMPARE(single.count(), clicks);
    QTest::mouseClick(target, Qt::RightButton);
    QTest::mouseDClick(target, Qt::MiddleButton);
    QTest::qWait(400);
    QCOMPARE(twice.count(), 0);
    QTest::mouseClick(target, Qt::LeftButton);
    QTest::mouseDClick(target, Qt::LeftButton);
    QTest::qWait(400);
    QCOMPARE(twice.count(), 1);
    QCOMPARE(single.count(), clicks);
}

ZR_WIDGET_TEST_MAIN(TestTile)
#include "tst_cplaywidget.moc"
