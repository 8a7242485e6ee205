#include "statisticspanel.h"

#include "tables.h"

#include <QCollator>
#include <QHeaderView>
#include <QLabel>
#include <QRegularExpression>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace zrworkbench {

StatisticsPanel::StatisticsPanel(QWidget* parent)
    : QWidget(parent)
    , m_all(new QLabel(tr("The module tells its figures every second.")))
    , m_table(new QTableWidget)
{
    const QStringList titles{tr("Participant"), tr("Frames in"), tr("Refused"),
                             tr("Painted"),     tr("Picture"),   tr("Grade"),
                             tr("Stream"),      tr("Shown"),     tr("Hidden")};
    m_table->setObjectName(QStringLiteral("statistics"));
    m_table->setColumnCount(titles.size());
    m_table->setHorizontalHeaderLabels(titles);
    makeList(*m_table);
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(m_all);
    layout->addWidget(m_table);
    m_blockEnd.setSingleShot(true);
    connect(&m_blockEnd, &QTimer::timeout, this, &StatisticsPanel::show);
}

void StatisticsPanel::take(const QString& line)
{
    const QString all = QStringLiteral("stats: ");
    if (line.startsWith(all)) {
        m_all->setText(line.mid(all.size()));
        m_participants.clear();
        m_blockEnd.start();
    } else if (line.startsWith(QLatin1String("stats "))) {
        m_participants.append(line);
    }
}

void StatisticsPanel::show()
{
    QCollator byNumbers;
    byNumbers.setNumericMode(true); // user2 before user10
    std::sort(m_participants.begin(), m_participants.end(), byNumbers);
    m_table->setRowCount(m_participants.size());
    for (int row = 0; row < m_participants.size(); ++row)
        showParticipant(row, m_participants[row]);
}

/// "stats ID: in 25.0/s, refused 0, painted 25.0/s, ...": what the column's title says goes.
void StatisticsPanel::showParticipant(int row, const QString& line)
{
    static const QRegularExpression label(
        QStringLiteral("^(in|refused|painted|grade|stream|told shown|hidden) | times$"));
    const int begin = line.indexOf(QLatin1Char(' ')) + 1;
    const int colon = qMax(line.lastIndexOf(QStringLiteral(": in ")), begin);
    QStringList cells = line.mid(colon + 2).split(QStringLiteral(", "));
    cells.replaceInStrings(label, QString());
    cells.prepend(line.mid(begin, colon - begin));
    for (int column = 0; column < qMin(cells.size(), m_table->columnCount()); ++column)
        m_table->setItem(row, column, new QTableWidgetItem(cells[column]));
}

} // namespace zrworkbench
