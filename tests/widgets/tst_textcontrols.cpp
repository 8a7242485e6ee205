// The line edit and the text box that hosts embed: how they look, what they report, how they
// scroll. What the keyboard does in a real window is tested with the library as a whole.
#include "golden.h"
#include "testsupport.h"

#include "controlhandle.h"
#include "qdlgtextedit.h"
#include "qmylineedit.h"
#include "qmytextedit.h"
#include "qzrscreenconfig.h"

#include <QContextMenuEvent>
#include <QInputMethodEvent>
#include <QMenu>
#include <QPointer>
#include <QRegExpValidator>
#include <QRegularExpression>
#include <QScrollBar>
#include <QScroller>

#include <memory>
#include <vector>

namespace {

/// Stands for a host.
class Inbox : public CAbsUIMsgCallback
{
public:
    Inbox() { QZRScreenConfig::getInstance()->registerUICallback(this); }
    ~Inbox() override { QZRScreenConfig::getInstance()->unregisterUICallback(this); }
    bool UIMsgNotify(unsigned long dwMsg, unsigned long long wParam, long long) override
    {
        ids.push_back(dwMsg);
        sender = wParam;
        if (onMessage)
            onMessage();
        return true;
    }
    std::vector<unsigned long> ids;
    unsigned long long sender = 0;
    std::function<void()> onMessage;
};

/// Drags with the left button held. `press` may also be the second one of a double click.
void drag(QWidget& inside, const QPoint& from, const QPoint& to,
          QEvent::Type press = QEvent::MouseButtonPress)
{
    const auto send = [&inside](QEvent::Type type, const QPoint& at, Qt::MouseButton button,
                                Qt::MouseButtons held) {
        QMouseEvent event(type, at, inside.mapToGlobal(at), button, held, {});
        QCoreApplication::sendEvent(&inside, &event);
    };
    constexpr int kSteps = 15;
    send(press, from, Qt::LeftButton, Qt::LeftButton);
    for (int i = 1; i <= kSteps; ++i) {
        QTest::qWait(10);
        send(QEvent::MouseMove, from + (to - from) * i / kSteps, Qt::NoButton, Qt::LeftButton);
    }
    send(QEvent::MouseButtonRelease, to, Qt::LeftButton, {});
}

QString clientSheet()
{
    return QStringLiteral(
        "QLineEdit{background:#20242C;border:1px solid #3A3E46;border-radius:4px;color:#CDCDCD;"
        "padding:0 8px;selection-background-color:#5998FF;}");
}

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
    void initTestCase();
    void cleanup();

    void echoesAsItsGolden_data();
    void echoesAsItsGolden();
    void showsWhatAnInputMethodComposes();
    void reportsClicksAndTab();
    void maySurviveItsRelease();
    void ownsItsValidator();
    void followsTheSheetForItsName();
    void menusSpeakChinese();
    void textBoxLooksLikeItsGolden();
    void newTextStartsAtTheTop();
    void isScrolledByDraggingAgainAndAgain();
    void isScrolledByItsBar();
    void breaksAnEndlessWord();

private:
    /// An edit as a client styles and places it.
    void show(QMyLineEdit& edit, const QString& styleSheet = clientSheet());
};

void TestTextControls::initTestCase()
{
    QVERIFY2(zrtest::useGoldenFont(), "the package fonts-noto-cjk is not installed");
}

void TestTextControls::cleanup()
{
    QZRScreenConfig::destroyInstance();
}

void TestTextControls::show(QMyLineEdit& edit, const QString& styleSheet)
{
    edit.setStyleSheet(styleSheet);
    edit.setGeometry(100, 100, 240, 36);
    edit.show();
    edit.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&edit));
}

void TestTextControls::echoesAsItsGolden_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("text");
    QTest::newRow("edit_normal") << int(QLineEdit::Normal) << "会议 Room 5";
    QTest::newRow("edit_none") << int(QLineEdit::NoEcho) << "会议 Room 5";
    QTest::newRow("edit_password") << int(QLineEdit::Password) << "会议 Room 5";
    QTest::newRow("edit_password_on_edit") << int(QLineEdit::PasswordEchoOnEdit) << "会议 Room 5";
    QTest::newRow("edit_placeholder") << int(QLineEdit::Normal) << "";
}

