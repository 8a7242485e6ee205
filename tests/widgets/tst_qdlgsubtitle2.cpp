// The subtitle panel: what its list holds, when it follows, how it scrolls, and how it looks.
#include "golden.h"
#include "testsupport.h"

#include "qdlgmain.h"
#include "qdlgsubtitle2.h"
#include "qzrscreenconfig.h"

#include <QGraphicsView>
#include <QMouseEvent>
#include <QtTest>

#include <memory>
#include <vector>

namespace {

int s_heightsComputed = 0;
QtMessageHandler s_nextHandler = nullptr;

/// Every sentence that was shaped to its end is logged.
void countHeights(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (text.contains(QLatin1String("iTextWidth:")))
        ++s_heightsComputed;
    else if (type != QtDebugMsg)
        s_nextHandler(type, context, text);
}

int heightsComputed()
{
    return std::exchange(s_heightsComputed, 0);
}

/// Of a text that is shaped as a whole.
int wholeHeight(const QString& text, int width)
{
    const auto style = SubtitleStyle::shared();
    QTextLayout layout(text, style->itemFont);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine())
        line.setLineWidth(width - zr::subtitleTextLeft(style->metrics));
    layout.endLayout();
    return zr::subtitleItemHeight(layout.lineCount(), style->metrics);
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
    void takesAnyText();
    void needsNoRoom();
    void shapesWhatIsInView();
    void keepsWhatIsReadInPlace();
    void followsUntilTheUserReadsBack();
    void standsStillWhenHidden();
    void scrollsWithMomentum();
    void followsOneFinger();
    void looksFollowing() { looks("following"); }
    void looksReading() { looks("reading"); }

private:
    static QZRScreenConfig& hub() { return *QZRScreenConfig::getInstance(); }
    static void add(int id, const QString& text, const QString& name = "Zhang San", int color = 0)
    {
        hub().AddOneSubtitle(id, color, name, text);
    }
    static void fill(int count, const QString& text = "Sentence")
    {
        for (int id = 1; id <= count; ++id)
            add(id, text);
    }
    ListObject& list() { return *m_panel->list(); }
    ViewObject& view() { return *list().viewObject(); }
    QWidget* viewport() { return m_panel->findChild<QGraphicsView*>()->viewport(); }
    /// In their order on the screen, each checked to stand below the one before.
    std::vector<RectObject*> items()
    {
        std::vector<RectObject*> result;
        qreal y = 0;
        for (QGraphicsItem* child : view().childItems()) {
            result.push_back(static_cast<RectObject*>(child));
            if (child->pos() != QPointF(0, y))
                return {};
            y += result.back()->itemHeight() + 10;
        }
        return y == view().contentHeight() ? result : std::vector<RectObject*>();
    }
    std::vector<int> ids()
    {
        std::vector<int> result;
        for (const RectObject* item : items())
            result.push_back(item->id());
        return result;
    }
    double endPosition() { return list().size().height() - view().contentHeight(); }
    static QTouchDevice* finger()
    {
        static QTouchDevice* const device = QTest::createTouchDevice();
        return device;
    }
    /// Of the left button, or of a finger.
    void hand(Qt::TouchPointState what, const QPoint& at)
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
        const auto type = press     ? QEvent::MouseButtonPress
                          : release ? QEvent::MouseButtonRelease
                                    : QEvent::MouseMove;
        QMouseEvent event(type, at, viewport()->mapToGlobal(at),
                          press || release ? Qt::LeftButton : Qt::NoButton,
                          release ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(viewport(), &event);
    }
    void wheel(int notches)
    {
        const QPoint at(50, 250);
        QWheelEvent event(at, viewport()->mapToGlobal(at), {}, {0, notches * 120}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(viewport(), &event);
    }
    /// Presses and moves in steps of 16 ms.
    void stroke(const QPoint& from, const QPoint& by)
    {
        hand(Qt::TouchPointPressed, from);
        for (int step = 1; step <= 6; ++step) {
            QTest::qWait(16);
            hand(Qt::TouchPointMoved, from + by * step / 6);
        }
    }
    /// Lets go after a rest, so that nothing moves on.
    void drag(int byPx)
    {
        stroke({50, 250}, {0, byPx});
        for (int rest = 0; rest < 8; ++rest) {
            QTest::qWait(50);
            hand(Qt::TouchPointMoved, {50, 250 + byPx});
        }
        hand(Qt::TouchPointReleased, {50, 250 + byPx});
        QTRY_VERIFY(!list().isScrolling());
    }
    /// So that an update finds the end out of view.
    void readBack()
    {
        drag(200);
        add(items().back()->id(), "changed while reading");
        QVERIFY(!g_bSubtitleFollow);
    }
    void looks(const QByteArray& name);

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

// --- Content ----------------------------------------------------------------------------------

void TestSubtitlePanel::growsASentenceInPlace()
{
    add(5, "short");
    add(6, "below");
    RectObject* const grown = items().front();
    const int before = grown->itemHeight();
    heightsComputed();
    for (int i = 1; i <= 20; ++i)
        add(5, QString("a sentence that is growing ").repeated(i));
    QCOMPARE(heightsComputed(), 20);
    QCOMPARE(items().front(), grown); // and what is below has moved
    QCOMPARE(grown->itemHeight(), wholeHeight(grown->text(), 300));
    // What stays the same costs nothing.
    add(5, grown->text(), QString::fromUtf8("欧阳修"), 2);
    QCOMPARE(heightsComputed(), 0);
    QCOMPARE(grown->color(), QColor(95, 203, 146));
    QCOMPARE(grown->name(), QString::fromUtf8("阳修"));
    add(5, "short again");
    QCOMPARE(grown->itemHeight(), before);
}

void TestSubtitlePanel::keepsTheNewestInTheirOrder()
{
    for (const int id : {7, -3, 2147483647, 0, -2147483647 - 1, 7})
        add(id, "text");
    QCOMPARE(ids(), (std::vector<int>{-2147483647 - 1, -3, 0, 7, 2147483647}));
    fill(100);
    add(1, "too old");
    const QList<int> stored = hub().subtitles().keys();
    QCOMPARE(ids(), std::vector<int>(stored.begin(), stored.end()));
    hub().clearSubtitles();
    QVERIFY(ids().empty());
    QCOMPARE(view().pos(), QPointF(0, 0));
    // The notice of a clearing comes after that of what was added since.
    add(1, "text");
    emit hub().notifyCleanSubtitle();
    QCOMPARE(ids(), std::vector<int>{1});
    QTest::keyClick(m_panel, Qt::Key_Escape);
    QVERIFY(m_panel->isVisible());
    QCOMPARE(viewport()->parentWidget()->focusPolicy(), Qt::NoFocus);
}

/// As high as when all of it is broken in one go.
void TestSubtitlePanel::takesAnyText()
{
    const QString texts[] = {
        "a\nb\r\nc\n\nd",
        QString(10000, QChar(0x5B57)),
        QString("some words of it ").repeated(700) + "\n",
        QString("a\n").repeated(2000),
        "a" + QString(5000, ' ') + "b",
        QString(3000, QChar(0xD83D)),
        QString::fromUtf8("👍🏽 é ").repeated(1000),
        QString::fromUtf8("שלום עולם abc ").repeated(300),
    };
    for (const QString& text : texts) {
        add(1, text);
        add(2, "after it");
        QCOMPARE(items().size(), 2U);
        QCOMPARE(items().front()->itemHeight(), wholeHeight(items().front()->text(), 300));
        QCOMPARE(view().y(), std::min(0.0, endPosition()));
        m_panel->grab();
        hub().clearSubtitles();
    }
}

void TestSubtitlePanel::needsNoRoom()
{
    for (const QSize& size : {QSize(0, 0), QSize(4, 4), QSize(275, 300)}) {
        m_dialog->hide();
        m_dialog->setGeometry({{}, size});
        m_dialog->showSubtitlePanel(true);
        fill(10, QString("text ").repeated(100));
        m_dialog->show();
        QTRY_COMPARE(items().size(), 10U);
        QVERIFY(items().back()->itemHeight() <= wholeHeight("one line", 300));
        m_dialog->resize(1500, 700);
        QTRY_VERIFY(items().back()->itemHeight() >= wholeHeight(items().back()->text(), 300));
    }
}

void TestSubtitlePanel::shapesWhatIsInView()
{
    fill(64, QString("some words of it ").repeated(8));
    const int height = items().back()->itemHeight();
    const int seen = qRound(list().size().height()) / height + 2;
    heightsComputed();
    add(3, "out of view");
    for (int width = 290; width >= 200; width -= 10)
        m_panel->resize(width, m_panel->height());
    QCOMPARE(heightsComputed(), 0);
    QTRY_VERIFY(items().back()->itemHeight() > height * 5 / 4);
    QVERIFY(heightsComputed() <= seen);
    QCOMPARE(view().y(), endPosition());
    // An update does not wait until the list is painted. A resize leads a reader to the top.
    readBack();
    heightsComputed();
    m_panel->resize(300, m_panel->height());
    add(64, "changed");
    QCOMPARE(view().pos(), QPointF(0, 0));
    QVERIFY(!g_bSubtitleFollow);
    QCOMPARE(items().front()->itemHeight(), height);
    QVERIFY(heightsComputed() <= seen);
}

void TestSubtitlePanel::keepsWhatIsReadInPlace()
{
    m_panel->hide(); // so that all heights are estimated first, and too low
    fill(64, QString("some words\n\n").repeated(8));
    add(63, QString("many words ").repeated(2000));
    m_panel->show();
    const RectObject* last = items().back();
    for (int i = 0; i < 12; ++i) {
        const double above = last->scenePos().y() - view().y();
        wheel(1);
        const double at = view().y();
        m_panel->grab();
        QCOMPARE(last->scenePos().y(), at + above);
    }
    QVERIFY(items()[62]->knownHeight() > 10000);
    QVERIFY(view().y() > endPosition() + 12 * 30 && view().y() < endPosition() + 12 * 150);
    // Something above it grows, under a hand, too, and the oldest sentence goes.
    const double at = last->scenePos().y();
    add(20, QString("something above it grows ").repeated(10));
    QVERIFY(!g_bSubtitleFollow);
    QCOMPARE(last->scenePos().y(), at);
    hand(Qt::TouchPointPressed, {50, 250});
    add(20, "no more");
    QCOMPARE(last->scenePos().y(), at);
    hand(Qt::TouchPointReleased, {50, 250});
    QTRY_VERIFY(!list().isScrolling());
    g_bSubtitleFollow = true;
    add(65, "new");
    QCOMPARE(last->scenePos().y(), at);
    view().setPos(0, -10);
    g_bSubtitleFollow = true;
    add(66, "new");
    QCOMPARE(view().pos(), QPointF(0, 0));
    QVERIFY(!g_bSubtitleFollow);
}

// --- Following and scrolling ------------------------------------------------------------------

void TestSubtitlePanel::followsUntilTheUserReadsBack()
{
    fill(20);
    QCOMPARE(view().y(), endPosition());
    readBack();
    const double reading = view().y();
    QVERIFY(reading > endPosition() + 100);
    add(21, "waits");
    QCOMPARE(ids().size(), 20U);
    QCOMPARE(view().y(), reading);
    // Back at the end, which is reached in two drags.
    drag(-220);
    drag(-100);
    QCOMPARE(ids().size(), 20U);
    add(22, "new");
    QCOMPARE(ids().size(), 22U);
    QCOMPARE(view().y(), endPosition());
    // What comes under a hand that does not move waits for its release, and so does the wheel.
    const double end = endPosition();
    hand(Qt::TouchPointPressed, {50, 250});
    add(23, "new");
    wheel(1);
    QCOMPARE(view().y(), end);
    hand(Qt::TouchPointReleased, {50, 250});
    QTRY_COMPARE(ids().size(), 23U);
    QCOMPARE(view().y(), endPosition());
    // A list that is not full follows.
    readBack();
    hub().clearSubtitles();
    add(1, "fresh");
    QCOMPARE(ids(), std::vector<int>{1});
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
    heightsComputed();
    add(40, "not seen");
    add(41, "not seen either");
    hand(Qt::TouchPointMoved, {50, 300}); // of a button that was pressed when it was shown
    QTest::qWait(50);
    QCOMPARE(view().pos(), at);
    QCOMPARE(heightsComputed(), 0);
    QCOMPARE(items().back()->text(), QString("Sentence"));
    g_bSubtitleFollow = false;
    m_panel->showPanel();
    QCOMPARE(ids().size(), 41U);
    QCOMPARE(items().back()->text(), QString("not seen either"));
    QCOMPARE(view().y(), endPosition()); // opened anew it follows
}

/// Also where heights turn out to be others on the way.
void TestSubtitlePanel::scrollsWithMomentum()
{
    m_touch = true;
    m_panel->hide();
    fill(40, QString("some words\n\n").repeated(15));
    m_panel->show();
    // Nothing moves sideways, or leaps. @return how far beyond an end it was pulled
    const auto flick = [&](int byPx) {
        double beyond = 0;
        stroke({50, 250}, {120, byPx});
        hand(Qt::TouchPointReleased, {170, 250 + byPx});
        QElapsedTimer timer;
        timer.start();
        for (double at = items().back()->scenePos().y(); list().isScrolling();) {
            QTest::qWait(5);
            const QPointF now = items().back()->scenePos();
            if (now.x() != 0 || std::abs(now.y() - at) > 4.0 * double(timer.restart()) + 200)
                return qQNaN();
            at = now.y();
            beyond = std::max({beyond, view().y(), endPosition() - view().y()});
        }
        return beyond;
    };
    QCOMPARE(flick(180), 0.0);
    QVERIFY(view().y() > endPosition() + 230);
    view().setPos(0, -600);
    for (int i = 0; i < 20 && view().y() < 0; ++i)
        QVERIFY(flick(200) >= 0);
    QVERIFY(flick(200) > 5); // pulled past the top, and back
    QCOMPARE(view().y(), 0.0);
    wheel(1); // not past the ends
    QCOMPARE(view().y(), 0.0);
    wheel(-5000);
    QCOMPARE(view().y(), endPosition());
    QVERIFY(flick(-200) > 5);
    QCOMPARE(view().y(), endPosition());
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

// --- Look -------------------------------------------------------------------------------------

void TestSubtitlePanel::looks(const QByteArray& name)
{
    const bool reading = name == "reading";
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
    const QByteArray golden = "subtitle_" + name + (hub().is4K() ? "_4k" : "");
    ZR_COMPARE_GOLDEN(m_panel->grab(), golden.constData());
}

ZR_WIDGET_TEST_MAIN(TestSubtitlePanel)
#include "tst_qdlgsubtitle2.moc"
