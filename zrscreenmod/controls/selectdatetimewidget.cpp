#include "selectdatetimewidget.h"

#include "hostcall.h"
#include "platform.h"
#include "qmyscrollbar.h"
#include "qzrscreenconfig.h"
#include "texts.h"

#include <QCloseEvent>
#include <QDebug>
#include <QFrame>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>

#include <algorithm>
#include <utility>

namespace {

// Base sizes in pixels, doubled on a 4K screen. The list rows fill the height of the sheet:
// kVisibleListRows of them with a gap each, which is not doubled.
constexpr int kMargin = 14;
constexpr int kHeadHeight = 32;
constexpr int kWeekHeight = 29;
constexpr int kCellWidth = 36;
constexpr int kCellHeight = 32;
constexpr int kCellGap = 3;
constexpr int kSheetWidth =
    zr::kCalendarColumns * kCellWidth + (zr::kCalendarColumns - 1) * kCellGap;
constexpr int kSheetHeight =
    kWeekHeight + zr::kCalendarRows * kCellHeight + (zr::kCalendarRows - 1) * kCellGap;
constexpr int kListWidth = 58;
constexpr int kListPitch = kListWidth + 6;
constexpr int kListButtonWidth = 42;
constexpr int kListsLeft = kMargin + kSheetWidth + 2 * kMargin;
constexpr int kBodyTop = kMargin + kHeadHeight;
constexpr int kFootTop = kBodyTop + kSheetHeight + kMargin;
constexpr int kFootHeight = 32;
constexpr int kWidth = kListsLeft + kListPitch + kListWidth + kMargin;
constexpr int kHeight = kFootTop + kMargin + kFootHeight + kMargin;
constexpr int kIconSide = 16;

constexpr int kMonthsAYear = 12;
constexpr int kHours = 24;
constexpr int kMinutes = 60;
constexpr int kDayKeyFactor = 10;

constexpr char kSelected[] = "border:1px solid #5998FF; border-radius: 2px;color:#B3B3B4;";
constexpr char kNormalDay[] = "color:#B3B3B4;";
constexpr char kGrey[] = "color:#55575E;";
constexpr char kNormalRow[] = "font-family:'微软雅黑'; border:0px solid #ffffff;color:#B3B3B4;";
constexpr char kValidOK[] = "border: 1px solid #5998FF;min-height: 30px;min-width: 60px;"
                            "background: #5998FF;color: #FFFFFF;font-size: %1px;"
                            "border-radius: 4px;";
constexpr char kInvalidOK[] = "border: 1px solid #5F5F64;min-height: 30px;min-width: 60px;"
                              "background: transparent;color: #838487;font-size: %1px;"
                              "border-radius: 4px;";

/// What the buttons have in common; %1 is the size of the text.
constexpr char kCommonStyle[] =
    "#dateContent{background:#20242C;border:1px solid #3A3E46;}"
    "QFrame[line=\"true\"]{background:#343841;border:none;}"
    "QLabel{color:#83868D;font-family:'微软雅黑';font-size:%1px;}"
    "#labelTitle{color:#CDCDCD;font-weight:bold;}"
    "QLabel[keys=\"true\"]{color:#5998FF;}"
    "QPushButton{border:0px;background:transparent;color:#B3B3B4;font-family:'微软雅黑';"
    "font-size:%1px;padding:0px;}"
    "QPushButton:hover:enabled{background:#323843;border-radius:2px;}"
    "QPushButton:pressed:enabled{background:#3A4352;}"
    "#pushButtonNow{color:#5998FF;}"
    "QScrollArea,#listRows{background:#20242C;border:none;}";

/// Style sheets are costly to set, and most of them stay the same.
void applyStyle(QWidget* widget, const QString& style)
{
    if (widget->styleSheet() != style)
        widget->setStyleSheet(style);
}

QString utf8(const char* bytes)
{
    return QString::fromUtf8(bytes);
}

QString twoDigits(int number)
{
    return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
}

} // namespace

