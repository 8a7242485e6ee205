// The participants as a table, with switches.
#pragma once

#include <QAbstractTableModel>
#include <QStringList>
#include <QVector>

namespace zrworkbench {

class Meeting;

/// What the table shows of a participant.
struct ParticipantRow
{
    QString id;
    QString name;
    bool camera = false;
    bool muted = false;
    bool hand = false;
    bool self = false;
    bool speaking = false;
    bool open = false;
    int role = 0;
    int volume = 0;
    int network = -1;

    bool operator==(const ParticipantRow& other) const;
};

class ParticipantModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column
    {
        Name,
        Camera,
        Microphone,
        Hand,
        Speaking,
        Stream,
        ColumnCount
    };

    /// The meeting must outlive it.
    ParticipantModel(Meeting& meeting, QObject* parent);

    [[nodiscard]] const ParticipantRow& row(int row) const { return m_rows.at(row); }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    void refresh();

    Meeting& m_meeting;
    QVector<ParticipantRow> m_rows;
};

} // namespace zrworkbench
