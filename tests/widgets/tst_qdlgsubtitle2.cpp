// The subtitle panel: what its list holds, when it follows, how it scrolls, and how it looks.
#include "golden.h"
#include "testsupport.h"

#include "qdlgmain.h"
#include "qdlgsubtitle2.h"

#include <QGraphicsView>

using zrtest::hub;

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

} // namespace

class TestSubtitlePanel : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(zrtest::useGoldenFont());
        s_nextHandler = qInstallMessageHandler(countHeights);
    }
    void init()
    {
        m_dialog = std::make_unique<QDlgMain>(nullptr);
        m_panel = m_dialog->findChild<QDlgSubtitle2*>();
        m_dialog->resize(hub().scaled(1500), hub().scaled(700));
        m_dialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_dialog.get()));
        hub().setSubtitleOpen(true);
        m_dialog->showSubtitlePanel(true);
    }
    void cleanup()
    {
        m_dialog.reset();
        QZRScreenConfig::destroyInstance();
    }

    // --- Content ------------------------------------------------------------------------------

    void growsASentenceInPlace()
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
        add(7, grown->text());
        QCOMPARE(grown->itemHeight(), items().back()->itemHeight());
        heightsComputed();
        add(5, grown->text(), "欧阳修", 2); // what stays the same costs nothing
        QVERIFY(heightsComputed() == 0 && grown->color() == QColor(95, 203, 146));
        QCOMPARE(grown->name(), QStringLiteral("阳修"));
        add(5, "short again");
        QCOMPARE(grown->itemHeight(), before);
    }

    void keepsTheNewestInTheirOrder()
    {
        for (const int id : {7, -3, 2147483647, 0, -2147483647 - 1, 7})
            add(id, "text");
        fill(100);
        add(1, "too old");
        QCOMPARE(ids().size(), 64);
        QCOMPARE(ids(), hub().subtitles().keys());
        hub().setSubtitleOpen(true); // begins anew
        QVERIFY(ids().empty() && view().y() == 0);
        // The notice of a clearing comes after that of what was added since.
        add(1, "text");
        emit hub().notifyCleanSubtitle();
        QCOMPARE(ids(), QList<int>{1});
        QTest::keyClick(m_panel, Qt::Key_Escape);
        QVERIFY(m_panel->isVisible());
    }

    void shapesWhatIsInView()
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
        QVERIFY(heightsComputed() <= seen && isAtEnd());
        // An update does not wait until the list is painted. A resize leads a reader to the top.
        readBack();
        heightsComputed();
        m_panel->resize(300, m_panel->height());
        add(64, "changed");
        QVERIFY(view().y() == 0 && !g_bSubtitleFollow);
        QCOMPARE(items().front()->itemHeight(), height);
        QVERIFY(heightsComputed() <= seen);
    }

    void keepsWhatIsReadInPlace()
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
        QVERIFY(last->scenePos().y() == at && !g_bSubtitleFollow);
        hand(QEvent::MouseButtonPress);
        add(20, "no more");
        QCOMPARE(last->scenePos().y(), at);
        letGo();
        g_bSubtitleFollow = true;
        add(65, "new");
        QCOMPARE(last->scenePos().y(), at);
        view().setPos(0, -10);
        g_bSubtitleFollow = true;
        add(66, "new");
        QVERIFY(view().y() == 0 && !g_bSubtitleFollow);
    }

    // --- Following and scrolling --------------------------------------------------------------

    void followsUntilTheUserReadsBack()
    {
        fill(20);
        QVERIFY(isAtEnd());
        readBack();
        const double reading = view().y();
        QVERIFY(reading > endPosition() + 100);
        add(21, "waits");
        QVERIFY(ids().size() == 20 && view().y() == reading);
        drag(-220); // back at the end, which is reached in two drags
        drag(-100);
        add(22, "new");
        QVERIFY(ids().size() == 22 && isAtEnd());
        // What comes under a hand that does not move waits for its release, and so does the wheel.
        const double end = endPosition();
        hand(QEvent::MouseButtonPress);
        add(23, "new");
        wheel(1);
        QCOMPARE(view().y(), end);
        letGo();
        QVERIFY(ids().size() == 23 && isAtEnd());
        readBack(); // a list that is not full follows
        hub().clearSubtitles();
        add(1, "fresh");
        QCOMPARE(ids(), QList<int>{1});
    }

    void standsStillWhenHidden()
    {
        fill(40);
        stroke({0, 140});
        hand(QEvent::MouseButtonRelease, {0, 140});
        QVERIFY(list().isScrolling());
        m_panel->hide();
        QVERIFY(!list().isScrolling());
        const QPointF at = view().pos();
        heightsComputed();
        add(40, "not seen");
        add(41, "not seen either");
        hand(QEvent::MouseMove, {0, 50}); // of a button that was pressed when it was shown
        QTest::qWait(50);
        QVERIFY(view().pos() == at && heightsComputed() == 0);
        QCOMPARE(items().back()->text(), QString("Sentence"));
        g_bSubtitleFollow = false;
        m_panel->showPanel();
        QCOMPARE(items().back()->text(), QString("not seen either"));
        QVERIFY(isAtEnd()); // opened anew it follows
    }

    /// Also where heights turn out to be others on the way.
    void scrollsWithMomentum()
    {
        m_panel->hide();
        fill(40, QString("some words\n\n").repeated(15));
        m_panel->show();
        // Nothing moves sideways, or leaps. @return how far beyond an end it was pulled
        const auto flick = [&](int byPx) {
            double beyond = 0;
            stroke({120, byPx});
            hand(QEvent::MouseButtonRelease, {120, byPx});
            QPointF at = items().back()->scenePos();
            while (list().isScrolling()) {
                QTest::qWait(5);
                const QPointF before = std::exchange(at, items().back()->scenePos());
                if (at.x() != 0 || std::abs(at.y() - before.y()) > 400)
                    return qQNaN();
                beyond = std::max({beyond, view().y(), endPosition() - view().y()});
            }
            return beyond;
        };
        QCOMPARE(flick(180), 0.0);
        QVERIFY(view().y() > endPosition() + 230);
        view().setPos(0, -600);
        for (int i = 0; i < 20 && view().y() < 0; ++i)
            QVERIFY(flick(200) >= 0);
        QVERIFY(flick(200) > 5 && view().y() == 0); // pulled past the top, and back
        wheel(1);                                   // not past the ends
        QCOMPARE(view().y(), 0.0);
        wheel(-5000);
        QVERIFY(isAtEnd() && flick(-200) > 5 && isAtEnd());
    }

    void followsTheFirstFinger()
    {
        fill(40);
        auto touch = QTest::touchEvent(viewport(), QTest::createTouchDevice(), false);
        const auto slide = [&](int finger, int from, int to, int step) {
            for (int y = from; y != to; y += step) {
                touch.move(finger, {50, y}, viewport());
                if (finger == 0)
                    touch.stationary(1);
                touch.commit();
                QTest::qWait(15);
            }
        };
        touch.press(0, {50, 50}, viewport()).commit();
        touch.stationary(0).press(1, {50, 300}, viewport()).commit();
        slide(0, 50, 120, 10);
        touch.release(0, {50, 110}, viewport()).stationary(1).commit();
        QTRY_VERIFY(!list().isScrolling());
        const double reading = view().y();
        QVERIFY(reading > endPosition());
        slide(1, 300, 270, -2);
        touch.release(1, {50, 270}, viewport()).commit();
        QTRY_VERIFY(!list().isScrolling());
        QCOMPARE(view().y(), reading);
    }

    // --- Look ---------------------------------------------------------------------------------

    void looksFollowing()
    {
        addSentences();
        QVERIFY(g_bSubtitleFollow);
        const QByteArray scale = hub().is4K() ? "_4k" : "";
        ZR_COMPARE_GOLDEN(m_panel->grab(), "subtitle_following" + scale);
    }
    void looksReading()
    {
        addSentences();
        view().setPos(0, endPosition() + 120); // to the pixel, as no hand can
        add(7, "changed", "", 7);
        QVERIFY(!g_bSubtitleFollow);
        ZR_COMPARE_GOLDEN(m_panel->grab(), "subtitle_reading");
    }

