#include "participantmodel.h"

#include "meeting.h"

#include <tuple>

namespace zrworkbench {

namespace {

struct ColumnText
{
    const char* title;
    const char* toolTip;
};

constexpr ColumnText kColumns[ParticipantModel::ColumnCount] = {
    {QT_TRANSLATE_NOOP("ParticipantModel", "Participant"),
     QT_TRANSLATE_NOOP("ParticipantModel", "In the order of joining")},
    {QT_TRANSLATE_NOOP("ParticipantModel", "Camera"),
     QT_TRANSLATE_NOOP("ParticipantModel", "The camera is on and pictures flow")},
    {QT_TRANSLATE_NOOP("ParticipantModel", "Mic"),
     QT_TRANSLATE_NOOP("ParticipantModel", "The microphone is on")},
    {QT_TRANSLATE_NOOP("ParticipantModel", "Hand"),
     QT_TRANSLATE_NOOP("ParticipantModel", "A hand is raised")},
    {QT_TRANSLATE_NOOP("ParticipantModel", "Speaks"),
     QT_TRANSLATE_NOOP("ParticipantModel", "This participant speaks; one at a time")},
    {QT_TRANSLATE_NOOP("ParticipantModel", "Stream"),
     QT_TRANSLATE_NOOP("ParticipantModel", "Whether pictures are delivered to the module now")},
};

ParticipantRow rowOf(const zrhost::Participant& participant)
{
    ParticipantRow row;
    row.id = QString::fromStdString(participant.id);
    row.name = QString::fromStdString(participant.name);
    row.camera = participant.camera;
    row.muted = participant.muted;
    row.hand = participant.hand;
    row.self = participant.self;
    row.speaking = participant.speaking;
    row.open = participant.open;
    row.role = participant.role;
    row.volume = participant.volume;
    row.network = participant.network;
    return row;
}

QString nameOf(const ParticipantRow& row)
{
    QString name = row.name.isEmpty() ? row.id : row.name;
    if (row.role == 1)
        name += ParticipantModel::tr(" (host)");
    if (row.role == 2)
        name += ParticipantModel::tr(" (admin)");
    if (row.self)
        name += ParticipantModel::tr(" (me)");
    return name;
}

bool isOn(const ParticipantRow& row, int column)
{
    switch (column) {
    case ParticipantModel::Camera:
        return row.camera;
    case ParticipantModel::Microphone:
        return !row.muted;
    case ParticipantModel::Hand:
        return row.hand;
    default:
        return row.speaking;
    }
}

/// The command of a switch.
QStringList commandOf(const ParticipantRow& row, int column, bool on)
{
    const QString word = on ? QStringLiteral("on") : QStringLiteral("off");
    switch (column) {
    case ParticipantModel::Camera:
        return {QStringLiteral("preview"), row.id, word};
    case ParticipantModel::Microphone:
        return {QStringLiteral("mute"), row.id, on ? QStringLiteral("off") : QStringLiteral("on")};
    case ParticipantModel::Hand:
        return {QStringLiteral("hand"), row.id, word};
    default:
        return on ? QStringList{QStringLiteral("speaking"), row.id}
                  : QStringList{QStringLiteral("speaking")};
    }
}

bool isSwitch(int column)
{
    return column >= ParticipantModel::Camera && column <= ParticipantModel::Speaking;
}

} // namespace

bool ParticipantRow::operator==(const ParticipantRow& other) const
{
    const auto all = [](const ParticipantRow& r) {
        return std::tie(r.id, r.name, r.camera, r.muted, r.hand, r.self, r.speaking, r.open, r.role,
                        r.volume, r.network);
    };
    return all(*this) == all(other);
}

ParticipantModel::ParticipantModel(Meeting& meeting, QObject* parent)
    : QAbstractTableModel(parent)
    , m_meeting(meeting)
{
    connect(&meeting, &Meeting::changed, this, &ParticipantModel::refresh);
}

void ParticipantModel::refresh()
{
    QVector<ParticipantRow> rows;
    for (const auto& participant : m_meeting.session().people())
        rows.append(rowOf(*participant));
    // Whoever stays keeps the row, and so the selection.
    for (int i = 0; i < m_rows.size();) {
        if (i < rows.size() && rows[i].id == m_rows[i].id) {
            ++i;
            continue;
        }
        beginRemoveRows({}, i, i);
        m_rows.removeAt(i);
        endRemoveRows();
    }
    for (int i = 0; i < m_rows.size(); ++i) {
        if (rows[i] == m_rows[i])
            continue;
        m_rows[i] = rows[i];
        emit dataChanged(index(i, 0), index(i, ColumnCount - 1));
    }
    if (rows.size() > m_rows.size()) {
        beginInsertRows({}, m_rows.size(), rows.size() - 1);
        m_rows = rows;
        endInsertRows();
    }
}

int ParticipantModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int ParticipantModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ParticipantModel::data(const QModelIndex& index, int role) const
{
    const ParticipantRow& row = m_rows.at(index.row());
    if (role == Qt::CheckStateRole && isSwitch(index.column()))
        return isOn(row, index.column()) ? Qt::Checked : Qt::Unchecked;
    if (role == Qt::ToolTipRole)
        return index.column() == Name ? QVariant(row.id + QStringLiteral(": ") + nameOf(row))
                                      : headerData(index.column(), Qt::Horizontal, role);
    if (role == Qt::DisplayRole && index.column() == Name)
        return nameOf(row);
    if (role == Qt::DisplayRole && index.column() == Stream)
        return row.open ? tr("open") : tr("closed");
    return {};
}

bool ParticipantModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::CheckStateRole || !isSwitch(index.column()))
        return false;
    const bool on = value.toInt() == Qt::Checked;
    const bool done = m_meeting.perform(commandOf(m_rows.at(index.row()), index.column(), on));
    refresh();
    return done;
}

QVariant ParticipantModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::DisplayRole)
        return tr(kColumns[section].title);
    if (role == Qt::ToolTipRole)
        return tr(kColumns[section].toolTip);
    return {};
}

Qt::ItemFlags ParticipantModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    const bool canSwitch = isSwitch(index.column()) && m_meeting.session().hasScreen();
    return canSwitch ? flags | Qt::ItemIsUserCheckable : flags;
}

} // namespace zrworkbench
