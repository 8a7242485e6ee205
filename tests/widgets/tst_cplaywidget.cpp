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

using zrtest::Picture;
using zrtest::Yuv;

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

QZRScreenConfig& hub()
{
    return *QZRScreenConfig::getInstance();
}

QString describe(const QColor& color)
{
    return color.name();
}

} // namespace

class TestTile : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void startsHiddenAndBlank();
    void colorsFollowBt709_data();
    void colorsFollowBt709();
    void pictureIsUpright();
    void barsAreBlack();
    void everySizeIsDrawnToItsEdges_data();
    void everySizeIsDrawnToItsEdges();
    void smallerPictureAfterLargerLeavesNoRest();
    void refusedPicturesChangeNothing();
    void planesAndBuffersAreCopiedWithinBounds();
    void blackFrameIsBlackForEveryWidth();

    void movesToAnotherWindow();
    void aPaintWithoutANewPictureUploadsNothing();
    void aBurstFromAnotherThreadIsOneRepaint();
    void hiddenTileTakesNothing();
    void pictureDuringTheChangeDelayIsShownAfterIt();
    void streamThatRunsAgainIsUncovered();
    void badNetworkFreezesThePicture();
    void blankTileShowsLoadingFor30Renders();
    void pausedShareIsNotDrawn();
    void localVideoIsConfirmedAfter69Pictures();
    void bindingTellsWhetherThePersonChanged();
    void showingIsReportedOnce();
    void videoRectMapsToTheScreen();

    void pressesBecomeClicks_data();
    void pressesBecomeClicks();
    void doubleClickIsNoClick();
    void otherButtonsAreNoClick();

private:
    void showTile(const QSize& size);
    void play(const Picture& picture);
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
        QVERIFY2(zrtest::isNear(a, e), qPrintable(describe(a) + " instead of " + describe(e)));    \
    } while (false)

