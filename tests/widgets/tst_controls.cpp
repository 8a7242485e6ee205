// The controls that hosts embed: the date picker, the line edit and the text box, how they look and
// what they tell. What the keyboard does in a real window is tested with the library as a whole.
#include "golden.h"
#include "testsupport.h"

#include "controlhandle.h"
#include "qdlgtextedit.h"
#include "qmylineedit.h"
#include "qmytextedit.h"
#include "selectdatetimewidget.h"

#include <QContextMenuEvent>
#include <QLabel>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QScroller>
#include <QValidator>

#include <initializer_list>

namespace {

QDateTime at(int y, int mo, int d, int h, int mi, int s = 0)
{
    return {QDate(y, mo, d), QTime(h, mi, s)};
}

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

class TestControls : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(zrtest::useGoldenFont()); }
    void init()
    {
        m_now = at(2026, 11, 21, 18, 30, 15);
        m_host = std::make_unique<zrtest::HostDouble>();
        zrtest::hub().registerDateCallback(m_host.get());
        m_widget = std::make_unique<SelectDateTimeWidget>(false, [this] { return m_now; });
    }
    void cleanup()
    {
        m_widget.reset();
        zrtest::hub().unregisterDateCallback(m_host.get());
        QZRScreenConfig::destroyInstance();
    }

    // --- The date picker ----------------------------------------------------------------------

    void pickerLooksLikeItsGoldens()
    {
        const struct
        {
            const char* name;
            QDateTime now, chosen;
        } rows[] = {
            {"picker_monday", at(2021, 1, 31, 12, 0), at(2021, 2, 10, 9, 5)},
            {"picker_sixrows", at(2026, 3, 11, 8, 0), at(2026, 3, 29, 23, 59)},
            {"picker_today", at(2026, 11, 21, 18, 30), at(2026, 11, 21, 18, 30)},
            {"picker_past", at(2026, 11, 21, 18, 30), at(2026, 11, 21, 7, 54)},
        };
        for (const auto& row : rows) {
            m_now = row.now;
            for (const QByteArray scale : {"", "_4k"}) {
                m_widget = std::make_unique<SelectDateTimeWidget>(!scale.isEmpty(),
                                                                  [this] { return m_now; });
                show(zr::choiceOf(row.chosen));
                ZR_COMPARE_GOLDEN(m_widget->grab(), row.name + scale);
            }
        }
    }

    void confirmsWhatWasClicked()
    {
        show({2027, 3, 1, 0, 0, 33});
        for (QPushButton* each : {dayButton(9), rowButton("小时", 5), rowButton("分钟", 7)})
            click(each);
        QTest::ignoreMessage(QtDebugMsg, "2027年03月09日 05:07:33");
        click(button("OK"));
        const ZRDateRecord* const first = told();
        QVERIFY(!m_widget->isVisible() && first && first->day == 9 && first->minute == 7);
        // The selection is there when it opens again. The record is the same one, however often it
        // is confirmed: hosts are not to free it.
        m_widget->show();
        press({Qt::Key_Return});
        QVERIFY(told() == first && first->hour == 5);
        m_widget->show();
        click(button("Now"));
        QVERIFY(!m_widget->isVisible() && told() == first && m_host->messages.size() == 3);
        QVERIFY(first->year == 2026 && first->month == 11 && first->hour == 18);
    }

    void refusesWhatPassesWhileItIsOpen()
    {
        m_now = QDateTime(QDate(2026, 11, 21), QTime(18, 30, 59, 900));
        show({2026, 11, 21, 18, 30, 0});
        QVERIFY(isOKLit());
        m_now = at(2026, 11, 22, 0, 0); // with the minute, the day has ended too
        QTRY_VERIFY(!isOKLit());
        QVERIFY(!dayButton(21)->isEnabled());
        press({Qt::Key_Enter});
        click(dayButton(22));
        QVERIFY(isOKLit());
        show({-1, -1, -1, -1, -1, -1});
        m_now = m_now.addSecs(60); // before a timer has come to it
        click(button("OK"));
        QVERIFY(m_host->messages.empty() && !isOKLit());
    }

    void clearsAndMovesThroughTheMonths()
    {
        show({2028, 1, 31, 20, 57, 0});
        const std::pair<const char*, QDate> moves[] = {{"NextMonth", {2028, 2, 29}},
                                                       {"NextYear", {2029, 2, 28}},
                                                       {"PrevMonth", {2029, 1, 28}},
                                                       {"PrevYear", {2028, 1, 28}}};
        for (const auto& [name, day] : moves) {
            click(button(name));
            QCOMPARE(title(), day.toString(QStringLiteral("yyyy年 M月")));
            QVERIFY(dayButton(day.day())->styleSheet().contains("#5998FF"));
        }
        click(button("Clear"));
        QCOMPARE(m_host->count(ZRDATE_CLEARED), 1);
        QVERIFY(m_widget->isVisible() && !isOKLit());
        for (const QPushButton* const any : m_widget->findChildren<QPushButton*>())
            QVERIFY(any->isHidden() || !any->styleSheet().startsWith("border:1px"));
        for (const char* name : {"OK", "NextMonth"})
            click(button(name));
        click(dayButton(29));
        click(rowButton("小时", 1));
        QVERIFY(!isOKLit()); // no minute yet
        click(rowButton("分钟", 2));
        QVERIFY(isOKLit() && m_host->messages.size() == 1);
    }

    void choosesWithTheKeyboard()
    {
        show({2026, 11, 30, 22, 8, 0});
        press({Qt::Key_Right, Qt::Key_Up, Qt::Key_PageDown});
        QVERIFY(title() == QStringLiteral("2026年 12月") && !isLit("小时"));
        press({Qt::Key_Tab, Qt::Key_Down, Qt::Key_Down});
        QVERIFY(isLit("小时") && !isLit("分钟"));
        // Over the sheet to the minutes.
        press({Qt::Key_Backtab, Qt::Key_Backtab, Qt::Key_PageUp, Qt::Key_PageUp});
        QVERIFY(isLit("分钟") && !rowButton("分钟", 0)->visibleRegion().isEmpty());
        QCOMPARE(m_widget->selection(), (zr::DateChoice{2026, 12, 24, 23, 0, 0}));
        // What is still held down, or goes to the host, confirms nothing.
        press({Qt::Key_Return}, true);
        if (QGuiApplication::platformName() != "windows") { // sends no keys past the focus
            QApplication::setActiveWindow(nullptr);
            QTest::keyClick(m_widget.get(), Qt::Key_Return);
        }
        QVERIFY(m_widget->isVisible());
        press({Qt::Key_Escape});
        QVERIFY(!m_widget->isVisible() && m_host->messages.empty());
        show({2026, 12, 5, 1, 1, 0}); // the arrows begin with the days
        press({Qt::Key_Left});
        QVERIFY(m_widget->selection().day == 4 && !isLit("分钟"));
    }

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

