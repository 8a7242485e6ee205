// The date and time picker: how it looks, what can be chosen, what the hosts are told.
#include "golden.h"
#include "testsupport.h"

#include "qzrscreenconfig.h"
#include "selectdatetimewidget.h"

#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollArea>
#include <QScrollBar>

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

namespace {

struct Told
{
    unsigned long id;
    ZRDateRecord record; ///< copied during the message
    const void* address; ///< of the record
};

/// Stands for a host.
class Inbox : public CAbsUIMsgCallback
{
public:
    Inbox() { QZRScreenConfig::getInstance()->registerDateCallback(this); }
    ~Inbox() override { QZRScreenConfig::getInstance()->unregisterDateCallback(this); }
    bool UIMsgNotify(unsigned long dwMsg, unsigned long long wParam, long long lParam) override
    {
        const auto* const record = reinterpret_cast<const ZRDateRecord*>(wParam);
        told.push_back({dwMsg, record ? *record : ZRDateRecord{}, record});
        return lParam == 0;
    }
    std::vector<Told> told;
};

QDateTime at(int y, int mo, int d, int h, int mi, int s = 0)
{
    return {QDate(y, mo, d), QTime(h, mi, s)};
}

} // namespace

class TestSelectDateTimeWidget : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void looksLikeItsGolden_data();
    void looksLikeItsGolden();
    void confirmsWhatWasClicked();
    void confirmsOnlyWhatIsNotPast();
    void refusesWhatPassesWhileItIsOpen();
    void offersNoPastDay();
    void movesThroughTheMonths();
    void picksThePresent();
    void clears();
    void choosesWithTheKeyboard();

private:
    void show(const zr::DateChoice& choice);
    QPushButton* button(const char* name) { return m_widget->findChild<QPushButton*>(name); }
    QPushButton* dayButton(int day);
    QPushButton* rowButton(const char* list, int row);
    QString title() { return m_widget->findChild<QLabel*>("labelTitle")->text(); }
    bool isOKLit() { return button("pushButtonOK")->styleSheet().contains("background: #5998FF"); }
    void click(QPushButton* which) { QTest::mouseClick(which, Qt::LeftButton); }
    void press(Qt::Key key, bool held = false)
    {
        QApplication::setActiveWindow(m_widget.get());
        m_widget->setFocus();
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, {}, held);
        QApplication::sendEvent(m_widget.get(), &event);
    }

    QDateTime m_now;
    std::unique_ptr<SelectDateTimeWidget> m_widget;
    std::unique_ptr<Inbox> m_inbox;
};

void TestSelectDateTimeWidget::initTestCase()
{
    QVERIFY2(zrtest::useGoldenFont(), "the package fonts-noto-cjk is not installed");
}

void TestSelectDateTimeWidget::init()
{
    m_now = at(2026, 11, 21, 18, 30, 15);
    m_inbox = std::make_unique<Inbox>();
    m_widget = std::make_unique<SelectDateTimeWidget>(false, [this] { return m_now; });
}

void TestSelectDateTimeWidget::cleanup()
{
    m_widget.reset();
    m_inbox.reset();
    QZRScreenConfig::destroyInstance();
}

void TestSelectDateTimeWidget::show(const zr::DateChoice& choice)
{
    m_widget->setSelection(choice);
    m_widget->refreshInterface();
    m_widget->show();
}

QPushButton* TestSelectDateTimeWidget::dayButton(int day)
{
    for (QPushButton* const candidate : m_widget->findChildren<QPushButton*>()) {
        if (candidate->objectName().isEmpty() && candidate->isVisible()
            && candidate->parentWidget()->objectName() == "dateContent"
            && candidate->text() == QString::number(day))
            return candidate;
    }
    return nullptr;
}

QPushButton* TestSelectDateTimeWidget::rowButton(const char* list, int row)
{
    const auto* const area = m_widget->findChild<QScrollArea*>(QString::fromUtf8(list));
    return area->widget()->findChildren<QPushButton*>().at(row);
}

