// The line edit and the text box that hosts embed: how they look, what they report, how they
// scroll. What the keyboard does in a real window is tested with the library as a whole.
#include "golden.h"
#include "testsupport.h"

#include "controlhandle.h"
#include "qdlgtextedit.h"
#include "qmylineedit.h"
#include "qmytextedit.h"
#include "qzrscreenconfig.h"

#include <QInputMethodEvent>
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

/// Drags with the left button held, as a user does: through the window.
void drag(QWidget& inside, const QPoint& from, const QPoint& to)
{
    QWindow* const window = inside.window()->windowHandle();
    const QPoint origin = inside.mapTo(inside.window(), QPoint());
    constexpr int kSteps = 15;
    QTest::mousePress(window, Qt::LeftButton, {}, origin + from);
    for (int i = 1; i <= kSteps; ++i)
        QTest::mouseMove(window, origin + from + (to - from) * i / kSteps, 10);
    QTest::mouseRelease(window, Qt::LeftButton, {}, origin + to);
}

QString longText()
{
    QStringList lines;
    for (int i = 1; i <= 60; ++i)
        lines << QStringLiteral("第%1项 会议内容").arg(i);
    return lines.join(QLatin1Char('\n'));
}

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
    void textBoxLooksLikeItsGolden();
    void newTextStartsAtTheTop();
    void isScrolledByDragging();
    void isScrolledByItsBar();

private:
    /// An edit as a client styles it.
    void show(QMyLineEdit& edit);
};

void TestTextControls::initTestCase()
{
    QVERIFY2(zrtest::useGoldenFont(), "the package fonts-noto-cjk is not installed");
}

void TestTextControls::cleanup()
{
    QZRScreenConfig::destroyInstance();
}

void TestTextControls::show(QMyLineEdit& edit)
{
    edit.setStyleSheet(QStringLiteral(
        "QLineEdit{background:#20242C;border:1px solid #3A3E46;border-radius:4px;color:#CDCDCD;"
        "padding:0 8px;selection-background-color:#5998FF;}"));
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
    auto* const edit = new QMyLineEdit;
    const QPointer<QMyLineEdit> watched(edit);
    show(*edit);
    adoptLineEdit(edit);
    Inbox inbox;
    inbox.onMessage = [edit] { releaseLineEdit(edit); };
    QTest::mousePress(edit, Qt::LeftButton);
    QVERIFY(watched && !watched->isVisible());
    QVERIFY(!liveLineEdit(edit));
    QTRY_VERIFY(!watched);
    releaseAllControls();
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

void TestTextControls::textBoxLooksLikeItsGolden()
{
    QDlgTextEdit box(QColor(32, 36, 44));
    box.setGeometry(50, 50, 300, 200);
    box.textEdit()->setText(longText());
    box.show();
    QVERIFY(QTest::qWaitForWindowExposed(&box));
    box.textEdit()->verticalScrollBar()->setValue(box.textEdit()->verticalScrollBar()->maximum()
                                                  / 3);
    ZR_COMPARE_GOLDEN(box.grab(), "textbox_scrolled");
    QVERIFY(!box.textEdit()->horizontalScrollBar()->isVisible());
    QTest::keyClick(&box, Qt::Key_Escape);
    QVERIFY(!box.close());
    QVERIFY(box.isVisible());
}

void TestTextControls::newTextStartsAtTheTop()
{
    QDlgTextEdit box(Qt::black);
    box.resize(300, 200);
    box.textEdit()->setText(longText());
    box.show();
    QScrollBar* const bar = box.textEdit()->verticalScrollBar();
    QScroller* const scroller = QScroller::scroller(box.textEdit()->viewport());
    scroller->scrollTo({0, bar->maximum() * 1.0}, 400);
    QTRY_VERIFY(bar->value() > 0);
    QTest::ignoreMessage(QtDebugMsg, "pScroller->stop()");
    box.textEdit()->setText(longText() + longText());
    QCOMPARE(bar->value(), 0);
    QTest::qWait(500);
    QCOMPARE(bar->value(), 0); // the animation has not gone on
}

void TestTextControls::isScrolledByDragging()
{
    QDlgTextEdit box(Qt::black);
    box.setGeometry(100, 100, 300, 200);
    box.textEdit()->setText(longText());
    box.show();
    QVERIFY(QTest::qWaitForWindowExposed(&box));
    QWidget* const page = box.textEdit()->viewport();
    const QScrollBar* const bar = box.textEdit()->verticalScrollBar();
    drag(*page, {100, 180}, {100, 20});
    QTRY_VERIFY(bar->value() > 50);
}

void TestTextControls::isScrolledByItsBar()
{
    QDlgTextEdit box(Qt::black);
    box.setGeometry(100, 100, 300, 200);
    box.textEdit()->setText(longText());
    box.show();
    QVERIFY(QTest::qWaitForWindowExposed(&box));
    QWidget* const page = box.textEdit()->viewport();
    QScrollBar* const bar = box.textEdit()->verticalScrollBar();
    QScroller* const scroller = QScroller::scroller(page);
    scroller->scrollTo({0, 400}, 2000);
    QTRY_VERIFY(bar->value() > 0);
    // Its handle has the height of 50 pixels; the page must not go on under it.
    QEvent enter(QEvent::Enter);
    QCoreApplication::sendEvent(bar, &enter);
    QCOMPARE(scroller->state(), QScroller::Inactive);
    bar->setValue(0);
    drag(*bar, {4, 20}, {4, 110});
    QVERIFY(bar->value() > bar->maximum() / 3);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(bar, &leave);
    const int before = bar->value();
    drag(*page, {100, 30}, {100, 180});
    QTRY_VERIFY(bar->value() < before);
}

ZR_WIDGET_TEST_MAIN(TestTextControls)
#include "tst_textcontrols.moc"