void TestTile::init()
{
    m_person = std::make_unique<tagPersonInfo>();
    m_person->userID = QStringLiteral("alice");
    m_person->userName = QStringLiteral("Alice");
    m_person->bPreview = true;
    m_person->iStreamStatus = kStreamRunning;
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

/// Shows the tile with a participant, and lets the change delay pass.
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

void TestTile::startsHiddenAndBlank()
{
    QVERIFY(m_tile->isHidden());
    QVERIFY(!m_tile->isShowing());
    QCOMPARE(m_tile->geometry(), QRect(0, 0, 1, 1));
    QVERIFY(m_tile->IsBufferBlank());
    QVERIFY(!m_tile->GetPersonInfo());

    showTile({160, 90});
    COMPARE_COLOR(pixel(80, 45), Qt::black);
    QCOMPARE(m_tile->uploadCount(), quint64(0));
}

void TestTile::colorsFollowBt709_data()
{
    QTest::addColumn<int>("y");
    QTest::addColumn<int>("u");
    QTest::addColumn<int>("v");
    const auto row = [](const char* name, const Yuv& c) {
        QTest::newRow(name) << c.y << c.u << c.v;
    };
    row("black", zrtest::kBlack);
    row("white", zrtest::kWhite);
    row("grey", zrtest::kGrey);
    row("red", zrtest::kRed);
    row("green", zrtest::kGreen);
    row("blue", zrtest::kBlue);
    row("a skin tone", {150, 110, 150});
    row("below black", {0, 128, 128});
    row("above white", {255, 128, 128});
}

void TestTile::colorsFollowBt709()
{
    QFETCH(int, y);
    QFETCH(int, u);
    QFETCH(int, v);
    const Yuv color{y, u, v};
    showTile({160, 90});
    play(Picture(160, 90, color));
    const QImage image = m_tile->grabFramebuffer();
    for (const QPoint& point : {QPoint(0, 0), QPoint(80, 45), QPoint(159, 89)})
        COMPARE_COLOR(image.pixelColor(point), zrtest::toRgb(color));
}

void TestTile::pictureIsUpright()
{
    showTile({160, 160});
    play(Picture(160, 160, [](unsigned x, unsigned y) {
        if (y < 80)
            return x < 80 ? zrtest::kRed : zrtest::kGreen;
        return x < 80 ? zrtest::kBlue : zrtest::kWhite;
    }));
    const QImage image = m_tile->grabFramebuffer();
    COMPARE_COLOR(image.pixelColor(40, 40), zrtest::toRgb(zrtest::kRed));
    COMPARE_COLOR(image.pixelColor(120, 40), zrtest::toRgb(zrtest::kGreen));
    COMPARE_COLOR(image.pixelColor(40, 120), zrtest::toRgb(zrtest::kBlue));
    COMPARE_COLOR(image.pixelColor(120, 120), zrtest::toRgb(zrtest::kWhite));
}

void TestTile::barsAreBlack()
{
    showTile({400, 400});
    play(Picture(1920, 1080, zrtest::kWhite));
    const QImage image = m_tile->grabFramebuffer();
    COMPARE_COLOR(image.pixelColor(200, 86), Qt::black);
    COMPARE_COLOR(image.pixelColor(200, 87), Qt::white);
    COMPARE_COLOR(image.pixelColor(0, 311), Qt::white);
    COMPARE_COLOR(image.pixelColor(399, 312), Qt::black);
    // The overlay covers the very same rows.
    QVERIFY(m_tile->playInfo()->barsPath().contains(QPointF(200, 86.5)));
    QVERIFY(!m_tile->playInfo()->barsPath().contains(QPointF(200, 87.5)));
    QVERIFY(m_tile->playInfo()->barsPath().contains(QPointF(200, 312.5)));
}

void TestTile::everySizeIsDrawnToItsEdges_data()
{
    QTest::addColumn<int>("w");
    QTest::addColumn<int>("h");
    for (const QSize& s : {QSize(641, 361), QSize(642, 480), QSize(174, 100), QSize(7, 5),
                           QSize(1, 1), QSize(8, 1), QSize(16, 3), QSize(9, 400)})
        QTest::addRow("%dx%d", s.width(), s.height()) << s.width() << s.height();
}

void TestTile::everySizeIsDrawnToItsEdges()
{
    QFETCH(int, w);
    QFETCH(int, h);
    const auto width = static_cast<unsigned>(w);
    const auto height = static_cast<unsigned>(h);
    showTile({480, 300});
    play(Picture(width, height, [=](unsigned, unsigned y) {
        return y < height / 2 ? zrtest::kRed : zrtest::kBlue;
    }));
    QRect view;
    m_tile->MapVideoRect(view);
    view = QRect(view.topLeft(), QPoint(view.right() - 1, view.bottom() - 1));
    const QImage image = m_tile->grabFramebuffer();
    if (w < 8) { // no aligned column is left
        COMPARE_COLOR(image.pixelColor(view.center()), Qt::black);
        return;
    }
    // A chroma plane that began at a wrong offset, or whose last odd row were missing, would
    // show at the bottom.
    const QColor top = zrtest::toRgb(h == 1 ? zrtest::kBlue : zrtest::kRed);
    COMPARE_COLOR(image.pixelColor(view.topLeft()), top);
    COMPARE_COLOR(image.pixelColor(view.topRight()), top);
    COMPARE_COLOR(image.pixelColor(view.bottomLeft()), zrtest::toRgb(zrtest::kBlue));
    COMPARE_COLOR(image.pixelColor(view.bottomRight()), zrtest::toRgb(zrtest::kBlue));
}

void TestTile::smallerPictureAfterLargerLeavesNoRest()
{
    showTile({320, 180});
    play(Picture(640, 360, zrtest::kRed));
    play(Picture(320, 181, zrtest::kGreen));
    const QImage image = m_tile->grabFramebuffer();
    for (int y = 0; y < image.height(); y += 20) {
        for (int x = 1; x < image.width() - 1; x += 20)
            COMPARE_COLOR(image.pixelColor(x, y), zrtest::toRgb(zrtest::kGreen));
    }
}

void TestTile::refusedPicturesChangeNothing()
{
    showTile({160, 90});
    play(Picture(160, 90, zrtest::kRed));
    const quint64 uploads = m_tile->uploadCount();
    VantrelRTCVideoFrameQT bad{};
    bad.width = 160;
    bad.height = 90;
    m_tile->PlayFrame(bad); // no data
    const Picture small(16, 16, zrtest::kBlue);
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
    COMPARE_COLOR(pixel(80, 45), zrtest::toRgb(zrtest::kRed));
}

void TestTile::planesAndBuffersAreCopiedWithinBounds()
{
    showTile({160, 90});
    Picture first(160, 91, zrtest::kRed);
    std::vector<uchar> bytes(first.bytes());
    bytes.resize(bytes.size() + 1000, 0);
    // Without a size there is no block to copy to.
    m_tile->PlayBuffer(bytes.data(), static_cast<int>(bytes.size()));
    QVERIFY(m_tile->IsBufferBlank());
    m_tile->SetVideoSize(160, 91);
    m_tile->PlayBuffer(bytes.data(), static_cast<int>(bytes.size()));
    waitForPaints();
    COMPARE_COLOR(pixel(80, 45), zrtest::toRgb(zrtest::kRed));

    // Rows with a gap; the chroma planes have the 45 rows that half of 91 is, rounded down.
    std::vector<uchar> y(200 * 91, static_cast<uchar>(zrtest::kGreen.y));
    std::vector<uchar> u(100 * 45, static_cast<uchar>(zrtest::kGreen.u));
    std::vector<uchar> v(100 * 45, static_cast<uchar>(zrtest::kGreen.v));
    uchar* planes[] = {y.data(), u.data(), v.data()};
    int strides[] = {200, 100, 100};
    m_tile->PlayPlanes(planes, strides);
    waitForPaints();
    for (const int row : {0, 45, 89})
        COMPARE_COLOR(pixel(80, row), zrtest::toRgb(zrtest::kGreen));
}

void TestTile::blackFrameIsBlackForEveryWidth()
{
    for (const unsigned w : {160U, 174U}) {
        showTile({200, 120});
        play(Picture(w, 99, zrtest::kWhite));
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
    showTile({160, 90});
    play(Picture(160, 90, zrtest::kRed));
    QWidget other;
    other.resize(300, 300);
    other.show();
    QVERIFY(QTest::qWaitForWindowExposed(&other));
    // There and back: each window has a context of its own, and the textures go with it.
    for (QWidget* window : {&other, m_window.get()}) {
        m_tile->setParent(window);
        m_tile->show();
        waitForPaints();
        COMPARE_COLOR(pixel(80, 45), zrtest::toRgb(zrtest::kRed));
        play(Picture(160, 90, zrtest::kGreen));
        COMPARE_COLOR(pixel(80, 45), zrtest::toRgb(zrtest::kGreen));
        play(Picture(160, 90, zrtest::kRed));
    }
}

void TestTile::aPaintWithoutANewPictureUploadsNothing()
{
    showTile({160, 90});
    play(Picture(160, 90, zrtest::kRed));
    const quint64 uploads = m_tile->uploadCount();
    const int paints = m_tile->paints;
    for (int i = 0; i < 5; ++i) {
        m_tile->repaint();
        m_tile->resize(160 + i, 90);
    }
    waitForPaints();
    QVERIFY(m_tile->paints > paints);
    QCOMPARE(m_tile->uploadCount(), uploads);
    play(Picture(160, 90, zrtest::kGreen));
    QCOMPARE(m_tile->uploadCount(), uploads + 1);
}

void TestTile::aBurstFromAnotherThreadIsOneRepaint()
{
    showTile({160, 90});
    play(Picture(160, 90, zrtest::kRed));
    QTest::qWait(100); // the pacer is quiet again
    const int paints = m_tile->paints;
    const QSignalSpy renders(m_tile, &CPlayWidget::notifyRender);
    const Picture red(160, 90, zrtest::kRed);
    const Picture last(160, 90, zrtest::kGreen);
    std::thread([&] {
        for (int i = 0; i < 100; ++i)
            m_tile->PlayFrame(red.frame());
        m_tile->PlayFrame(last.frame());
    }).join();
    QCOMPARE(renders.count(), 1);
    waitForPaints();
    QCOMPARE(m_tile->paints, paints + 1);
    COMPARE_COLOR(pixel(80, 45), zrtest::toRgb(zrtest::kGreen));
    // None is lost after the burst.
    play(Picture(160, 90, zrtest::kBlue));
    COMPARE_COLOR(pixel(80, 45), zrtest::toRgb(zrtest::kBlue));
}

void TestTile::hiddenTileTakesNothing()
{
    showTile({160, 90});
    play(Picture(160, 90, zrtest::kRed));
    m_tile->HidePlay();
    const quint64 uploads = m_tile->uploadCount();
    const int paints = m_tile->paints;
    const QSignalSpy renders(m_tile, &CPlayWidget::notifyRender);
    play(Picture(160, 90, zrtest::kGreen));
    QCOMPARE(renders.count(), 0);
    m_tile->onRender(true);
    waitForPaints();
    QCOMPARE(m_tile->paints, paints);
    QCOMPARE(m_tile->uploadCount(), uploads);
    m_tile->ShowPlay();
    waitForPaints();
    COMPARE_COLOR(pixel(80, 45), zrtest::toRgb(zrtest::kRed));
}

void TestTile::pictureDuringTheChangeDelayIsShownAfterIt()
{
    m_tile->setGeometry(0, 0, 160, 90);
    m_tile->SetPersonInfo(m_person.get(), false);
    m_tile->StartShow();
    QTest::qWait(20); // shown, painted
    const int paints = m_tile->paints;
    m_tile->PlayFrame(Picture(160, 90, zrtest::kRed).frame());
    m_tile->onRender(false);
    QCOMPARE(m_tile->paints, paints);
    QVERIFY(!m_tile->playInfo()->isPictureVisible());
    QTRY_VERIFY(m_tile->paints > paints);
    QVERIFY(m_tile->playInfo()->isPictureVisible());
    COMPARE_COLOR(pixel(80, 45), zrtest::toRgb(zrtest::kRed));

    // The same when another participant is bound while the tile is showing.
    tagPersonInfo other;
    other.userID = QStringLiteral("bob");
    other.bPreview = true;
    other.iStreamStatus = kStreamRunning;
    m_tile->SetPersonInfo(&other, false);
    m_tile->PlayFrame(Picture(160, 90, zrtest::kGreen).frame());
    QVERIFY(!m_tile->playInfo()->isPictureVisible());
    QTRY_VERIFY(m_tile->playInfo()->isPictureVisible());
    COMPARE_COLOR(pixel(80, 45), zrtest::toRgb(zrtest::kGreen));
    m_tile->SetPersonInfo(nullptr, false);
}

void TestTile::streamThatRunsAgainIsUncovered()
{
    showTile({160, 90});
    play(Picture(160, 90, zrtest::kRed));
    QVERIFY(m_tile->playInfo()->isPictureVisible());
    m_person->iStreamStatus = kStreamNone;
    m_tile->RefreshPlayInfo();
    QVERIFY(!m_tile->playInfo()->isPictureVisible());
    // A picture of the same size: the gallery has no reason to refresh the tile.
    m_person->iStreamStatus = kStreamRunning;
    play(Picture(160, 90, zrtest::kGreen));
    QVERIFY(m_tile->playInfo()->isPictureVisible());
}

void TestTile::badNetworkFreezesThePicture()
{
    showTile({160, 90});
    play(Picture(160, 90, zrtest::kRed));
    m_tile->UpdateNetStatus(2, true, 1);
    const int paints = m_tile->paints;
    play(Picture(160, 90, zrtest::kGreen));
    QCOMPARE(m_tile->paints, paints);
    m_tile->UpdateNetStatus(1, false, 5); // the other direction
    waitForPaints();
    QCOMPARE(m_tile->paints, paints);
    m_tile->UpdateNetStatus(2, false, 5);
    waitForPaints();
    QCOMPARE(m_tile->paints, paints + 1);
    COMPARE_COLOR(pixel(80, 45), zrtest::toRgb(zrtest::kGreen));
}

void TestTile::blankTileShowsLoadingFor30Renders()
{
    showTile({160, 90});
    m_tile->SetVideoSize(160, 90);
    m_tile->SetPersonInfo(m_person.get(), true);
    QTest::qWait(kChangeDelayMs + 50);
    const int paints = m_tile->paints;
    for (int i = 0; i < 30; ++i)
        m_tile->onRender(false);
    QVERIFY(!m_tile->playInfo()->isPictureVisible());
    waitForPaints();
    QCOMPARE(m_tile->paints, paints);
    m_tile->onRender(false);
    QVERIFY(m_tile->playInfo()->isPictureVisible());
    QTRY_COMPARE(m_tile->paints, paints + 1);
}

void TestTile::pausedShareIsNotDrawn()
{
    m_person->userID = QStringLiteral("sharescreen_7");
    showTile({160, 90});
    play(Picture(160, 90, zrtest::kRed));
    hub().settings.pauseShare = true;
    emit hub().sigRefreshPlayDlg();
    waitForPaints();
    COMPARE_COLOR(pixel(80, 45), Qt::black);
    hub().settings.pauseShare = false;
    emit hub().sigRefreshPlayDlg();
    waitForPaints();
    COMPARE_COLOR(pixel(80, 45), zrtest::toRgb(zrtest::kRed));
}

void TestTile::localVideoIsConfirmedAfter69Pictures()
{
    m_person->bLocalVideo = true;
    showTile({160, 90});
    const Picture picture(160, 90, zrtest::kRed);
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
    QVERIFY(m_tile->SetPersonInfo(m_person.get(), false));
    QVERIFY(!m_tile->SetPersonInfo(m_person.get(), false));
    QCOMPARE(m_tile->GetPersonInfo(), m_person.get());
    m_tile->StartShow();
    QVERIFY(!m_tile->SetPersonInfo(nullptr, false));
    QVERIFY(!m_tile->GetPersonInfo());
    // The record goes; the tile lives on, is painted, is shown again and takes pictures.
    m_person.reset();
    m_tile->setGeometry(0, 0, 160, 90);
    m_tile->RefreshPlayInfo();
    m_tile->UpdateNetStatus(2, true, 0);
    m_tile->UpdateNetStatus(2, false, 0);
    m_tile->StopShow();
    m_tile->StartShow();
    play(Picture(160, 90, zrtest::kRed));
    QTest::qWait(kChangeDelayMs);
    m_window->grab();
}

void TestTile::showingIsReportedOnce()
{
    class Host : public CAbsUIMsgCallback
    {
    public:
        bool UIMsgNotify(unsigned long id, unsigned long long, long long) override
        {
            shown += id == ZRMSG_VIDEO_SHOWN ? 1 : 0;
            return true;
        }
        int shown = 0;
    } host;
    hub().registerUICallback(&host);
    m_tile->SetPersonInfo(m_person.get(), false);
    m_tile->ShowPlay();
    m_tile->ShowPlay();
    QCOMPARE(host.shown, 1);
    QCOMPARE(m_person->iPlayState, int(kPlayShown));
    m_tile->HidePlay();
    QVERIFY(m_tile->isHidden());
    m_tile->ShowPlay();
    QCOMPARE(host.shown, 2);
    hub().unregisterUICallback(&host);
}

void TestTile::videoRectMapsToTheScreen()
{
    showTile({400, 400});
    play(Picture(1920, 1080, zrtest::kWhite));
    QRect rect(QPoint(1000, 500), QSize(400, 400));
    m_tile->MapVideoRect(rect);
    QCOMPARE(rect.left(), 1000);
    QCOMPARE(rect.top(), 587);
    QCOMPARE(rect.right(), 1400);
    QCOMPARE(rect.bottom(), 812);
}

void TestTile::pressesBecomeClicks_data()
{
    QTest::addColumn<QPoint>("move");
    QTest::addColumn<bool>("clicks");
    QTest::newRow("no move") << QPoint() << true;
    QTest::newRow("4 pixels") << QPoint(4, -4) << true;
    QTest::newRow("5 pixels") << QPoint(-5, 5) << true;
    QTest::newRow("6 pixels across") << QPoint(6, 0) << false;
    QTest::newRow("6 pixels up") << QPoint(0, -6) << false;
}

void TestTile::pressesBecomeClicks()
{
    QFETCH(QPoint, move);
    QFETCH(bool, clicks);
    showTile({160, 90});
    const QSignalSpy single(m_tile, &CPlayWidget::mouseLClick);
    // Through the overlay, which covers the tile, as a real pointer comes.
    QWidget* const target = m_window->childAt(80, 45);
    QCOMPARE(target, static_cast<QWidget*>(m_tile->playInfo()));
    QTest::mousePress(target, Qt::LeftButton, {}, QPoint(80, 45));
    const QPoint to = QPoint(80, 45) + move;
    QMouseEvent event(QEvent::MouseMove, to, target->mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(target, &event);
    QTest::mouseRelease(target, Qt::LeftButton, {}, to);
    QTest::qWait(250);
    QCOMPARE(single.count(), 0);
    QTest::qWait(150);
    QCOMPARE(single.count(), clicks ? 1 : 0);
}

void TestTile::doubleClickIsNoClick()
{
    showTile({160, 90});
    const QSignalSpy single(m_tile, &CPlayWidget::mouseLClick);
    const QSignalSpy twice(m_tile, &CPlayWidget::mouseLDClick);
    QTest::mouseClick(m_tile->playInfo(), Qt::LeftButton);
    QTest::mouseDClick(m_tile->playInfo(), Qt::LeftButton);
    QTest::qWait(400);
    QCOMPARE(twice.count(), 1);
    QCOMPARE(single.count(), 0);
}

void TestTile::otherButtonsAreNoClick()
{
    showTile({160, 90});
    const QSignalSpy single(m_tile, &CPlayWidget::mouseLClick);
    const QSignalSpy twice(m_tile, &CPlayWidget::mouseLDClick);
    QTest::mouseClick(m_tile->playInfo(), Qt::RightButton);
    QTest::mouseDClick(m_tile->playInfo(), Qt::MiddleButton);
    QTest::qWait(400);
    QCOMPARE(single.count() + twice.count(), 0);
}

ZR_WIDGET_TEST_MAIN(TestTile)
#include "tst_cplaywidget.moc"
