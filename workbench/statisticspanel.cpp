#include "statisticspanel.h"

#include "tables.h"

#include <QLabel>
#include <QRegularExpression>
#include <QTableWidget>
#include <QVBoxLayout>

namespace zrworkbench {

StatisticsPanel::StatisticsPanel(QWidget* parent)
    : QWidget(parent)
    , m_all(new QLabel(tr("The module tells its figures every second.")))
    , m_table(new QTableWidget)
{
    const QStringList titles{tr("Participant"), tr("Frames in"),  tr("Refused"),
                             tr("Painted"),     tr("Picture"),    tr("Grade"),
                             tr("Stream"),      tr("Told shown"), tr("Hidden")};
    m_table->setObjectName(QStringLiteral("statistics"));
    m_table->setColumnCount(titles.size());
    m_table->setHorizontalHeaderLabels(titles);
    makeList(*m_table);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(m_all);
    layout->addWidget(m_table);
}

void StatisticsPanel::take(const QString& line)
{
    const QString all = QStringLiteral("stats: ");
    if (line.startsWith(all)) {
        m_table->setRowCount(m_row);
        m_row = 0;
        m_all->setText(line.mid(all.size()));
    } else if (line.startsWith(QLatin1String("stats "))) {
        addParticipant(line);
    }
}

/// "stats ID: in 25.0/s, refused 0, painted 25.0/s, ..."
void StatisticsPanel::addParticipant(const QString& line)
{
    const int colon = line.lastIndexOf(QStringLiteral(": in "));
    if (colon < 0)
        return;
    static const QRegularExpression label(
        QStringLiteral("^(in|refused|painted|grade|stream|told shown|hidden) "));
    QStringList cells = line.mid(colon + 2).split(QStringLiteral(", "));
    cells.replaceInStrings(label, QString());
    cells.prepend(line.mid(6, colon - 6));
    if (m_row >= m_table->rowCount())
        m_table->setRowCount(m_row + 1);
    for (int column = 0; column < qMin(cells.size(), m_table->columnCount()); ++column) {
        QTableWidgetItem* item = m_table->item(m_row, column);
        if (!item)
            m_table->setItem(m_row, column, item = new QTableWidgetItem);
        item->setText(cells[column]);
    }
    ++m_row;
}

} // namespace zrworkbench
