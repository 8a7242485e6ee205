// The newest figures of the module: one line for all, and one for each participant.
#pragma once

#include <QStringList>
#include <QTimer>
#include <QVector>
#include <QWidget>

class QLabel;
class QTableWidget;

namespace zrworkbench {

struct Figure
{
    QString title;
    QString value;
};

class StatisticsPanel : public QWidget
{
    Q_OBJECT

public:
    explicit StatisticsPanel(QWidget* parent = nullptr);

    /// A line of the module's log; those that are no figures are passed over.
    void take(const QString& line);

private:
    void show();
    void showParticipant(int row, const QVector<Figure>& figures);

    QLabel* m_all;
    QTableWidget* m_table;
    QStringList m_participants; ///< lines of the newest block
    QTimer m_blockEnd;          ///< the lines of a block come together
};

} // namespace zrworkbench
