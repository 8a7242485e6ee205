#include "statisticspanel.h"

#include "tables.h"

#include <QHeaderView>
#include <QLabel>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <string_view>
#include <utility>

namespace zrworkbench {

namespace {

QStringList titles()
{
    return {StatisticsPanel::tr("participant"), StatisticsPanel::tr("frames/s"),
            StatisticsPanel::tr("refused"),     StatisticsPanel::tr("painted/s"),
            StatisticsPanel::tr("coalesced/s"), StatisticsPanel::tr("picture"),
            StatisticsPanel::tr("grade"),       StatisticsPanel::tr("stream"),
            StatisticsPanel::tr("opened"),      StatisticsPanel::tr("told shown"),
            StatisticsPanel::tr("told hidden")};
}

QString rate(double perS)
{
    return QString::number(perS, 'f', 1);
}

QStringList cells(const zrhost::TileStatistics& tile)
{
    return {QString::fromStdString(tile.userId),
            rate(tile.framesPerS),
            QString::number(tile.refused),
            rate(tile.paintedPerS),
            rate(tile.coalescedPerS()),
            QStringLiteral("%1x%2").arg(tile.picture.width).arg(tile.picture.height),
            QString::number(tile.grade),
            tile.isOpen ? StatisticsPanel::tr("open") : StatisticsPanel::tr("closed"),
            QString::number(tile.timesOpened),
            QString::number(tile.timesShown),
            QString::number(tile.timesHidden)};
}

/// "user2" before "user10".
bool comesBefore(const zrhost::TileStatistics& one, const zrhost::TileStatistics& other)
{
    return std::pair(one.userId.size(), std::string_view(one.userId))
           < std::pair(other.userId.size(), std::string_view(other.userId));
}

} // namespace

StatisticsPanel::StatisticsPanel(QWidget* parent)
    : QWidget(parent)
    , m_all(new QLabel(tr("The module tells its figures every second.")))
    , m_table(new QTableWidget)
{
    m_table->setObjectName(QStringLiteral("statistics"));
    makeList(*m_table);
    m_table->setColumnCount(titles().size());
    m_table->setHorizontalHeaderLabels(titles());
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(m_all);
    layout->addWidget(m_table);
}

void StatisticsPanel::take(const QString& line)
{
    if (auto figures = m_reader.take(line.toStdString()))
        show(*std::move(figures));
}

void StatisticsPanel::show(zrhost::MeetingStatistics figures)
{
    m_all->setText(
        tr("%1 participants, %2 compositions/s, longest paint %3 ms, longest stall %4 ms")
            .arg(figures.tiles.size())
            .arg(figures.compositionsPerS, 0, 'f', 1)
            .arg(figures.longestPaintMs, 0, 'f', 1)
            .arg(figures.longestStallMs));
    std::sort(figures.tiles.begin(), figures.tiles.end(), comesBefore);
    m_table->setRowCount(static_cast<int>(figures.tiles.size()));
    for (int row = 0; row < m_table->rowCount(); ++row) {
        const QStringList texts = cells(figures.tiles[static_cast<std::size_t>(row)]);
        for (int column = 0; column < texts.size(); ++column)
            m_table->setItem(row, column, new QTableWidgetItem(texts[column]));
    }
}

} // namespace zrworkbench
