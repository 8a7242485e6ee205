// The subtitle panel: what its list holds, when it follows, how it scrolls, and how it looks.
#include "golden.h"
#include "testsupport.h"

#include "qdlgmain.h"
#include "qdlgsubtitle2.h"
#include "qzrscreenconfig.h"

#include <QGraphicsView>
#include <QMouseEvent>
#include <QScroller>
#include <QtTest>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace {

std::atomic<int> s_heightsComputed{0};
QtMessageHandler s_nextHandler = nullptr;

/// Every computed height is logged.
void countHeights(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (text.contains(QLatin1String("iTextWidth:")))
        ++s_heightsComputed;
    else if (type != QtDebugMsg)
        s_nextHandler(type, context, text);
}

QString line(int number)
{
    return QStringLiteral("Sentence number %1").arg(number);
}

} // namespace

class TestSubtitlePanel : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void growsASentenceInPlace();
    void keepsTheNewestInTheirOrder();
    void takesAnyText_data();
    void takesAnyText();
    void needsNoRoom();
    void takesItsColoursFromTheTable();
    void followsUntilTheUserReadsBack();
    void followsAgainWhenAllFits();
    void leavesTheListUnderAFinger();
    void scrollsWithTheMouse() { scrollsWithMomentum(false); }
    void scrollsWithAFinger() { scrollsWithMomentum(true); }
    void scrollsWithTheWheel();
    void followsOneFinger();
    void keepsWhatIsReadInPlace();
    void standsStillWhenHidden();
    void breaksLinesAnewWhenResized();
    void staysOpenOnEscape();
    void survivesOtherThreads();
    void looks_data();
    void looks();

private:
    static QZRScreenConfig& hub() { return *QZRScreenConfig::getInstance(); }
    static void add(int id, const QString& text, const QString& name = "Zhang San", int color = 0)
    {
        hub().AddOneSubtitle(id, color, name, text);
    }
    static void fill(int count)
    {
        for (int id = 1; id <= count; ++id)
            add(id, line(id));
    }
    ListObject& list() { return *m_panel->list(); }
    ViewObject& view() { return *list().viewObject(); }
    QWidget* viewport() { return m_panel->findChild<QGraphicsView*>()->viewport(); }
    /// In their order on the screen, each checked to stand below the one before.
    std::vector<RectObject*> items();
    std::vector<int> ids();
    static std::vector<int> storedIds()
    {
        const QList<int> keys = hub().subtitles().keys();
        return {keys.begin(), keys.end()};
    }
    double endPosition() { return list().size().height() - view().contentHeight(); }
    static QTouchDevice* finger()
    {
        static QTouchDevice* const device = QTest::createTouchDevice();
        return device;
    }
    /// Of the left button, or of a finger.
    void hand(Qt::TouchPointState what, const QPoint& at);
    void scrollsWithMomentum(bool touch);
    /// Presses and moves in steps of 16 ms.
    void stroke(const QPoint& from, const QPoint& by);
    /// Lets go where the hand came to rest, so that nothing moves on.
    void drag(int byPx);

    bool m_touch = false; ///< hands are fingers
    std::unique_ptr<QDlgMain> m_dialog;
    QDlgSubtitle2* m_panel = nullptr;
};

void TestSubtitlePanel::initTestCase()
{
    QVERIFY2(zrtest::useGoldenFont(), "the package fonts-noto-cjk is not installed");
    s_nextHandler = qInstallMessageHandler(countHeights);
}

void TestSubtitlePanel::init()
{
    m_touch = false;
    m_dialog = std::make_unique<QDlgMain>(nullptr);
    m_panel = m_dialog->findChild<QDlgSubtitle2*>();
    m_dialog->resize(hub().scaled(1500), hub().scaled(700));
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_dialog.get()));
    hub().setSubtitleOpen(true);
    m_dialog->showSubtitlePanel(true);
}

void TestSubtitlePanel::cleanup()
{
    m_dialog.reset();
    QZRScreenConfig::destroyInstance();
}

std::vector<RectObject*> TestSubtitlePanel::items()
{
    std::vector<RectObject*> result;
    qreal y = 0;
    for (QGraphicsItem* child : view().childItems()) {
        auto* item = static_cast<RectObject*>(child);
        if (item->pos() != QPointF(0, y))
            return {};
        y += item->itemHeight() + 10;
        result.push_back(item);
    }
    return y == view().contentHeight() ? result : std::vector<RectObject*>();
}