SelectDateTimeWidget::SelectDateTimeWidget(bool b4K, Clock clock)
    : QWidget(nullptr, Qt::CustomizeWindowHint | Qt::FramelessWindowHint)
    , m_b4K(b4K)
    , m_clock(std::move(clock))
    , m_choice(zr::choiceOf(m_clock()))
{
    setFocusPolicy(Qt::StrongFocus);
    setFixedSize(px(kWidth), px(kHeight));
    m_pContent = new QFrame(this);
    m_pContent->setObjectName(QStringLiteral("dateContent"));
    m_pContent->setGeometry(rect());
    m_pContent->setStyleSheet(utf8(kCommonStyle).arg(px(14)));
    buildHead();
    buildSheet();
    buildLists();
    buildFoot();
    refreshInterface();
}

int SelectDateTimeWidget::contentWidthPx() const
{
    return m_pContent->width();
}

// --- The form ---------------------------------------------------------------------------------

QPushButton* SelectDateTimeWidget::makeButton(QWidget* parent, const QString& text,
                                              const QRect& rect)
{
    auto* const button = new QPushButton(text, parent);
    button->setGeometry(rect);
    button->setFocusPolicy(Qt::NoFocus); // the keys are the picker's
    connect(button, &QPushButton::pressed, this, &SelectDateTimeWidget::takeKeyboard);
    return button;
}

void SelectDateTimeWidget::makeMoveButton(const QRect& rect, const QString& icon,
                                          const QString& fallback, const char* objectName,
                                          int months)
{
    QPushButton* const button = makeButton(m_pContent, {}, rect);
    button->setObjectName(QLatin1String(objectName));
    const QPixmap picture((m_b4K ? QStringLiteral(":/pic4k/") : QStringLiteral(":/pic/")) + icon);
    if (picture.isNull()) {
        button->setText(fallback);
    } else {
        button->setIcon(QIcon(picture));
        button->setIconSize({px(kIconSide), px(kIconSide)});
    }
    connect(button, &QPushButton::clicked, this, [this, months] {
        m_choice = zr::movedByMonths(m_choice, months);
        refreshInterface();
    });
}

void SelectDateTimeWidget::buildHead()
{
    const int side = px(kHeadHeight);
    const int top = px(kMargin);
    const int left = px(kMargin);
    const int right = px(kMargin + kSheetWidth);
    makeMoveButton({left, top, side, side}, QStringLiteral("shangyinian.png"), QStringLiteral("«"),
                   "pushButtonPrevYear", -kMonthsAYear);
    makeMoveButton({left + side, top, side, side}, QStringLiteral("shangyiyue.png"),
                   QStringLiteral("‹"), "pushButtonPrevMonth", -1);
    makeMoveButton({right - 2 * side, top, side, side}, QStringLiteral("xiayiyue.png"),
                   QStringLiteral("›"), "pushButtonNextMonth", 1);
    makeMoveButton({right - side, top, side, side}, QStringLiteral("xiayinian.png"),
                   QStringLiteral("»"), "pushButtonNextYear", kMonthsAYear);
    m_pTitle = new QLabel(m_pContent);
    m_pTitle->setObjectName(QStringLiteral("labelTitle"));
    m_pTitle->setAlignment(Qt::AlignCenter);
    m_pTitle->setGeometry(left + 2 * side, top, px(kSheetWidth) - 4 * side, side);
}

