// The scenario of what was done and is to come, and a line for commands.
#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;
class QTableView;

namespace zrworkbench {

class Meeting;
class ScenarioModel;

class ScenarioPanel : public QWidget
{
    Q_OBJECT

public:
    /// The meeting must outlive it. @param actions of the scenario, for its buttons
    ScenarioPanel(Meeting& meeting, const QList<QAction*>& actions, QWidget* parent = nullptr);

private:
    QWidget* makeBar(const QList<QAction*>& actions);
    void performTyped();
    void showPlace();

    Meeting& m_meeting;
    ScenarioModel* m_model;
    QTableView* m_table;
    QLabel* m_place;
    QLineEdit* m_line;
};

} // namespace zrworkbench
