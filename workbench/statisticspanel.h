// The newest figures of the module: one line for all, and one for each participant.
#pragma once

#include <QWidget>

class QLabel;
class QTableWidget;

namespace zrworkbench {

class StatisticsPanel : public QWidget
{
    Q_OBJECT

public:
    explicit StatisticsPanel(QWidget* parent = nullptr);

    /// A line of the module's log; those that are no figures are passed over.
    void take(const QString& line);

private:
    void addParticipant(const QString& line);

    QLabel* m_all;
    QTableWidget* m_table;
    int m_row = 0; ///< of the next participant in the block that comes
};

} // namespace zrworkbench
