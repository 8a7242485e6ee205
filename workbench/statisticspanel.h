// The newest figures of the module: one line for all, and one for each participant.
#pragma once

#include "statistics.h"

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
    void show(zrhost::MeetingStatistics figures);

    QLabel* m_all;
    QTableWidget* m_table;
    zrhost::StatisticsReader m_reader;
};

} // namespace zrworkbench