void TestSelectDateTimeWidget::looksLikeItsGolden_data()
{
    QTest::addColumn<QDateTime>("now");
    QTest::addColumn<QDateTime>("chosen");
    QTest::newRow("monday") << at(2021, 1, 31, 12, 0) << at(2021, 2, 10, 9, 5);
    QTest::newRow("sixrows") << at(2026, 3, 11, 8, 0) << at(2026, 3, 29, 23, 59);
    QTest::newRow("today") << at(2026, 11, 21, 18, 30) << at(2026, 11, 21, 18, 30);
    QTest::newRow("past") << at(2026, 11, 21, 18, 30) << at(2026, 11, 21, 7, 54);
}

void TestSelectDateTimeWidget::looksLikeItsGolden()
{
    QFETCH(QDateTime, now);
    QFETCH(QDateTime, chosen);
    m_now = now;
    for (const bool large : {false, true}) {
        m_widget = std::make_unique<SelectDateTimeWidget>(large, [this] { return m_now; });
        show(zr::choiceOf(chosen));
        const QByteArray name =
            QByteArray("picker_") + QTest::currentDataTag() + (large ? "_4k" : "");
        ZR_COMPARE_GOLDEN(m_widget->grab(), name);
    }
}

void TestSelectDateTimeWidget::confirmsWhatWasClicked()
{
    show({2027, 3, 1, 0, 0, 33});
    click(dayButton(9));
    click(rowButton("小时", 5));
    click(rowButton("分钟", 7));
    QVERIFY(isOKLit());
    QTest::ignoreMessage(QtDebugMsg, "2027年03月09日 05:07:33");
    click(button("pushButtonOK"));
    QVERIFY(!m_widget->isVisible());
    QCOMPARE(m_inbox->told.size(), std::size_t(1));
    const Told told = m_inbox->told.front();
    QCOMPARE(told.id, static_cast<unsigned long>(ZRDATE_CHOSEN));
    const ZRDateRecord expected{0, 7, 5, 9, 3, 2027, {0, 0, 0}};
    QVERIFY(std::memcmp(&told.record, &expected, sizeof expected) == 0);
    // The selection is there when it opens again.
    m_widget->show();
    press(Qt::Key_Return);
    QCOMPARE(m_inbox->told.size(), std::size_t(2));
    QVERIFY(std::memcmp(&m_inbox->told.back().record, &expected, sizeof expected) == 0);
    // The same one, however often it is confirmed: hosts are not to free it.
    QCOMPARE(m_inbox->told.back().address, m_inbox->told.front().address);
}

void TestSelectDateTimeWidget::confirmsOnlyWhatIsNotPast()
{
    show({2026, 11, 21, 18, 29, 0});
    QVERIFY(!isOKLit());
    click(button("pushButtonOK"));
    press(Qt::Key_Enter);
    QVERIFY(m_widget->isVisible() && m_inbox->told.empty());
    click(rowButton("分钟", 30)); // the present minute
    QVERIFY(isOKLit());
    click(rowButton("小时", 17));
    QVERIFY(!isOKLit());
    click(dayButton(22));
    QVERIFY(isOKLit());
}

void TestSelectDateTimeWidget::refusesWhatPassesWhileItIsOpen()
{
    m_now = QDateTime(QDate(2026, 11, 21), QTime(18, 30, 59, 900));
    show({2026, 11, 21, 18, 30, 0});
    QVERIFY(isOKLit());
    m_now = at(2026, 11, 22, 0, 0); // with the minute, the day has ended too
    QTRY_VERIFY(!isOKLit());
    QVERIFY(!dayButton(21)->isEnabled() && dayButton(22)->isEnabled());
    // Also before a timer has come to it.
    show({-1, -1, -1, -1, -1, -1});
    QVERIFY(isOKLit());
    m_now = m_now.addSecs(60);
    click(button("pushButtonOK"));
    QVERIFY(m_inbox->told.empty());
    QVERIFY(!isOKLit());
}

void TestSelectDateTimeWidget::offersNoPastDay()
{
    show({2026, 11, 30, 0, 0, 0});
    click(dayButton(20));
    QCOMPARE(m_widget->selection().day, 30);
    QVERIFY(!dayButton(20)->isEnabled());
    QVERIFY(dayButton(21)->isEnabled());
}

