// The line edit and the text box that hosts embed: how they look, and how the box scrolls. What the
// keyboard does in a real window is tested with the library as a whole.
#include "golden.h"
#include "testsupport.h"

#include "controlhandle.h"
#include "qdlgtextedit.h"
#include "qmylineedit.h"
#include "qmytextedit.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QPointer>
#include <QScrollBar>
#include <QScroller>
#include <QValidator>

namespace {

/// An edit as a client styles and places it.
struct Edit : QMyLineEdit
{
    Edit()
    {
        setStyleSheet("QLineEdit{background:#20242C;border:1px solid #3A3E46;border-radius:4px;"
                      "color:#CDCDCD;padding:0 8px;selection-background-color:#5998FF;}"
                      "#room{background:#ff0000}");
        setGeometry(100, 100, 240, 36);
    }
    bool open()
    {
        show();
        activateWindow();
        return QTest::qWaitForWindowActive(this);
    }
};

QString longText()
{
    QStringList lines;
    for (int i = 1; i <= 60; ++i)
        lines << QStringLiteral("第%1项 会议内容").arg(i);
    return lines.join(QLatin1Char('\n'));
}

/// A text box on the screen, with more text than it shows.
struct Box : QDlgTextEdit
{
    Box()
        : QDlgTextEdit(QColor(32, 36, 44))
    {
        setGeometry(100, 100, 300, 200);
        textEdit()->setText(longText());
        show();
        (void)QTest::qWaitForWindowExposed(this);
    }
    QWidget& page = *textEdit()->viewport();
    QScrollBar& bar = *textEdit()->verticalScrollBar();
    QScroller& scroller = *QScroller::scroller(&page);
};

} // namespace

class TestTextControls : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(zrtest::useGoldenFont()); }
    void cleanup() { QZRScreenConfig::destroyInstance(); }

    // --- The line edit ------------------------------------------------------------------------

    void echoesAsItsGoldens()
    {
        const std::pair<const char*, QLineEdit::EchoMode> rows[] = {
            {"edit_normal", QLineEdit::Normal},
            {"edit_none", QLineEdit::NoEcho},
            {"edit_password", QLineEdit::Password},
            {"edit_password_on_edit", QLineEdit::PasswordEchoOnEdit},
            {"edit_placeholder", QLineEdit::Normal},
        };
        for (const auto& [name, mode] : rows) {
            Edit edit;
            edit.setPlaceholderText(QStringLiteral("请输入会议号"));
            edit.setEchoMode(mode);
            if (name != QByteArray("edit_placeholder"))
                edit.setText(QStringLiteral("会议 Room 5"));
            edit.setFocusPolicy(Qt::NoFocus); // no blinking cursor in the picture
            QVERIFY(edit.open());
            ZR_COMPARE_GOLDEN(edit.grab(), name);
            edit.setObjectName("room"); // a sheet's rule for a name that comes later
            QCOMPARE(edit.grab().toImage().pixelColor(5, 5), QColor(Qt::red));
        }
    }

    /// The host hears of it before the edit has done anything, and may release the edit.
    void hostHasTheLastWordInsideAMessage()
    {
        zrtest::HostDouble host;
        zrtest::hub().registerUICallback(&host);
        for (const bool byTab : {false, true}) {
            const QPointer<Edit> edit(new Edit);
            QVERIFY(edit->open());
            g_lineEdits.insert(edit);
            host.onMessage = [edit](const auto&) { g_lineEdits.release(edit); };
            if (byTab)
                QTest::keyClick(edit, Qt::Key_Tab);
            else
                QTest::mousePress(edit, Qt::LeftButton);
            QVERIFY(!edit || (!edit->isVisible() && !g_lineEdits.contains(edit)));
            QTRY_VERIFY(!edit);
        }
        zrtest::hub().unregisterUICallback(&host);
    }

    void replacesItsValidator()
    {
        Edit edit;
        QVERIFY(edit.setInputPattern("[0-9]{0,3}"));
        const QPointer<const QObject> first(edit.validator());
        QVERIFY(!edit.setInputPattern("(") && first && edit.validator() == first);
        QVERIFY(edit.setInputPattern("[a-z]*") && !first);
    }

    void menusSpeakChinese()
    {
        Edit edit;
        QVERIFY(edit.open());
        Box box;
        QWidget* const places[] = {&edit, &box.page, &box.bar};
        for (QWidget* place : places) {
            QContextMenuEvent event(QContextMenuEvent::Mouse, {2, 10}, place->mapToGlobal({2, 10}));
            QCoreApplication::sendEvent(place, &event);
            const QPointer<QWidget> menu = QApplication::activePopupWidget();
            QCOMPARE(!menu, place == &box.bar); // who drags has no use for one
            if (!menu)
                continue;
            for (const QAction* entry : menu->actions())
                QVERIFY(entry->isSeparator() || entry->text().at(0) >= QChar(0x2E80));
            menu->close();
            QTRY_VERIFY(!menu);
        }
    }

    // --- The text box -------------------------------------------------------------------------

    void textBoxLooksLikeItsGolden()
    {
        Box box;
        box.bar.setValue(box.bar.maximum() / 3);
        ZR_COMPARE_GOLDEN(box.grab(), "textbox_scrolled");
        QTest::keyClick(&box, Qt::Key_Escape);
        QVERIFY(!box.close() && box.isVisible());
    }

    void newTextStartsAtTheTop()
    {
        Box box;
        box.scroller.scrollTo({0, box.bar.maximum() * 1.0}, 400);
        QTRY_VERIFY(box.bar.value() > 0);
        box.textEdit()->setText(longText() + longText());
        QCOMPARE(box.bar.value(), 0);
        QTest::qWait(500);
        QCOMPARE(box.bar.value(), 0); // the animation has not gone on
    }

    void isScrolledByDraggingAgainAndAgain()
    {
        Box box;
        int before = 0;
        const auto pull = [&](QWidget& target, QPoint from, int toY, auto press) {
            before = box.bar.value();
            zrtest::drag(target, from, {from.x(), toY}, 15, press);
        };
        for (const auto press : {QEvent::MouseButtonPress, QEvent::MouseButtonDblClick}) {
            pull(box.page, {100, 180}, 20, press);
            QTRY_VERIFY(box.bar.value() > before + 50);
            box.scroller.stop();
        }
        QVERIFY(!box.textEdit()->textCursor().hasSelection());
        // The page must not go on under a mouse that drags the bar's handle, of 50 pixels.
        box.scroller.scrollTo({0, 400}, 2000);
        QEvent enter(QEvent::Enter);
        QCoreApplication::sendEvent(&box.bar, &enter);
        QCOMPARE(box.scroller.state(), QScroller::Inactive);
        box.bar.setValue(0);
        pull(box.bar, {4, 20}, 110, QEvent::MouseButtonPress);
        QVERIFY(box.bar.value() > box.bar.maximum() / 3);
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(&box.bar, &leave);
        pull(box.page, {100, 30}, 180, QEvent::MouseButtonPress);
        QTRY_VERIFY(box.bar.value() < before);
    }

    void breaksAnEndlessWord()
    {
        Box box;
        QElapsedTimer clock;
        clock.start();
        box.textEdit()->setText(QString(100000, QLatin1Char('W')));
        box.grab();
        QVERIFY2(clock.elapsed() < 5000, "Qt took its time to look for a place to break the word");
        QVERIFY(box.bar.maximum() > 1000);
    }
};

ZR_WIDGET_TEST_MAIN(TestTextControls)
#include "tst_textcontrols.moc"