void SelectDateTimeWidget::buildSheet()
{
    const QString weekdays[] = {zr::Text::tr("一"), zr::Text::tr("二"), zr::Text::tr("三"),
                                zr::Text::tr("四"), zr::Text::tr("五"), zr::Text::tr("六"),
                                zr::Text::tr("日")};
    const QSize cell(px(kCellWidth), px(kCellHeight));
    for (int column = 0; column < zr::kCalendarColumns; ++column) {
        const int left = px(kMargin + column * (kCellWidth + kCellGap));
        auto* const head = new QLabel(weekdays[column], m_pContent);
        head->setAlignment(Qt::AlignCenter);
        head->setGeometry(left, px(kBodyTop), cell.width(), px(kWeekHeight));
        for (int row = 0; row < zr::kCalendarRows; ++row) {
            const QPoint at(left, px(kBodyTop + kWeekHeight + row * (kCellHeight + kCellGap)));
            const int key = row * kDayKeyFactor + column;
            QPushButton* const button = makeButton(m_pContent, {}, {at, cell});
            m_mapDayBtn.insert(key, button);
            connect(button, &QPushButton::clicked, this, [this, key] {
                giveKeysTo(nullptr, false);
                chooseDay(key);
            });
        }
    }
}

void SelectDateTimeWidget::buildLists()
{
    auto* const line = new QFrame(m_pContent);
    line->setProperty("line", true);
    line->setGeometry(px(kMargin + kSheetWidth + kMargin), px(kMargin), 1,
                      px(kHeadHeight + kSheetHeight));
    m_hours.logLabel = "[APP]hourBtn:";
    m_hours.field = &zr::DateChoice::hour;
    m_minutes.logLabel = "[APP]minBtn:";
    m_minutes.field = &zr::DateChoice::minute;
    buildList(m_hours, kHours, zr::Text::tr("小时"), px(kListsLeft));
    buildList(m_minutes, kMinutes, zr::Text::tr("分钟"), px(kListsLeft + kListPitch));
}

void SelectDateTimeWidget::buildList(List& list, int rows, const QString& head, int left)
{
    const int buttonWidth = px(kListButtonWidth);
    list.head = new QLabel(head, m_pContent);
    list.head->setAlignment(Qt::AlignCenter);
    list.head->setGeometry(left, px(kMargin), buttonWidth, px(kHeadHeight));

    const int rowHeight = px(kSheetHeight) / zr::kVisibleListRows - zr::kListGapPx;
    const int pitch = rowHeight + zr::kListGapPx;
    auto* const content = new QWidget;
    content->setObjectName(QStringLiteral("listRows"));
    content->resize(buttonWidth, zr::kListTopPx + rows * pitch);
    for (int row = 0; row < rows; ++row) {
        QPushButton* const button = makeButton(
            content, twoDigits(row), {0, zr::kListTopPx + row * pitch, buttonWidth, rowHeight});
        list.buttons.append(button);
        connect(button, &QPushButton::clicked, this, [this, &list, row] {
            giveKeysTo(&list, false);
            chooseRow(list, row);
        });
    }
    list.area = new QScrollArea(m_pContent);
    list.area->setObjectName(head);
    list.area->setFrameShape(QFrame::NoFrame);
    list.area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list.area->setFocusPolicy(Qt::NoFocus);
    list.area->setVerticalScrollBar(new QMyScrollbar(list.area));
    list.area->setGeometry(left, px(kBodyTop), px(kListWidth), zr::kVisibleListRows * pitch);
    list.area->setWidget(content); // owned by the area
    list.area->verticalScrollBar()->setSingleStep(pitch);
}

