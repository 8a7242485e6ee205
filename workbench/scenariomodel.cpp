#include "scenariomodel.h"

#include "meeting.h"

#include <QBrush>
#include <QFont>
#include <QGuiApplication>
#include <QPalette>

namespace zrworkbench {

ScenarioModel::ScenarioModel(const Meeting& meeting, QObject* parent)
    : QAbstractTableModel(parent)
    , m_meeting(meeting)
{
    connect(&meeting, &Meeting::changed, this, &ScenarioModel::refresh);
}

void ScenarioModel::refresh()
{
    const int count = static_cast<int>(m_meeting.scenario().steps().size());
    if (count > m_count) {
        beginInsertRows({}, m_count, count - 1);
        m_count = count;
        endInsertRows();
    } else if (count < m_count) {
        beginRemoveRows({}, count, m_count - 1);
        m_count = count;
        endRemoveRows();
    }
    if (m_count > 0)
        emit dataChanged(index(0, 0), index(m_count - 1, ColumnCount - 1));
}

int ScenarioModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_count;
}

int ScenarioModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ScenarioModel::data(const QModelIndex& index, int role) const
{
    const zrhost::ScenarioPlayer& scenario = m_meeting.scenario();
    const auto row = static_cast<std::size_t>(index.row());
    if (row >= scenario.steps().size()) // the scenario is a moment ahead
        return {};
    if (role == Qt::ForegroundRole && row > scenario.next())
        return QBrush(QGuiApplication::palette().color(QPalette::Disabled, QPalette::Text));
    if (role == Qt::FontRole && row == scenario.next()) {
        QFont font;
        font.setBold(true);
        return font;
    }
    if (role == Qt::TextAlignmentRole && index.column() == Time)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    const zrhost::ScenarioStep& step = scenario.steps()[row];
    return index.column() == Time ? QString::number(step.timeMs / 1000.0, 'f', 3)
                                  : QString::fromStdString(step.command);
}

QVariant ScenarioModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == Time ? tr("Seconds") : tr("Step");
}

} // namespace zrworkbench