std::vector<int> TestSubtitlePanel::ids()
{
    std::vector<int> result;
    for (const RectObject* item : items())
        result.push_back(item->id());
    return result;
}

void TestSubtitlePanel::hand(Qt::TouchPointState what, const QPoint& at)
{
    const bool press = what == Qt::TouchPointPressed;
    const bool release = what == Qt::TouchPointReleased;
    if (m_touch) {
        auto touch = QTest::touchEvent(viewport(), finger());
        press     ? touch.press(0, at, viewport())
        : release ? touch.release(0, at, viewport())
                  : touch.move(0, at, viewport());
        return;
    }
    QMouseEvent event(press     ? QEvent::MouseButtonPress
                      : release ? QEvent::MouseButtonRelease
                                : QEvent::MouseMove,
                      at, viewport()->mapToGlobal(at),
                      press || release ? Qt::LeftButton : Qt::NoButton,
                      release ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(viewport(), &event);
}

void TestSubtitlePanel::stroke(const QPoint& from, const QPoint& by)
{
    hand(Qt::TouchPointPressed, from);
    for (int step = 1; step <= 6; ++step) {
        QTest::qWait(16);
        hand(Qt::TouchPointMoved, from + by * step / 6);
    }
}

void TestSubtitlePanel::drag(int byPx)
{
    const QPoint to(50, 250 + byPx);
    stroke({50, 250}, {0, byPx});
    for (int rest = 0; rest < 8; ++rest) {
        QTest::qWait(50);
        hand(Qt::TouchPointMoved, to);
    }
    hand(Qt::TouchPointReleased, to);
    QTRY_VERIFY(!list().isScrolling());
}

// --- Content ----------------------------------------------------------------------------------

void TestSubtitlePanel::growsASentenceInPlace()
{
    add(5, "short");
    add(6, "below");
    QCOMPARE(ids(), (std::vector<int>{5, 6}));
    RectObject* const grown = items().front();
    const int before = grown->itemHeight();
    s_heightsComputed = 0;
    for (int i = 1; i <= 20; ++i)
        add(5, QString("a sentence that is growing ").repeated(i));
    QCOMPARE(s_heightsComputed.load(), 20);
    QCOMPARE(items().front(), grown);
    QVERIFY(grown->itemHeight()
            >= before + 10 * QFontMetrics(SubtitleStyle::shared()->itemFont).lineSpacing());
    QCOMPARE(ids().size(), 2U); // and what is below has moved
    // What stays the same costs nothing.
    add(5, grown->text());
    QCOMPARE(s_heightsComputed.load(), 20);
    add(5, "short again");
    QCOMPARE(items().front()->itemHeight(), before);
}

void TestSubtitlePanel::keepsTheNewestInTheirOrder()
{
    for (const int id : {7, -3, 2147483647, 0, -2147483647 - 1, 7})
        add(id, line(id));
    QCOMPARE(ids(), (std::vector<int>{-2147483647 - 1, -3, 0, 7, 2147483647}));
    for (int id = 100; id < 165; ++id)
        add(id, line(id));
    std::vector<int> kept;
    for (int id = 102; id < 165; ++id)
        kept.push_back(id);
    kept.push_back(2147483647);
    QCOMPARE(ids(), kept);
    QCOMPARE(storedIds(), kept);
    add(1, "too old");
    QCOMPARE(ids(), kept);
    hub().clearSubtitles();
    QVERIFY(ids().empty());
    QCOMPARE(view().pos(), QPointF(0, 0));
}

void TestSubtitlePanel::takesAnyText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("least"); // lines
    QTest::newRow("empty") << QString() << 1;
    QTest::newRow("lines of its own") << QString("a\nb\r\nc\n\nd") << 5;
    QTest::newRow("100,000 wide characters") << QString(100000, QChar(0x5B57)) << 100000 / 14;
    QTest::newRow("100,000 letters") << QString(100000, QLatin1Char('i')) << 100000 / 70;
    QTest::newRow("half pairs") << QString(300, QChar(0xD83D)) << 1;
    QTest::newRow("right to left") << QString::fromUtf8("שלום עולם ").repeated(30) << 5;
}