void TestTextControls::echoesAsItsGolden()
{
    QFETCH(int, mode);
    QFETCH(QString, text);
    QMyLineEdit edit;
    edit.setPlaceholderText(QStringLiteral("请输入会议号"));
    edit.setEchoMode(static_cast<QLineEdit::EchoMode>(mode));
    edit.setText(text);
    edit.setFocusPolicy(Qt::NoFocus); // no blinking cursor in the picture
    show(edit);
    ZR_COMPARE_GOLDEN(edit.grab(), QTest::currentDataTag());
}

void TestTextControls::showsWhatAnInputMethodComposes()
{
    QMyLineEdit edit;
    show(edit);
    edit.setText(QStringLiteral("会"));
    const QImage before = edit.grab().toImage();
    QTextCharFormat underlined;
    underlined.setUnderlineStyle(QTextCharFormat::SingleUnderline);
    QInputMethodEvent composing(
        QStringLiteral("yi"),
        {{QInputMethodEvent::TextFormat, 0, 2, underlined}, {QInputMethodEvent::Cursor, 2, 0, {}}});
    QCoreApplication::sendEvent(&edit, &composing);
    QVERIFY(!zrtest::looksLike(edit.grab().toImage(), before));
    QCOMPARE(edit.text(), QStringLiteral("会"));
    QInputMethodEvent committing;
    committing.setCommitString(QStringLiteral("议"));
    QCoreApplication::sendEvent(&edit, &committing);
    QCOMPARE(edit.text(), QStringLiteral("会议"));
    // No input method may see a password.
    edit.setEchoMode(QLineEdit::Password);
    QVERIFY(edit.inputMethodHints() & Qt::ImhHiddenText);
}

void TestTextControls::reportsClicksAndTab()
{
    QMyLineEdit edit;
    show(edit);
    Inbox inbox;
    QTest::mouseClick(&edit, Qt::RightButton);
    QTest::keyClick(&edit, Qt::Key_A);
    QVERIFY(inbox.ids.empty());
    QTest::ignoreMessage(QtDebugMsg, "QMyLineEidt LBtnDown");
    QTest::ignoreMessage(QtDebugMsg, "QMyLineEidt LBtnUp");
    QTest::mouseClick(&edit, Qt::LeftButton);
    // The message comes before the press has an effect.
    inbox.onMessage = [&edit] { edit.setText(QStringLiteral("from the host")); };
    QTest::ignoreMessage(QtDebugMsg, "QMyLineEdit Tab Press");
    QTest::keyClick(&edit, Qt::Key_Tab);
    const std::vector<unsigned long> expected{ZRMSG_EDIT_LBUTTON_DOWN, ZRMSG_EDIT_LBUTTON_UP,
                                              ZRMSG_EDIT_KEY};
    QVERIFY(inbox.ids == expected);
    QCOMPARE(inbox.sender, reinterpret_cast<unsigned long long>(&edit));
    QCOMPARE(edit.text(), QStringLiteral("from the host")); // Tab is no text
}

void TestTextControls::maySurviveItsRelease()
{
    for (const bool byTab : {false, true}) {
        auto* const edit = new QMyLineEdit;
        const QPointer<QMyLineEdit> watched(edit);
        show(*edit);
        g_lineEdits.insert(edit);
        Inbox inbox;
        inbox.onMessage = [edit] { g_lineEdits.release(edit); };
        if (byTab)
            QTest::keyClick(edit, Qt::Key_Tab);
        else
            QTest::mousePress(edit, Qt::LeftButton);
        QVERIFY(!watched || !watched->isVisible());
        QVERIFY(!g_lineEdits.contains(edit));
        QTRY_VERIFY(!watched);
    }
    releaseAllHandles();
}

void TestTextControls::ownsItsValidator()
{
    auto edit = std::make_unique<QMyLineEdit>();
    show(*edit);
    QVERIFY(edit->setInputPattern(QStringLiteral("[0-9]{0,3}")));
    const QPointer<const QObject> first(edit->validator());
    QTest::keyClicks(edit.get(), "1a2b345");
    QCOMPARE(edit->text(), QStringLiteral("123"));
    QVERIFY(!edit->setInputPattern(QStringLiteral("(")));
    QCOMPARE(edit->validator(), first.data());
    QVERIFY(edit->setInputPattern(QStringLiteral("[a-z]*")));
    QVERIFY(!first);
    const QPointer<const QObject> second(edit->validator());
    edit.reset();
    QVERIFY(!second);
}

