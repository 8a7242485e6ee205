// The date and time picker: how it looks, what can be chosen, what the hosts are told.
#include "golden.h"
#include "testsupport.h"

#include "qzrscreenconfig.h"
#include "selectdatetimewidget.h"

#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <vector>

namespace {

/// Stands for a host.
class Inbox : public CAbsUIMsgCallback
{
public:
    Inbox() { QZRScreenConfig::getInstance()->registerDateCallback(this); }
    ~Inbox() override { QZRScreenConfig::getInstance()->unregisterDateCallback(this); }
    bool UIMsgNotify(unsigned long dwMsg, unsigned long long wParam, long long lParam) override
    {
        ids.push_back(dwMsg);
        record = reinterpret_cast<const ZRDateRecord*>(wParam);
        return lParam == 0;
    }
    bool isTold(const ZRDateRecord& expected) const
    {
        return !ids.empty() && ids.back() == ZRDATE_CHOSEN
               && std::memcmp(record, &expected, sizeof expected) == 0;
    }
    std::vector<unsigned long> ids;
    const ZRDateRecord* record = nullptr; ///< of the last message
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
    void movesThroughTheMonths();
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
    void press(std::initializer_list<Qt::Key> keys, bool held = false)
    {
        QApplication::setActiveWindow(m_widget.get());
        m_widget->setFocus();
        for (const Qt::Key key : keys) {
            QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, {}, held);
            QApplication::sendEvent(m_widget.get(), &event);
        }
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
    const auto* const content = m_widget->findChild<QWidget*>("dateContent");
    for (QPushButton* const each :
         content->findChildren<QPushButton*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (each->isVisible() && each->text() == QString::number(day))
            return each;
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
    const ZRDateRecord expected{0, 7, 5, 9, 3, 2027, {0, 0, 0}};
    QVERIFY(m_inbox->isTold(expected));
    // The selection is there when it opens again. The record is the same one, however often it is
    // confirmed: hosts are not to free it.
    const ZRDateRecord* const first = m_inbox->record;
    m_widget->show();
    press({Qt::Key_Return});
    QVERIFY(m_inbox->ids.size() == 2 && m_inbox->isTold(expected));
    m_widget->show();
    click(button("pushButtonNow"));
    QVERIFY(!m_widget->isVisible() && m_inbox->isTold({0, 30, 18, 21, 11, 2026, {0, 0, 0}}));
    QCOMPARE(m_inbox->record, first);
}

void TestSelectDateTimeWidget::confirmsOnlyWhatIsNotPast()
{
    show({2026, 11, 21, 18, 29, 0});
    QVERIFY(!isOKLit());
    click(button("pushButtonOK"));
    press({Qt::Key_Enter});
    QVERIFY(m_widget->isVisible() && m_inbox->ids.empty());
    QVERIFY(!dayButton(20)->isEnabled());
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
    QVERIFY(m_inbox->ids.empty());
    QVERIFY(!isOKLit());
}

void TestSelectDateTimeWidget::movesThroughTheMonths()
{
    show({2028, 1, 31, 12, 0, 0});
    const std::pair<const char*, QDate> moves[] = {{"NextMonth", {2028, 2, 29}},
                                                   {"NextYear", {2029, 2, 28}},
                                                   {"PrevMonth", {2029, 1, 28}},
                                                   {"PrevYear", {2028, 1, 28}}};
    for (const auto& [name, day] : moves) {
        click(button((QByteArray("pushButton") + name).constData()));
        QCOMPARE(title(), day.toString(QStringLiteral("yyyy年 M月")));
        QVERIFY(dayButton(day.day())->styleSheet().contains("#5998FF"));
    }
    for (int year = 2028; year > 2026; --year)
        click(button("pushButtonPrevYear"));
    QVERIFY(!isOKLit());
}

void TestSelectDateTimeWidget::clears()
{
    show({2027, 3, 31, 20, 57, 0});
    click(button("pushButtonClear"));
    QCOMPARE(m_inbox->ids, std::vector<unsigned long>{ZRDATE_CLEARED});
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
    QVERIFY(isOKLit() && m_inbox->ids.size() == 1);
}

void TestSelectDateTimeWidget::choosesWithTheKeyboard()
{
    const auto isLit = [this](const char* list) {
        const auto labels = m_widget->findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(), [list](const QLabel* label) {
            return label->text() == QString::fromUtf8(list)
                   && label->palette().color(QPalette::WindowText) == QColor("#5998FF");
        });
    };
    show({2026, 11, 30, 22, 8, 0});
    press({Qt::Key_Right, Qt::Key_Up, Qt::Key_PageDown});
    QCOMPARE(title(), QStringLiteral("2026年 12月"));
    QVERIFY(!isLit("小时"));
    press({Qt::Key_Tab, Qt::Key_Down, Qt::Key_Down});
    QVERIFY(isLit("小时") && !isLit("分钟"));
    // Over the sheet to the minutes.
    press({Qt::Key_Backtab, Qt::Key_Backtab, Qt::Key_PageUp, Qt::Key_PageUp});
    QVERIFY(isLit("分钟") && !rowButton("分钟", 0)->visibleRegion().isEmpty());
    QCOMPARE(m_widget->selection(), (zr::DateChoice{2026, 12, 24, 23, 0, 0}));
    // What is still held down, or goes to the host, confirms nothing.
    press({Qt::Key_Return}, true);
    QApplication::setActiveWindow(nullptr);
    QTest::keyClick(m_widget.get(), Qt::Key_Return);
    QVERIFY(m_widget->isVisible());
    press({Qt::Key_Escape});
    QVERIFY(!m_widget->isVisible() && m_inbox->ids.empty());
    show({2026, 12, 5, 1, 1, 0}); // the arrows begin with the days
    press({Qt::Key_Left});
    QVERIFY(m_widget->selection().day == 4 && !isLit("分钟"));
}

ZR_WIDGET_TEST_MAIN(TestSelectDateTimeWidget)
#include "tst_selectdatetimewidget.moc"