void SelectDateTimeWidget::buildFoot()
{
    auto* const line = new QFrame(m_pContent);
    line->setProperty("line", true);
    line->setGeometry(px(kMargin), px(kFootTop), px(kWidth - 2 * kMargin), 1);
    const int top = px(kFootTop + kMargin);
    const int width = px(64);
    const int height = px(kFootHeight);
    QPushButton* const clear =
        makeButton(m_pContent, zr::Text::tr("清空"), {px(kMargin), top, width, height});
    clear->setObjectName(QStringLiteral("pushButtonClear"));
    connect(clear, &QPushButton::clicked, this, &SelectDateTimeWidget::on_pushButtonClear_clicked);
    QPushButton* const now =
        makeButton(m_pContent, zr::Text::tr("现在"), {px(kMargin) + width, top, width, height});
    now->setObjectName(QStringLiteral("pushButtonNow"));
    connect(now, &QPushButton::clicked, this, &SelectDateTimeWidget::on_pushButtonNow_clicked);
    m_pOK = makeButton(m_pContent, zr::Text::tr("确定"),
                       {px(kWidth - kMargin) - width, top, width, height});
    m_pOK->setObjectName(QStringLiteral("pushButtonOK"));
    if (m_b4K) {
        QFont font = m_pOK->font();
        font.setPixelSize(28);
        m_pOK->setFont(font);
    }
    connect(m_pOK, &QPushButton::clicked, this, &SelectDateTimeWidget::on_pushButtonOK_clicked);
}

// --- The selection ------------------------------------------------------------------------------

void SelectDateTimeWidget::setSelection(const zr::DateChoice& requested)
{
    giveKeysTo(nullptr, false);
    m_choice = zr::resolvedChoice(requested, m_clock());
    const auto changed = [this, &requested](int zr::DateChoice::*field) {
        return requested.*field != -1 && requested.*field != m_choice.*field;
    };
    if (changed(&zr::DateChoice::year) || changed(&zr::DateChoice::month)
        || changed(&zr::DateChoice::day) || changed(&zr::DateChoice::hour)
        || changed(&zr::DateChoice::minute) || changed(&zr::DateChoice::second))
        qDebug() << "moment out of range, year:" << requested.year << ",month:" << requested.month
                 << ",day:" << requested.day << ",hour:" << requested.hour
                 << ",minute:" << requested.minute << ",second:" << requested.second;
}

void SelectDateTimeWidget::refreshInterface()
{
    m_pTitle->setText(zr::Text::tr("%1年 %2月").arg(m_choice.year).arg(m_choice.month));
    buildMonth();
    styleLists();
    scrollLists();
    updateOK();
}

void SelectDateTimeWidget::buildMonth()
{
    const int weekday = zr::weekdayOfFirst(m_choice.year, m_choice.month);
    qDebug() << "[APP]WeekDay" << weekday;
    const auto cells = zr::calendarCells(m_choice.year, m_choice.month);
    if (weekday != 1)
        qDebug() << "[APP]last monthdays = " << cells[static_cast<std::size_t>(weekday - 2)].day;
    m_today = m_clock().date();
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const int index = static_cast<int>(i);
        QPushButton* const button = m_mapDayBtn[index / zr::kCalendarColumns * kDayKeyFactor
                                                + index % zr::kCalendarColumns];
        const zr::CalendarCell& cell = cells[i];
        button->setText(QString::number(cell.day));
        const bool shown = cell.month == zr::CellMonth::Shown;
        button->setVisible(shown);
        if (shown) {
            styleDay(button, cell.day);
        } else {
            button->setEnabled(false);
            applyStyle(button, QLatin1String(kGrey));
        }
    }
}

void SelectDateTimeWidget::styleDay(QPushButton* button, int day)
{
    const bool past = zr::isPastDay(m_choice.year, m_choice.month, day, m_clock());
    button->setEnabled(!past);
    const char* const style = day == m_choice.day ? kSelected : kNormalDay;
    // A day that is selected and has passed keeps its frame, so that it is seen what is wrong.
    const QString frame = day == m_choice.day ? QLatin1String(kSelected) : QString();
    applyStyle(button, past ? frame + QLatin1String(kGrey) : QLatin1String(style));
}

void SelectDateTimeWidget::styleLists()
{
    for (const List* list : {&m_hours, &m_minutes}) {
        for (int row = 0; row < list->buttons.size(); ++row) {
            const bool selected = row == m_choice.*(list->field);
            applyStyle(list->buttons[row], selected ? QLatin1String(kSelected) : utf8(kNormalRow));
        }
    }
}

