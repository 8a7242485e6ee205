// The calendar in which a user picks a moment that is not past.
#pragma once

#include "calendarmath.h"
#include "zrcontrols.h"

#include <QDateTime>
#include <QMap>
#include <QVector>
#include <QWidget>

#include <functional>

class QAbstractButton;
class QFrame;
class QLabel;
class QPushButton;
class QScrollArea;

/// A calendar sheet with lists of hours and minutes. It reports to the hosts of the date pickers
/// (messages of `eZRDateMsg`) and hides when a moment has been confirmed.
///
/// The keyboard: arrows and page keys choose a day, passing over those that are past, or in a list
/// a row; Tab goes round between the three, Enter confirms, Esc hides. GUI thread.
class SelectDateTimeWidget : public QWidget
{
    Q_OBJECT

public:
    using Clock = std::function<QDateTime()>;

    /// @param b4K draw in double size @param clock the present moment, in local time
    explicit SelectDateTimeWidget(bool b4K, Clock clock = &QDateTime::currentDateTime);

    /// Selects a moment; see zr::resolvedChoice. A request that had to be changed is logged.
    void setSelection(const zr::DateChoice& requested);
    const zr::DateChoice& selection() const { return m_choice; }
    /// Builds the sheet and the lists for the selection.
    void refreshInterface();
    int contentWidthPx() const;

protected:
    bool event(QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private slots:
    void on_pushButtonOK_clicked();
    void on_pushButtonNow_clicked();
    void on_pushButtonClear_clicked();

private:
    /// One of the two lists.
    struct List
    {
        QLabel* head = nullptr; ///< lit while the arrow keys are the list's
        QScrollArea* area = nullptr;
        QVector<QPushButton*> buttons; ///< row by row
        const char* logLabel = "";
        int zr::DateChoice::*field = nullptr;
    };

    int px(int base) const { return m_b4K ? 2 * base : base; }
    void buildHead();
    void buildSheet();
    void buildLists();
    void buildList(List& list, int rows, const QString& head, int left);
    void buildFoot();
    QPushButton* makeButton(QWidget* parent, const QString& text, const QRect& rect);
    void makeMoveButton(const QRect& rect, const QString& icon, const QString& fallback,
                        const char* objectName, int months);

    void buildMonth();
    void styleDay(QPushButton* button, int day);
    void styleLists();
    void scrollLists();
    void updateOK();
    void scheduleMinute();
    void chooseDay(int key);
    void chooseRow(const List& list, int row);
    void confirm();
    void takeKeyboard();
    bool moveByKey(int key);
    void giveKeysTo(List* list, bool lit);

    const bool m_b4K;
    const Clock m_clock;
    zr::DateChoice m_choice;
    ZRDateRecord m_record{}; ///< what the last confirmation told the hosts
    QDate m_today;           ///< of the sheet that is shown
    int m_iMinuteTimer = 0;  ///< runs while the picker shows

    // All of them are children.
    QFrame* m_pContent = nullptr;
    QLabel* m_pTitle = nullptr;
    QMap<int, QPushButton*> m_mapDayBtn; ///< by row * 10 + column
    List m_hours;
    List m_minutes;
    List* m_pKeyList = nullptr; ///< in which the arrow keys move; null is the sheet
    QPushButton* m_pOK = nullptr;
};