/// All lines are inside the item, and the list paints them.
void TestSubtitlePanel::takesAnyText()
{
    QFETCH(QString, text);
    QFETCH(int, least);
    add(1, text);
    add(2, "after it");
    QCOMPARE(ids(), (std::vector<int>{1, 2}));
    const RectObject* item = items().front();
    const int lineSpacing = SubtitleStyle::shared()->metrics.lineSpacingPx;
    QVERIFY(item->itemHeight() >= item->drawnHeight());
    QVERIFY(item->itemHeight() >= least * lineSpacing);
    QCOMPARE(view().y(), std::min(0.0, endPosition()));
    m_panel->grab();
}

void TestSubtitlePanel::needsNoRoom()
{
    // Before the dialog has a size, and without room for text.
    for (const QSize& size : {QSize(0, 0), QSize(4, 4), QSize(200, 300), QSize(275, 300)}) {
        m_dialog.reset();
        m_dialog = std::make_unique<QDlgMain>(nullptr);
        m_panel = m_dialog->findChild<QDlgSubtitle2*>();
        hub().setSubtitleOpen(true);
        m_dialog->setGeometry(0, 0, size.width(), size.height());
        m_dialog->showSubtitlePanel(true);
        fill(10);
        m_dialog->show();
        add(11, QString("text ").repeated(100));
        QTRY_COMPARE(ids().size(), 11U);
        QCOMPARE(items().back()->itemHeight(), items().front()->itemHeight());
        m_panel->grab();
        // With room, the lines are broken.
        m_dialog->resize(1500, 700);
        QTRY_VERIFY(items().back()->itemHeight() > 5 * items().front()->itemHeight());
    }
}

void TestSubtitlePanel::takesItsColoursFromTheTable()
{
    const QColor colors[] = {{112, 98, 248}, {94, 176, 242}, {95, 203, 146}, {195, 109, 241}};
    for (int index = -6; index < 7; ++index) {
        add(1, "text", QString::fromUtf8("欧阳修"), index);
        QCOMPARE(items().front()->color(), colors[(index + 8) % 4]);
        QCOMPARE(items().front()->name(), QString::fromUtf8("阳修"));
    }
}

// --- Following and scrolling ------------------------------------------------------------------

void TestSubtitlePanel::followsUntilTheUserReadsBack()
{
    fill(20);
    QVERIFY(endPosition() < -300);
    QCOMPARE(view().y(), endPosition());
    drag(200);
    const double reading = view().y();
    QVERIFY(reading > endPosition() + 100);
    add(20, "changed while reading");
    QVERIFY(!g_bSubtitleFollow);
    add(21, line(21));
    QCOMPARE(ids().size(), 20U);
    QCOMPARE(view().y(), reading);
    // Back at the end, which is reached in two drags.
    drag(-220);
    drag(-100);
    QCOMPARE(ids().size(), 20U);
    add(22, line(22));
    QVERIFY(g_bSubtitleFollow);
    QCOMPARE(ids().size(), 22U);
    QCOMPARE(view().y(), endPosition());
}

void TestSubtitlePanel::followsAgainWhenAllFits()
{
    fill(20);
    drag(200);
    add(20, "changed while reading");
    QVERIFY(!g_bSubtitleFollow);
    hub().clearSubtitles();
    add(1, "fresh");
    QCOMPARE(ids(), std::vector<int>{1});
    QVERIFY(g_bSubtitleFollow);
    // Opened anew in another mode, too.
    fill(20);
    drag(200);
    add(20, "changed");
    QVERIFY(!g_bSubtitleFollow);
    hub().setCurScreenMode(eLayoutSpeakerTop);
    add(21, "while hidden");
    QVERIFY(ids().empty());
    hub().setCurScreenMode(eLayoutEqualCut);
    QCOMPARE(ids().size(), 21U);
    QCOMPARE(view().y(), endPosition());
}

void TestSubtitlePanel::leavesTheListUnderAFinger()
{
    fill(20);
    const double end = endPosition();
    hand(Qt::TouchPointPressed, {50, 250});
    add(21, line(21));
    add(22, line(22));
    QCOMPARE(view().y(), end);
    hand(Qt::TouchPointReleased, {50, 250});
    QTRY_COMPARE(ids().size(), 22U);
    QCOMPARE(view().y(), endPosition());
    QVERIFY(g_bSubtitleFollow);
}