void SelectDateTimeWidget::scrollLists()
{
    for (const List* list : {&m_hours, &m_minutes})
        list->area->verticalScrollBar()->setValue(zr::listScrollPx(
            m_choice.*(list->field), list->buttons.size(), list->buttons.first()->height()));
}

void SelectDateTimeWidget::updateOK()
{
    const bool valid = zr::isConfirmable(m_choice, m_clock());
    applyStyle(m_pOK, utf8(valid ? kValidOK : kInvalidOK).arg(m_b4K ? 28 : 14));
}

void SelectDateTimeWidget::chooseDay(int key)
{
    QPushButton* const clicked = m_mapDayBtn[key];
    qDebug() << "[APP]dayBtn:" << clicked->text() << " clicked";
    m_choice.day = clicked->text().toInt();
    for (QPushButton* const button : qAsConst(m_mapDayBtn)) {
        if (!button->isHidden())
            styleDay(button, button->text().toInt());
    }
    updateOK();
}

void SelectDateTimeWidget::chooseRow(const List& list, int row)
{
    qDebug() << list.logLabel << list.buttons[row]->text() << " clicked";
    m_choice.*(list.field) = row;
    styleLists();
    updateOK();
}

// --- The buttons of the foot --------------------------------------------------------------------

void SelectDateTimeWidget::on_pushButtonOK_clicked()
{
    if (zr::isConfirmable(m_choice, m_clock()))
        confirm();
    else
        updateOK();
}

void SelectDateTimeWidget::on_pushButtonNow_clicked()
{
    m_choice = zr::choiceOf(m_clock());
    refreshInterface();
    confirm();
}

void SelectDateTimeWidget::on_pushButtonClear_clicked()
{
    const HostCall call;
    giveKeysTo(nullptr, false);
    m_choice = zr::clearedChoice(m_choice);
    refreshInterface();
    QZRScreenConfig::getInstance()->broadcastDate(ZRDATE_CLEARED, 0, 0);
}

void SelectDateTimeWidget::confirm()
{
    const HostCall call;
    qDebug().noquote() << QStringLiteral("%1年%2月%3日 %4:%5:%6")
                              .arg(twoDigits(m_choice.year), twoDigits(m_choice.month),
                                   twoDigits(m_choice.day), twoDigits(m_choice.hour),
                                   twoDigits(m_choice.minute), twoDigits(m_choice.second));
    m_record = {};
    m_record.minute = m_choice.minute;
    m_record.hour = m_choice.hour;
    m_record.day = m_choice.day;
    m_record.month = m_choice.month;
    m_record.year = m_choice.year;
    QZRScreenConfig::getInstance()->broadcastDate(ZRDATE_CHOSEN,
                                                  reinterpret_cast<quintptr>(&m_record), 0);
    hide();
}

// --- Events -------------------------------------------------------------------------------------

void SelectDateTimeWidget::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    scrollLists(); // a list that has not been shown yet does not know its range
    scheduleMinute();
}

void SelectDateTimeWidget::hideEvent(QHideEvent* event)
{
    if (m_iMinuteTimer != 0)
        killTimer(std::exchange(m_iMinuteTimer, 0));
    platform::returnKeyboardFocus(winId());
    QWidget::hideEvent(event);
}

/// What can be confirmed changes with the minutes, and what can be chosen with the days.
void SelectDateTimeWidget::scheduleMinute()
{
    constexpr int kMinuteMs = 60000;
    if (m_iMinuteTimer != 0)
        killTimer(m_iMinuteTimer);
    m_iMinuteTimer = startTimer(kMinuteMs - m_clock().time().msecsSinceStartOfDay() % kMinuteMs,
                                Qt::PreciseTimer);
}

void SelectDateTimeWidget::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_iMinuteTimer) {
        QWidget::timerEvent(event);
        return;
    }
    scheduleMinute();
    if (m_clock().date() != m_today)
        buildMonth();
    updateOK();
}

