// What happened, the newest last.
#pragma once

#include "meeting.h"

#include <QAbstractTableModel>

#include <deque>

namespace zrworkbench {

class EventModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column
    {
        Time,
        Name,
        Text,
        ColumnCount
    };
    static constexpr int kKindRole = Qt::UserRole;

    explicit EventModel(QObject* parent);

    /// Of very many the oldest ones go.
    void add(const Event& event);
    void clear();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    std::deque<Event> m_events;
};

} // namespace zrworkbench
