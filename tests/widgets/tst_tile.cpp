// The tile and its overlay: what they paint and when, for how long they show what, and what a press
// becomes. How the overlay looks the goldens know, and what it shows of whom the rule of its state.
#include "pictures.h"
#include "testsupport.h"

#include "cplaywidget.h"
#include "qdlgplayinfo.h"
#include "repaintpacer.h"

#include <QAccessible>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QPaintEvent>
#include <QPointer>
#include <QSignalSpy>

#include <new>
#include <thread>

using zr::OverlayPart;
using zrtest::drag;
using zrtest::hub;

namespace {

constexpr int kChangeDelayMs = 100;
constexpr Rgb kBlack{0, 0, 0};
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

class CountingOverlay : public QDlgPlayInfo
{
public:
    using QDlgPlayInfo::QDlgPlayInfo;
    int paints = 0;
    QRegion painted; ///< by the last paint
    qint64 elapsedMs = 0;
    QList<int> announced;

protected:
    void paintEvent(QPaintEvent* event) override
    {
        ++paints;
        painted = event->region();
        QDlgPlayInfo::paintEvent(event);
    }
    qint64 spinnerElapsedMs() const override { return elapsedMs; }
    int bubbleMs() const override { return 300; }
    void announce(QAccessible::Event what) override { announced += what; }
};

constexpr int kLongWaitMs = 60000; ///< no test waits for this deadline

/// Two widgets that ask a pacer for their repaints.
struct Pair
{
    Pair()
    {
        window.resize(300, 100);
        for (int i = 0; i < 2; ++i)
            widgets[i]->setGeometry(100 * i, 0, 90, 90);
        window.show();
        (void)QTest::qWaitForWindowExposed(&window);
        QTest::qWait(50);
    }
    /// Has one widget after the other ask for a repaint, and lets it happen: "1>01" is the second,
    /// after which the second is painted. @return the first step that goes otherwise
    QString play(RepaintPacer& pacer, const QString& script)
    {
        for (const QString& step : script.split(' ')) {
            paints[0].count = paints[1].count = 0;
            pacer.requestUpdate(widgets[step[0] == '1' ? 1 : 0]);
            QCoreApplication::processEvents();
            if (step.mid(2) != QString("%1%2").arg(paints[0].count).arg(paints[1].count))
                return step;
        }
        return {};
    }