private:
    static void add(int id, const QString& text, const QString& name = "Zhang San", int color = 0)
    {
        hub().AddOneSubtitle(id, color, name, text);
    }
    static void fill(int count, const QString& text = "Sentence")
    {
        for (int id = 1; id <= count; ++id)
            add(id, text);
    }
    static void addSentences()
    {
        const std::pair<const char*, const char*> sentences[] = {
            {"张三", "大家好，我们开始今天的会议。"},
            {"Alice Brown", "Good morning everyone. Can you all hear me and see the slides?"},
            {"欧阳修", "可以听到，画面也很清晰。请把上周的进度先介绍一下，"
                       "然后我们讨论下一步的计划和分工。"},
            {"12345", "OK"},
            {"a1", "The release 版本 2.4 is planned for 十一月三十日, 大家有问题吗?"},
            {"李四", "没有问题。"},
            {"Bob",
             "Supercalifragilisticexpialidocious-and-other-words-without-spaces-break-anywhere"},
            {"", "（未知发言人）"},
        };
        for (const auto& each : sentences)
            add(int(&each - sentences), each.second, each.first, int(&each - sentences));
    }
    ListObject& list() { return *m_panel->list(); }
    ViewObject& view() { return *list().viewObject(); }
    QWidget* viewport() { return m_panel->findChild<QGraphicsView*>()->viewport(); }
    /// In their order on the screen; none unless each stands below the one before.
    QList<RectObject*> items()
    {
        QList<RectObject*> result;
        qreal y = 0;
        for (QGraphicsItem* child : view().childItems()) {
            result.push_back(static_cast<RectObject*>(child));
            if (child->pos() != QPointF(0, y))
                return {};
            y += result.back()->itemHeight() + 10;
        }
        return y == view().contentHeight() ? result : QList<RectObject*>();
    }
    QList<int> ids()
    {
        QList<int> result;
        for (const RectObject* item : items())
            result.push_back(item->id());
        return result;
    }
    double endPosition() { return list().size().height() - view().contentHeight(); }
    bool isAtEnd() { return view().y() == endPosition(); }
    /// The mouse acts, this far from where it was pressed.
    void hand(QEvent::Type what, const QPoint& by = {0, 0})
    {
        zrtest::useMouse(*viewport(), what, QPoint(50, 250) + by);
    }
    void letGo(const QPoint& by = {0, 0})
    {
        hand(QEvent::MouseButtonRelease, by);
        QTRY_VERIFY(!list().isScrolling());
    }
    void wheel(int notches) { zrtest::turnWheel(*viewport(), {50, 250}, notches * 120); }
    /// Presses and moves in steps of 16 ms.
    void stroke(const QPoint& by)
    {
        hand(QEvent::MouseButtonPress);
        for (int step = 1; step <= 6; ++step) {
            QTest::qWait(16);
            hand(QEvent::MouseMove, by * step / 6);
        }
    }
    /// Lets go after a rest, so that nothing moves on.
    void drag(int byPx)
    {
        stroke({0, byPx});
        for (int rest = 0; rest < 8; ++rest) {
            QTest::qWait(50);
            hand(QEvent::MouseMove, {0, byPx});
        }
        letGo({0, byPx});
    }
    /// So that an update finds the end out of view.
    void readBack()
    {
        drag(200);
        add(items().back()->id(), "changed while reading");
        QVERIFY(!g_bSubtitleFollow);
    }

    std::unique_ptr<QDlgMain> m_dialog;
    QDlgSubtitle2* m_panel = nullptr;
};

ZR_WIDGET_TEST_MAIN(TestSubtitlePanel)
#include "tst_qdlgsubtitle2.moc"