void TestSelectDateTimeWidget::movesThroughTheMonths()
{
    show({2028, 1, 31, 12, 0, 0});
    click(button("pushButtonNextMonth"));
    QCOMPARE(title(), QStringLiteral("2028年 2月"));
    QCOMPARE(m_widget->selection().day, 29);
    QVERIFY(dayButton(29)->styleSheet().contains("#5998FF"));
    click(button("pushButtonNextYear"));
    QCOMPARE(m_widget->selection().day, 28);
    click(button("pushButtonPrevMonth"));
    click(button("pushButtonPrevMonth"));
    QCOMPARE(title(), QStringLiteral("2028年 12月"));
    click(button("pushButtonPrevYear"));
    click(button("pushButtonPrevYear"));
    QCOMPARE(title(), QStringLiteral("2026年 12月"));
    QVERIFY(isOKLit());
    click(button("pushButtonPrevYear"));
    QVERIFY(!isOKLit());
}

void TestSelectDateTimeWidget::picksThePresent()
{
    show({2027, 3, 1, 0, 0, 0});
    click(button("pushButtonNow"));
    QVERIFY(!m_widget->isVisible());
    QCOMPARE(m_inbox->told.size(), std::size_t(1));
    const ZRDateRecord expected{0, 30, 18, 21, 11, 2026, {0, 0, 0}};
    QVERIFY(std::memcmp(&m_inbox->told.front().record, &expected, sizeof expected) == 0);
}

void TestSelectDateTimeWidget::clears()
{
    show({2027, 3, 31, 20, 57, 0});
    click(button("pushButtonClear"));
    QCOMPARE(m_inbox->told.size(), std::size_t(1));
    QCOMPARE(m_inbox->told.front().id, static_cast<unsigned long>(ZRDATE_CLEARED));
    QVERIFY(m_widget->isVisible() && !isOKLit());
    for (const QPushButton* const any : m_widget->findChildren<QPushButton*>())
        QVERIFY(any->isHidden() || !any->styleSheet().startsWith("border:1px"));
    click(button("pushButtonOK"));
    click(button("pushButtonNextMonth"));
    QCOMPARE(title(), QStringLiteral("2027年 4月"));
    click(dayButton(30));
    click(rowButton("小时", 1));
    QVERIFY(!isOKLit()); // no minute yet
    click(rowButton("分钟", 2));
    QVERIFY(isOKLit());
    QCOMPARE(m_inbox->told.size(), std::size_t(1));
}

void TestSelectDateTimeWidget::choosesWithTheKeyboard()
{
    const auto selected = [this] { return m_widget->selection(); };
    const auto isLit = [this](const char* list) {
        const auto labels = m_widget->findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(), [list](const QLabel* label) {
            return label->text() == QString::fromUtf8(list)
                   && label->palette().color(QPalette::WindowText) == QColor("#5998FF");
        });
    };
    show({2026, 11, 30, 22, 8, 0});
    press(Qt::Key_Right);
    QCOMPARE(title(), QStringLiteral("2026年 12月"));
    press(Qt::Key_Up);
    QCOMPARE(selected(), (zr::DateChoice{2026, 11, 24, 22, 8, 0}));
    press(Qt::Key_PageDown);
    QVERIFY(!isLit("小时"));
    press(Qt::Key_Tab);
    QVERIFY(isLit("小时") && !isLit("分钟"));
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Backtab); // over the sheet to the minutes
    press(Qt::Key_Backtab);
    press(Qt::Key_PageUp);
    press(Qt::Key_PageUp);
    QCOMPARE(selected(), (zr::DateChoice{2026, 12, 24, 23, 0, 0}));
    QVERIFY(!rowButton("分钟", 0)->visibleRegion().isEmpty());
    // What is still held down, or goes to the host, confirms nothing.
    press(Qt::Key_Return, true);
    QApplication::setActiveWindow(nullptr);
    QTest::keyClick(m_widget.get(), Qt::Key_Return);
    QVERIFY(m_widget->isVisible() && m_inbox->told.empty());
    press(Qt::Key_Escape);
    QVERIFY(!m_widget->isVisible() && m_inbox->told.empty());
}

ZR_WIDGET_TEST_MAIN(TestSelectDateTimeWidget)
#include "tst_selectdatetimewidget.moc"