private:
    void show(const zr::DateChoice& choice)
    {
        m_widget->setSelection(choice);
        m_widget->refreshInterface();
        m_widget->show();
    }
    QPushButton* button(const char* name)
    {
        return m_widget->findChild<QPushButton*>(QStringLiteral("pushButton") + name);
    }
    QPushButton* dayButton(int day)
    {
        for (QPushButton* each :
             m_widget->findChild<QWidget*>("dateContent")->findChildren<QPushButton*>()) {
            if (each->isVisible() && each->text() == QString::number(day))
                return each;
        }
        return nullptr;
    }
    QPushButton* rowButton(const char* list, int row)
    {
        return m_widget->findChild<QScrollArea*>(list)->findChildren<QPushButton*>().at(row);
    }
    QString title() { return m_widget->findChild<QLabel*>("labelTitle")->text(); }
    bool isOKLit() { return button("OK")->styleSheet().contains("background: #5998FF"); }
    /// Whether the keys are a list's.
    bool isLit(const char* list)
    {
        const auto labels = m_widget->findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(), [list](const QLabel* label) {
            return label->text() == list
                   && label->palette().color(QPalette::WindowText) == QColor("#5998FF");
        });
    }
    void click(QPushButton* which) { QTest::mouseClick(which, Qt::LeftButton); }
    void press(std::initializer_list<Qt::Key> keys, bool held = false)
    {
        QApplication::setActiveWindow(m_widget.get());
        m_widget->setFocus();
        for (const Qt::Key key : keys) {
            QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, {}, held);
            QApplication::sendEvent(m_widget.get(), &event);
        }
    }
    /// The moment that the host was told last.
    const ZRDateRecord* told() const
    {
        return m_host->messages.empty() || m_host->messages.back().id != ZRDATE_CHOSEN
                   ? nullptr
                   : reinterpret_cast<const ZRDateRecord*>(m_host->messages.back().wParam);
    }

    QDateTime m_now;
    std::unique_ptr<SelectDateTimeWidget> m_widget;
    std::unique_ptr<zrtest::HostDouble> m_host;
};

ZR_WIDGET_TEST_MAIN(TestControls)
#include "tst_controls.moc"