    QWidget window;
    QWidget* widgets[2]{new QWidget(&window), new QWidget(&window)};
    zrtest::EventWatch paints[2]{{{widgets[0]}, {QEvent::Paint}}, {{widgets[1]}, {QEvent::Paint}}};
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

bool s_isMemoryFull = false;

bool isColour(const QImage& image, const QPoint& at, const Rgb& expected)
{
    const QColor c = image.pixelColor(at);
    const bool ok = isNear({c.red(), c.green(), c.blue()}, expected, 2);
    if (!ok)
        qInfo() << at << "is" << c.name();
    return ok;
}

} // namespace

/// What the tile makes its block with.
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return s_isMemoryFull ? nullptr : ::operator new[](size);
}

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
        // BT.709 in limited range, and what lies outside of it.
        const std::pair<Yuv, Rgb> colours[] = {
            {{16, 128, 128}, kBlack},
            {{235, 128, 128}, {255, 255, 255}},
            {{63, 102, 240}, kRed},
            {{173, 42, 26}, kGreen},
            {{32, 240, 118}, kBlue},
            {{126, 128, 128}, {128, 128, 128}},
            {{0, 128, 128}, kBlack},
            {{150, 110, 150}, {195, 148, 118}},
            {{255, 128, 128}, {255, 255, 255}},
        };
        play(
            {240, 240, [&](uint32_t x, uint32_t y) { return colours[y / 80 * 3 + x / 80].first; }});
        const QImage image = grab();
        for (int i = 0; i < 9; ++i)
            QVERIFY(isColour(image, {40 + i % 3 * 80, 40 + i / 3 * 80}, colours[i].second));
    }

    /// A chroma plane that began at a wrong offset, a missing last odd row or the rest of a larger
    /// picture would show at the edges.
    void everySizeIsDrawnToItsEdges()
    {
        const Yuv red = yuvOf(kRed);
        const Yuv blue = yuvOf(kBlue);
        showTile({480, 300});
        for (const auto& [width, height] :
             {std::pair(641U, 361U), {640, 400}, {7, 5}, {174, 100}, {8, 1}, {16, 3}, {9, 400}}) {
            const uint32_t middle = height / 2;
            const auto half = [=](uint32_t, uint32_t y) { return y < middle ? red : blue; };
            play({width, height, half});
            const QImage image = grab();
            QRect view = image.rect();
            m_tile->MapVideoRect(view); // right and bottom lie one pixel outside
            view.adjust(0, 0, -1, -1);
            if (width < 8) { // no aligned column is left
                QVERIFY(isColour(image, view.center(), kBlack));
                continue;
            }
            const Rgb top = height == 1 ? kBlue : kRed;
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
        QTRY_VERIFY(m_tile->paints > 0);
        waitForPaints();
        QCOMPARE(paints(), 1);
        QVERIFY(shows(kGreen));
        play(kBlue); // none is lost after the burst
        QVERIFY(shows(kBlue));
        QCOMPARE(overlay.count, 0); // it lies above the picture, and none of its state has changed
    }

    void picturesWithoutMemoryAreBlackUntilThereIsSome()
    {
        showRed();
        static int refused; // lines of the log
        refused = 0;
        const auto before = qInstallMessageHandler([](auto, const auto&, const QString& line) {
            refused += line.contains("alloc failed") ? 1 : 0;
        });
        s_isMemoryFull = true;
        for (const quint32 height : {180U, 180U, 360U, 180U})
            play({320, height, kGreen});
        s_isMemoryFull = false;
        qInstallMessageHandler(before);
        QVERIFY(shows(kBlack) && refused == 1);
        play({320, 180, kGreen});
        QVERIFY(shows(kGreen));
    }

    // Painting without a context crashes. Without its surface a context is as if the driver had
    // taken it away.
    void aLostContextComesBackWithThePicture()
    {
        showRed();
        m_tile->makeCurrent();
        const QPointer<QOpenGLContext> lost(m_tile->context());
        auto* const surface = static_cast<QOffscreenSurface*>(lost->surface());
        m_tile->doneCurrent();
        surface->destroy();
        m_tile->resize(162, 90);
        QVERIFY(lost);
        for (int i = 0; i < 3; ++i) // textures that are lost, too
            QTest::ignoreMessage(QtWarningMsg,
                                 QRegularExpression("Texture has not been destroyed"));
        play(kGreen);
        QTRY_VERIFY(!lost && m_tile->isValid());
        QVERIFY(shows(kGreen));
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
        QTRY_VERIFY(m_tile->paints > 0);
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
        waitForPaints();
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

    // --- When several paint -------------------------------------------------------------------

    void tilesOutOfStepArePaintedTogether()
    {
        Pair pair;
        RepaintPacer pacer(kLongWaitMs);
        // A lone tile is never held back, and a second picture of the same tile ends a round.
        QCOMPARE(pair.play(pacer, "0>10 0>10 0>10 1>00 0>11 1>00 0>11 1>00 1>01"), QString());
        QVERIFY(pacer.isIdle());
    }

    void missingTileIsWaitedForUntilTheDeadline()
    {
        Pair pair;
        RepaintPacer pacer(30);
        QCOMPARE(pair.play(pacer, "0>10 1>00 0>11 1>00"), QString());
        QTRY_COMPARE_WITH_TIMEOUT(pair.paints[1].count, 1, 1000);
        QVERIFY(pacer.isIdle());
        QCOMPARE(pair.play(pacer, "1>01"), QString()); // the other one is not expected any more
        RepaintPacer quiet(kLongWaitMs);
        QCOMPARE(pair.play(quiet, "0>10 1>00 0>11"), QString());
        QTest::qWait(RepaintPacer::kQuietMs + 20); // after which nobody is expected
        QCOMPARE(pair.play(quiet, "1>01"), QString());
    }

    void hiddenAndDestroyedWidgetsDropOut()
    {
        Pair pair;
        RepaintPacer waiting(kLongWaitMs);
        QCOMPARE(pair.play(waiting, "0>10 1>00 0>11 1>00"), QString());
        pair.widgets[1]->hide();
        QCOMPARE(pair.play(waiting, "0>10 1>00"), QString());
        QVERIFY(waiting.isIdle());
        // The same for one that is waited for, and one that has gone.
        for (const bool destroyed : {false, true}) {
            pair.widgets[1]->show();
            QTest::qWait(20);
            RepaintPacer awaited(kLongWaitMs);
            QCOMPARE(pair.play(awaited, "0>10 1>00 0>11 1>00 0>11"), QString());
            pair.widgets[1]->hide();
            if (destroyed)
                delete std::exchange(pair.widgets[1], new QWidget(&pair.window));
            QCOMPARE(pair.play(awaited, "0>10"), QString());
        }
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
        for (const QPoint& move : {QPoint(6, 0), QPoint(0, -6)}) {
            drag(*target, kMiddle, kMiddle + move);
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
        QVERIFY(single.count() == 1 && twice.isEmpty());
        QTest::mouseClick(target, Qt::LeftButton);
        QTest::mouseDClick(target, Qt::LeftButton);
        QTest::qWait(400);
        QVERIFY(single.count() == 1 && twice.count() == 1);
    }

    // --- The overlay --------------------------------------------------------------------------

    void spinnerRunsWhileTheNetworkIsBadAndItShows()
    {
        openOverlay();
        const auto spins = [this] { return m_overlay->isSpinning(); };
        const auto after = [this](qint64 elapsedMs) {
            m_overlay->elapsedMs = elapsedMs;
            m_overlay->onTimeUpdateLoading();
            m_overlay->refresh();
        };
        m_overlay->setPerson(m_person.get());
        m_overlay->UpdateNetStatus(1, true, 0);
        QVERIFY(m_overlay->state().bFrozen && !spins()); // without a picture nothing to wait on
        showPicture();
        QVERIFY(spins());
        QTest::qWait(50);
        m_overlay->paints = 0;
        QTRY_VERIFY_WITH_TIMEOUT(m_overlay->paints >= 2, 1000);
        for (const bool visible : {false, true}) {
            m_window->setVisible(visible);
            QCOMPARE(spins(), visible);
        }
        after(15000);
        QVERIFY(spins());
        after(15001);
        QVERIFY(!spins() && !m_overlay->isPictureVisible()); // the avatar, to the spell's end
        const auto other = makePerson("bob"); // whose network is as bad begins a spell of their own
        other->net = m_person->net;
        m_overlay->setPerson(other.get());
        QVERIFY(spins());
        after(0);
        m_overlay->setPerson(m_person.get());
        after(15001);
        QVERIFY(!m_overlay->isPictureVisible());
        m_window->hide(); // nor does the participant's next spell depend on who sees it
        m_person->net.report(1, false, 5);
        m_person->net.report(2, true, 1);
        m_window->show();
        QVERIFY(spins());
    }

    void onlyTheChangedRectangleIsRepainted()
    {
        openOverlay();
        m_person->bMute = false;
        showPicture();
        QTest::qWait(50);
        const QRect audio = m_overlay->overlayLayout().at(OverlayPart::Audio).rect;
        QVERIFY(!audio.isEmpty());
        const std::pair<std::function<void()>, QRect> rows[] = {
            {[this] { m_person->iVolume = 9; }, {}}, // the same level
            {[this] { m_person->iVolume = 10; }, audio},
            {[this] { m_person->bMute = true; }, audio},
            {[this] { m_person->iVolume = 90; }, {}}, // muted
            {[this] { m_person->bHandUp = true; }, {5, 5, 48, 48}},
            {[this] {
                 for (int i = 0; i < 20; ++i) {
                     m_overlay->setLoading(false);
                     m_overlay->setVideoRect(QRect(0, 30, 400, 240));
                     m_overlay->UpdateNetStatus(1, false, 5);
                     m_overlay->setPerson(m_person.get());
                     m_overlay->setGeometry(m_overlay->geometry());
                     emit hub().sigRefreshPlayDlg();
                     QCoreApplication::processEvents();
                 }
             },
             {}},
        };
        for (const auto& [change, rect] : rows) {
            m_overlay->paints = 0;
            m_overlay->painted = {};
            change();
            m_overlay->refresh(); // volumes are gathered
            (void)QTest::qWaitFor([this] { return m_overlay->paints > 0; },
                                  rect.isEmpty() ? 100 : 2000);
            QCOMPARE(m_overlay->paints, rect.isEmpty() ? 0 : 1);
            QCOMPARE(m_overlay->painted.boundingRect(), rect);
        }
    }

    void clicksOnControlsReachTheHub()
    {
        openOverlay();
        m_person->bHandUp = m_person->bSelf = true;
        showPicture();
        QSignalSpy audio(&hub(), &QZRScreenConfig::notifyClickAudioCtrl);
        QSignalSpy more(&hub(), &QZRScreenConfig::notifyClickMore);
        QSignalSpy hand(&hub(), &QZRScreenConfig::handleHandup);
        const zrtest::EventWatch window({m_window.get()},
                                        {QEvent::MouseButtonPress, QEvent::MouseButtonDblClick});
        const QPoint microphone(10, 280);
        const auto clicks = [&] { // on each control; @return how many were one
            for (QSignalSpy* spy : {&audio, &more, &hand})
                spy->clear();
            m_overlay->refresh();
            for (const QPoint& at : {microphone, QPoint(399, 299), QPoint(5, 5)})
                QTest::mouseClick(m_overlay, Qt::LeftButton, {}, at);
            return audio.count() + more.count() + hand.count();
        };
        QCOMPARE(clicks(), 0); // the participant has gone
        hub().livePersons.insert(m_person.get());
        m_overlay->setPlace(zr::TilePlace::ExtScreen);
        QCOMPARE(clicks(), 0);
        m_overlay->setPlace(zr::TilePlace::Gallery);
        m_person->bSelf = false;
        QCOMPARE(clicks(), 2); // another's hand stays up
        m_person->bSelf = true;
        const int passedOn = window.count;
        QCOMPARE(clicks(), 3);
        for (const QSignalSpy* spy : {&audio, &more, &hand})
            QCOMPARE(spy->at(0).at(0).value<void*>(), static_cast<void*>(m_person.get()));
        QCOMPARE(more.at(0).at(1).toInt(), m_overlay->mapToGlobal(QPoint(400 - 48, 0)).x());
        // The second press of a double click is neither a click nor one on the tile, nor is a drag
        // one; a shorter move is, also off the edge.
        QTest::mouseDClick(m_overlay, Qt::LeftButton, {}, microphone);
        drag(*m_overlay, microphone, microphone + QPoint(6, 0));
        QCOMPARE(audio.count(), 1);
        const QPoint corner = m_overlay->overlayLayout().at(OverlayPart::Audio).rect.topLeft();
        drag(*m_overlay, corner, corner - QPoint(0, 5));
        QCOMPARE(audio.count(), 2);
        // The press was on somebody else.
        QTest::mousePress(m_overlay, Qt::LeftButton, {}, microphone);
        m_overlay->setPerson(nullptr);
        m_overlay->setPerson(m_person.get());
        QTest::mouseRelease(m_overlay, Qt::LeftButton, {}, microphone);
        QCOMPARE(window.count, passedOn);
        // What is no control's goes to the tile.
        QTest::mouseClick(m_overlay, Qt::RightButton, {}, microphone);
        QTest::mouseClick(m_overlay, Qt::LeftButton, {}, QPoint(200, 150));
        QVERIFY(audio.count() == 2 && window.count == passedOn + 2);
    }

    void ownSentenceShowsForAWhile()
    {
        openOverlay();
        showPicture();
        const auto says = [this](int id, const char* name, const char* text) {
            hub().AddOneSubtitle(id, 0, name, text);
            return m_overlay->overlayLayout().at(OverlayPart::Bubble).text;
        };
        QCOMPARE(says(1, "Alice", "closed"), QString()); // subtitles are not open
        hub().setSubtitleOpen(true);
        QCOMPARE(says(2, "Bob", "not mine"), QString());
        QCOMPARE(says(3, "Alice", "one"), QString("one"));
        QTest::qWait(200);
        (void)says(3, "Alice", "one two"); // grows
        QTest::qWait(200);
        QCOMPARE(says(4, "Bob", "still there"), QString("one two"));
        QTRY_COMPARE(says(4, "Bob", "has gone"), QString());
        m_window->hide();
        (void)says(5, "Alice", "four");
        m_window->show();
        QCOMPARE(says(4, "Bob", "was not seen"), QString());
    }

    void tileIsAccessible()
    {
        openOverlay();
        m_overlay->setPerson(m_person.get());
        const std::pair<QList<int>, std::function<void()>> changes[] = {
            {{QAccessible::DescriptionChanged}, [this] { m_person->bMute = false; }},
            {{QAccessible::NameChanged}, [this] { m_person->userName = "Bob"; }},
            {{}, [this] { m_person->iVolume = 80; }},
        };
        m_overlay->announced.clear();
        for (const auto& [announced, change] : changes) {
            change();
            m_overlay->refresh();
            QCOMPARE(std::exchange(m_overlay->announced, {}), announced);
        }
        hub().livePersons.insert(m_person.get());
        showTile({400, 300});
        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(m_tile);
        QVERIFY(accessible && accessible->actionInterface() && accessible->childCount() == 0);
        QVERIFY(accessible->text(QAccessible::Description).contains(QStringLiteral("打开")));
        QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Bob"));
        QAccessibleActionInterface* actions = accessible->actionInterface();
        QCOMPARE(actions->actionNames(), QStringList({"microphone", "more"}));
        const QSignalSpy audio(&hub(), &QZRScreenConfig::notifyClickAudioCtrl);
        for (const char* action : {"microphone", "lowerHand", "unknown"})
            actions->doAction(action);
        QCOMPARE(audio.count(), 1);
        hub().livePersons.remove(m_person.get()); // has left
        QCOMPARE(actions->actionNames(), QStringList());
        actions->doAction("microphone");
        QCOMPARE(audio.count(), 1);
        const QAccessible::Id id = QAccessible::uniqueId(accessible);
        m_window.reset();
        QVERIFY(!QAccessible::accessibleInterface(id));
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
    void play(const Rgb& colour) { play(Picture(160, 90, colour)); }
    void showRed()
    {
        showTile();
        play(kRed);
        (void)paints();
        (void)uploads();
    }
    QImage grab() const { return m_tile->grabFramebuffer(); }
    bool shows(const Rgb& colour) const { return isColour(grab(), kMiddle, colour); }
    void waitForPaints() { QTest::qWait(60); }
    // Since the last question.
    int paints() { return std::exchange(m_tile->paints, 0); }
    int uploads()
    {
        const quint64 before = std::exchange(m_uploads, m_tile->uploadCount());
        return int(m_uploads - before);
    }
    /// An overlay without a tile, and nobody's video yet.
    void openOverlay()
    {
        m_person = std::make_unique<tagPersonInfo>();
        m_person->userID = QStringLiteral("alice");
        m_person->userName = QStringLiteral("Alice");
        m_tile->hide();
        m_window->resize(400, 300);
        m_overlay = new CountingOverlay(m_window.get());
        m_overlay->setGeometry(0, 0, 400, 300);
        m_overlay->setVideoRect(QRect(0, 30, 400, 240));
        m_overlay->show();
    }
    void showPicture()
    {
        m_person->bPreview = true;
        m_person->iStreamStatus = kStreamRunning;
        m_overlay->setPerson(m_person.get());
        m_overlay->setLoading(false);
        m_overlay->refresh();
        QVERIFY(m_overlay->isPictureVisible());
    }
    std::unique_ptr<tagPersonInfo> m_person;
    std::unique_ptr<QWidget> m_window;
    CountingTile* m_tile = nullptr;       ///< child of the window
    CountingOverlay* m_overlay = nullptr; ///< child of the window
    quint64 m_uploads = 0;
};

ZR_WIDGET_TEST_MAIN(TestTile)
#include "tst_tile.moc"