void TestSubtitlePanel::scrollsWithMomentum(bool touch)
{
    m_touch = touch;
    fill(16);
    double highest = endPosition();
    double lowest = 0;
    const auto flick = [&](int byPx) {
        stroke({50, 250}, {120, byPx}); // sideways movements change nothing
        hand(Qt::TouchPointReleased, {170, 250 + byPx});
        while (list().isScrolling()) {
            QTest::qWait(5);
            QCOMPARE(view().x(), 0.0);
            highest = std::max(highest, view().y());
            lowest = std::min(lowest, view().y());
        }
    };
    flick(180);
    QVERIFY(view().y() > endPosition() + 230);
    for (int i = 0; i < 4 && highest <= 5; ++i)
        flick(200);
    QVERIFY(highest > 5);      // pulled past the top
    QCOMPARE(view().y(), 0.0); // and back
    for (int i = 0; i < 6 && lowest >= endPosition() - 5; ++i)
        flick(-200);
    QVERIFY(lowest < endPosition() - 5);
    QCOMPARE(view().y(), endPosition());
}

void TestSubtitlePanel::scrollsWithTheWheel()
{
    fill(20);
    const auto turn = [this](int delta) {
        const QPoint at(50, 250);
        QWheelEvent event(at, viewport()->mapToGlobal(at), {}, {0, delta}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(viewport(), &event);
    };
    const double end = endPosition();
    turn(-120);
    QCOMPARE(view().y(), end);
    turn(120);
    QVERIFY(view().y() > end + 30 && view().y() < end + 150);
    add(20, "changed while reading");
    add(21, line(21)); // waits
    QCOMPARE(ids().size(), 20U);
    turn(120 * 100);
    QCOMPARE(view().y(), 0.0);
    turn(-120 * 100);
    add(22, line(22));
    QCOMPARE(ids().size(), 22U);
    // What is in a hand stays there.
    const double held = view().y();
    hand(Qt::TouchPointPressed, {50, 250});
    turn(120);
    QCOMPARE(view().y(), held);
    hand(Qt::TouchPointReleased, {50, 250});
}

void TestSubtitlePanel::followsOneFinger()
{
    fill(40);
    auto touch = QTest::touchEvent(viewport(), finger(), false);
    touch.press(0, {50, 50}, viewport()).commit();
    touch.stationary(0).press(1, {90, 300}, viewport()).commit();
    touch.release(0, {50, 50}, viewport()).stationary(1).commit();
    for (int y = 300; y > 270; y -= 2) {
        touch.move(1, {90, y}, viewport()).commit();
        QTest::qWait(15);
    }
    touch.release(1, {90, 270}, viewport()).commit();
    QTRY_VERIFY(!list().isScrolling());
    QCOMPARE(view().y(), endPosition());
}

void TestSubtitlePanel::keepsWhatIsReadInPlace()
{
    fill(64);
    drag(200);
    const RectObject* read = items()[60];
    const double at = read->scenePos().y();
    hand(Qt::TouchPointPressed, {50, 250});
    add(65, line(65));
    QCOMPARE(read->scenePos().y(), at);
    hand(Qt::TouchPointReleased, {50, 250});
    QTRY_VERIFY(!list().isScrolling());
    QVERIFY(!g_bSubtitleFollow);
    add(20, QString("something above it grows ").repeated(10));
    QCOMPARE(read->scenePos().y(), at);
    // The oldest sentence goes.
    g_bSubtitleFollow = true;
    add(66, line(66));
    QCOMPARE(read->scenePos().y(), at);
    g_bSubtitleFollow = true;
    view().setPos(0, -10);
    add(67, line(67));
    QCOMPARE(view().pos(), QPointF(0, 0));
    QVERIFY(!g_bSubtitleFollow);
}

void TestSubtitlePanel::standsStillWhenHidden()
{
    fill(40);
    stroke({50, 100}, {0, 140});
    hand(Qt::TouchPointReleased, {50, 240});
    QVERIFY(list().isScrolling());
    m_panel->hide();
    QVERIFY(!list().isScrolling());
    const QPointF at = view().pos();
    s_heightsComputed = 0;
    add(40, "not seen");
    add(41, "not seen either");
    hand(Qt::TouchPointMoved, {50, 300}); // of a button that was pressed when it was shown
    QTest::qWait(50);
    QCOMPARE(view().pos(), at);
    QCOMPARE(s_heightsComputed.load(), 0);
    m_panel->show();
    QCOMPARE(ids().size(), 41U);
    QCOMPARE(items().back()->text(), QString("not seen either"));
}

void TestSubtitlePanel::breaksLinesAnewWhenResized()
{
    add(1, QString("some words ").repeated(30));
    fill(20);
    add(1, QString("some words ").repeated(30));
    const int wide = items().front()->itemHeight();
    m_dialog->resize(1000, 700);
    QTRY_VERIFY(items().front()->itemHeight() > wide * 5 / 4);
    QCOMPARE(view().y(), endPosition());
    drag(200);
    add(20, "changed while reading");
    m_dialog->resize(1500, 600);
    QTRY_COMPARE(items().front()->itemHeight(), wide);
    QCOMPARE(view().pos(), QPointF(0, 0));
    QVERIFY(!g_bSubtitleFollow);
}

void TestSubtitlePanel::staysOpenOnEscape()
{
    QTest::keyClick(m_panel, Qt::Key_Escape);
    QVERIFY(m_panel->isVisible());
    QCOMPARE(viewport()->parentWidget()->focusPolicy(), Qt::NoFocus);
}

void TestSubtitlePanel::survivesOtherThreads()
{
    std::atomic<bool> stop{false};
    std::vector<std::thread> hosts;
    for (int seed = 0; seed < 2; ++seed) {
        hosts.emplace_back([&, seed] {
            for (int i = 0; !stop; ++i) {
                add((i * 7 + seed) % 150 - 20, QString("text ").repeated(i % 40));
                if (i % 100 == 99)
                    hub().clearSubtitles();
                std::this_thread::sleep_for(std::chrono::microseconds(200));
            }
        });
    }
    for (int i = 0; i < 40; ++i) {
        const bool bOpen = i % 2 == 0;
        hub().setSubtitleOpen(bOpen);
        m_dialog->showSubtitlePanel(bOpen);
        QTest::qWait(5);
    }
    hub().setSubtitleOpen(true);
    m_dialog->showSubtitlePanel(true);
    QTest::qWait(50);
    stop = true;
    for (std::thread& host : hosts)
        host.join();
    // The list comes to show exactly what is stored.
    QTRY_COMPARE(ids(), storedIds());
    for (const RectObject* item : items())
        QCOMPARE(item->text(), hub().subtitle(item->id()).transStr);
}

// --- Look -------------------------------------------------------------------------------------

void TestSubtitlePanel::looks_data()
{
    QTest::addColumn<bool>("reading");
    QTest::newRow("following") << false;
    QTest::newRow("reading") << true;
}

void TestSubtitlePanel::looks()
{
    QFETCH(bool, reading);
    struct
    {
        const char* name;
        const char* text;
    } const sentences[] = {
        {"张三", "大家好，我们开始今天的会议。"},
        {"Alice Brown", "Good morning everyone. Can you all hear me and see the slides?"},
        {"欧阳修",
         "可以听到，画面也很清晰。请把上周的进度先介绍一下，然后我们讨论下一步的计划和分工。"},
        {"12345", "OK"},
        {"a1", "The release 版本 2.4 is planned for 十一月三十日, 大家有问题吗?"},
        {"李四", "没有问题。"},
        {"Bob", "Supercalifragilisticexpialidocious-and-other-words-without-spaces-break-anywhere"},
        {"", "（未知发言人）"},
    };
    int id = 0;
    for (const auto& sentence : sentences) {
        add(id, QString::fromUtf8(sentence.text), QString::fromUtf8(sentence.name), id);
        ++id;
    }
    if (reading) {
        view().setPos(0, endPosition() + 120); // to the pixel, as no hand can
        add(7, "changed", "", 7);
    }
    QCOMPARE(g_bSubtitleFollow, !reading);
    const QByteArray name =
        QByteArray("subtitle_") + QTest::currentDataTag() + (hub().is4K() ? "_4k" : "");
    ZR_COMPARE_GOLDEN(m_panel->grab(), name.constData());
}

ZR_WIDGET_TEST_MAIN(TestSubtitlePanel)
#include "tst_qdlgsubtitle2.moc"