void TestTextControls::followsTheSheetForItsName()
{
    QMyLineEdit edit;
    show(edit, QStringLiteral("#room{background:#ff0000}"));
    edit.setObjectName(QStringLiteral("room"));
    QCOMPARE(edit.grab().toImage().pixelColor(5, 5), QColor(Qt::red));
}

void TestTextControls::menusSpeakChinese()
{
    QMyLineEdit edit;
    show(edit);
    Box box;
    QWidget* const places[] = {&edit, &box.page};
    for (QWidget* place : places) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, {20, 10}, place->mapToGlobal({20, 10}));
        QCoreApplication::sendEvent(place, &event);
        const QPointer<QWidget> menu = QApplication::activePopupWidget();
        QVERIFY(menu);
        QStringList latin;
        for (const QAction* entry : menu->actions()) {
            if (!entry->isSeparator() && entry->text().at(0) < QChar(0x2E80))
                latin << entry->text();
        }
        QCOMPARE(latin, QStringList());
        menu->close();
        QTRY_VERIFY(!menu);
    }
    QContextMenuEvent onBar(QContextMenuEvent::Mouse, {2, 10}, box.bar.mapToGlobal({2, 10}));
    QCoreApplication::sendEvent(&box.bar, &onBar);
    QVERIFY(!QApplication::activePopupWidget());
}

void TestTextControls::textBoxLooksLikeItsGolden()
{
    Box box;
    box.bar.setValue(box.bar.maximum() / 3);
    ZR_COMPARE_GOLDEN(box.grab(), "textbox_scrolled");
    QVERIFY(!box.textEdit()->horizontalScrollBar()->isVisible());
    QTest::keyClick(&box, Qt::Key_Escape);
    QVERIFY(!box.close());
    QVERIFY(box.isVisible());
}

void TestTextControls::newTextStartsAtTheTop()
{
    Box box;
    box.scroller.scrollTo({0, box.bar.maximum() * 1.0}, 400);
    QTRY_VERIFY(box.bar.value() > 0);
    QTest::ignoreMessage(QtDebugMsg, "pScroller->stop()");
    box.textEdit()->setText(longText() + longText());
    QCOMPARE(box.bar.value(), 0);
    QTest::qWait(500);
    QCOMPARE(box.bar.value(), 0); // the animation has not gone on
}

void TestTextControls::isScrolledByDraggingAgainAndAgain()
{
    Box box;
    int before = 0;
    for (const auto press : {QEvent::MouseButtonPress, QEvent::MouseButtonDblClick}) {
        drag(box.page, {100, 180}, {100, 20}, press);
        QTRY_VERIFY(box.bar.value() > before + 50);
        box.scroller.stop();
        before = box.bar.value();
    }
    QVERIFY(!box.textEdit()->textCursor().hasSelection());
}

void TestTextControls::isScrolledByItsBar()
{
    Box box;
    box.scroller.scrollTo({0, 400}, 2000);
    QTRY_VERIFY(box.bar.value() > 0);
    // Its handle has the height of 50 pixels; the page must not go on under it.
    QEvent enter(QEvent::Enter);
    QCoreApplication::sendEvent(&box.bar, &enter);
    QCOMPARE(box.scroller.state(), QScroller::Inactive);
    box.bar.setValue(0);
    drag(box.bar, {4, 20}, {4, 110});
    QVERIFY(box.bar.value() > box.bar.maximum() / 3);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&box.bar, &leave);
    const int before = box.bar.value();
    drag(box.page, {100, 30}, {100, 180});
    QTRY_VERIFY(box.bar.value() < before);
}

void TestTextControls::breaksAnEndlessWord()
{
    Box box;
    QElapsedTimer clock;
    clock.start();
    box.textEdit()->setText(QString(100000, QLatin1Char('W')));
    box.grab();
    QVERIFY2(clock.elapsed() < 5000, "Qt took its time to look for a place to break the word");
    QVERIFY(box.bar.maximum() > 1000);
}

ZR_WIDGET_TEST_MAIN(TestTextControls)
#include "tst_textcontrols.moc"
