#include "eventmodel.h"

#include <QBrush>
#include <QGuiApplication>
#include <QPalette>

namespace zrworkbench {

namespace {

constexpr int kMostEvents = 20000;

QVariant colourOf(Event::Kind kind)
{
    switch (kind) {
    case Event::Kind::Command:
        return QBrush(QGuiApplication::palette().color(QPalette::Link));
    case Event::Kind::Failure:
        return QBrush(Qt::red);
    default:
        return {};
    }
}

} // namespace

EventModel::EventModel(QObject* parent)
    : QAbstractTableModel(parent)
{
}

void EventModel::add(const Event& event)
{
    const int count = static_cast<int>(m_events.size());
    if (count == kMostEvents) {
        beginRemoveRows({}, 0, 0);
        m_events.pop_front();
        endRemoveRows();
    }
    const int row = static_cast<int>(m_events.size());
    beginInsertRows({}, row, row);
    m_events.push_back(event);
    endInsertRows();
}

void EventModel::clear()
{
    beginResetModel();
    m_events.clear();
    endResetModel();
}

int EventModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_events.size());
}

int EventModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant EventModel::data(const QModelIndex& index, int role) const
{
    const Event& event = m_events[static_cast<std::size_t>(index.row())];
    if (role == kKindRole)
        return static_cast<int>(event.kind);
    if (role == Qt::ForegroundRole)
        return colourOf(event.kind);
    if (role == Qt::TextAlignmentRole && index.column() == Time)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    if (role == Qt::ToolTipRole && index.column() == Text)
        return event.text;
    if (role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case Time:
        return QString::number(static_cast<double>(event.timeMs) / 1000, 'f', 3);
    case Name:
        return event.name;
    default:
        return event.text;
    }
}

QVariant EventModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Time:
        return tr("Seconds");
    case Name:
        return tr("Message or command");
    default:
        return tr("Values");
    }
}

} // namespace zrworkbench
