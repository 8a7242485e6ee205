#include "statisticspanel.h"

#include "tables.h"

#include <QHeaderView>
#include <QLabel>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace zrworkbench {

namespace {

/// "stats ID: in 25.0/s, refused 0, 640x360, hidden 0 times": of each figure the last word is the
/// value, and those before it are its name.
QVector<Figure> figuresOf(const QString& line)
{
    const int begin = line.indexOf(QLatin1Char(' ')) + 1;
    const int colon = qMax(line.lastIndexOf(QStringLiteral(": in ")), begin);
    QVector<Figure> figures{{StatisticsPanel::tr("participant"), line.mid(begin, colon - begin)}};
    for (QString text : line.mid(colon + 2).split(QStringLiteral(", "))) {
        text.remove(QStringLiteral(" times"));
        const int blank = text.lastIndexOf(QLatin1Char(' '));
        const QString name = blank < 0 ? StatisticsPanel::tr("picture") : text.left(blank);
        figures.append({name, text.mid(blank + 1)});
    }
    return figures;
}

/// "stats user2: in ..." before "stats user10: in ...".
bool comesBefore(const QString& one, const QString& other)
{
    const QString end = QStringLiteral(": in ");
    const int length = one.lastIndexOf(end);
    const int otherLength = other.lastIndexOf(end);
    return length != otherLength ? length < otherLength : one < other;
}

} // namespace

StatisticsPanel::StatisticsPanel(QWidget* parent)
    : QWidget(parent)
    , m_all(new QLabel(tr("The module tells its figures every second.")))
    , m_table(new QTableWidget)
{
    m_table->setObjectName(QStringLiteral("statistics"));
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
    std::sort(m_participants.begin(), m_participants.end(), comesBefore);
    m_table->setRowCount(m_participants.size());
    for (int row = 0; row < m_participants.size(); ++row)
        showParticipant(row, figuresOf(m_participants[row]));
}

void StatisticsPanel::showParticipant(int row, const QVector<Figure>& figures)
{
    m_table->setColumnCount(figures.size());
    for (int column = 0; column < figures.size(); ++column) {
        m_table->setHorizontalHeaderItem(column, new QTableWidgetItem(figures[column].title));
        m_table->setItem(row, column, new QTableWidgetItem(figures[column].value));
    }
}

} // namespace zrworkbench