bool SelectDateTimeWidget::event(QEvent* event)
{
    // X11 sends the keys of a window that has the keyboard to the window inside of it that is under
    // the mouse: an Enter that is meant for the host would confirm.
    if (event->type() == QEvent::KeyPress && !hasFocus() && !platform::hasKeyboardFocus(winId())) {
        event->ignore();
        return true;
    }
    return QWidget::event(event);
}

void SelectDateTimeWidget::keyPressEvent(QKeyEvent* event)
{
    const HostCall call; // hiding hands the keyboard to the host
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->isAutoRepeat() && (isEnter || event->key() == Qt::Key_Escape))
        return; // still held down from what has opened the picker
    if (event->key() == Qt::Key_Escape)
        hide();
    else if (isEnter)
        on_pushButtonOK_clicked();
    else if (!moveByKey(event->key()))
        QWidget::keyPressEvent(event);
}

/// Tab stays inside: there is nothing else in this window, and who opens a picker wants to pick.
bool SelectDateTimeWidget::focusNextPrevChild(bool next)
{
    List* const order[] = {nullptr, &m_hours, &m_minutes, nullptr};
    List* const* const at = std::find(order, order + 3, m_pKeyList);
    giveKeysTo(next ? at[1] : at == order ? &m_minutes : at[-1], true);
    return true;
}

/// @param lit show whose the keys are: not to users of the mouse
void SelectDateTimeWidget::giveKeysTo(List* list, bool lit)
{
    m_pKeyList = list;
    const auto light = [](QLabel* head, bool on) {
        if (head->property("keys").toBool() == on)
            return;
        head->setProperty("keys", on);
        head->style()->unpolish(head); // styles do not watch properties
        head->style()->polish(head);
    };
    light(m_hours.head, lit && list == &m_hours);
    light(m_minutes.head, lit && list == &m_minutes);
}

bool SelectDateTimeWidget::moveByKey(int key)
{
    struct Step
    {
        int key;
        int days;
        int months;
        int rows; // of a list
    };
    constexpr Step kSteps[] = {{Qt::Key_Left, -1, 0, 0},
                               {Qt::Key_Right, 1, 0, 0},
                               {Qt::Key_Up, -7, 0, -1},
                               {Qt::Key_Down, 7, 0, 1},
                               {Qt::Key_PageUp, 0, -1, -zr::kVisibleListRows},
                               {Qt::Key_PageDown, 0, 1, zr::kVisibleListRows}};
    const auto* const step = std::find_if(std::begin(kSteps), std::end(kSteps),
                                          [key](const Step& each) { return each.key == key; });
    if (step == std::end(kSteps))
        return false;
    giveKeysTo(m_pKeyList, true);
    if (!m_pKeyList) {
        m_choice = step->days != 0 ? zr::movedByDays(m_choice, step->days, m_clock().date())
                                   : zr::movedByMonths(m_choice, step->months);
        refreshInterface();
    } else if (step->rows != 0) {
        const List& list = *m_pKeyList;
        const int row = std::clamp(m_choice.*(list.field) + step->rows, 0, list.buttons.size() - 1);
        chooseRow(list, row);
        list.area->ensureWidgetVisible(list.buttons[row], 0, zr::kListGapPx);
    }
    return true;
}

/// Also for clicks on buttons: the host may have taken the keyboard while the picker was open.
void SelectDateTimeWidget::takeKeyboard()
{
    const HostCall call;
    platform::takeKeyboardFocus(winId());
}

void SelectDateTimeWidget::mousePressEvent(QMouseEvent* event)
{
    takeKeyboard();
    QWidget::mousePressEvent(event);
}

void SelectDateTimeWidget::closeEvent(QCloseEvent* event)
{
    event->ignore(); // the window belongs to the host
}
