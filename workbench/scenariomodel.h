// The steps of the scenario, with the one that comes next.
#pragma once

#include <QAbstractTableModel>

namespace zrworkbench {

class Meeting;

class ScenarioModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column
    {
        Time,
        Command,
        ColumnCount
    };

    /// The meeting must outlive it.
    ScenarioModel(const Meeting& meeting, QObject* parent);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void refresh();

    const Meeting& m_meeting;
    int m_count = 0; ///< of rows, as the views know it
};

} // namespace zrworkbench
