// The messages as they come, among the commands that caused them.
#pragma once

#include <QWidget>

class QTableView;

namespace zrworkbench {

class EventFilter;
class EventModel;
class Meeting;

class EventPanel : public QWidget
{
    Q_OBJECT

public:
    /// The meeting must outlive it.
    explicit EventPanel(Meeting& meeting, QWidget* parent = nullptr);

private:
    QWidget* makeBar();
    /// The newest one stays in sight, unless the user looks at others.
    void followNewest();

    EventModel* m_model;
    EventFilter* m_filter;
    QTableView* m_table;
};

} // namespace zrworkbench
