#include "scenariopanel.h"

#include "command_table.h"
#include "meeting.h"
#include "scenariomodel.h"
#include "tables.h"

#include <QCompleter>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

namespace zrworkbench {

namespace {

/// How each command is written, and each call.
QStringList usages()
{
    QStringList texts;
    for (const zrhost::Command& command : zrhost::commandTable())
        texts << QString::fromStdString(zrhost::commandUsage(command));
    for (const zr::Export& row : zr::kExports)
        texts << QStringLiteral("call ") + row.name;
    return texts;
}

} // namespace

ScenarioPanel::ScenarioPanel(Meeting& meeting, const QList<QAction*>& actions, QWidget* parent)
    : QWidget(parent)
    , m_meeting(meeting)
    , m_model(new ScenarioModel(meeting, this))
    , m_table(new QTableView)
    , m_place(new QLabel)
    , m_line(new QLineEdit)
{
    m_table->setObjectName(QStringLiteral("scenario"));
    m_table->setModel(m_model);
    makeList(*m_table);
    m_table->setColumnWidth(ScenarioModel::Time,
                            m_table->fontMetrics().horizontalAdvance("00000.000  "));

    m_line->setObjectName(QStringLiteral("command"));
    m_line->setPlaceholderText(tr("Type a command, such as: mute user2 on"));
    m_line->setToolTip(tr("Any command of a scenario; what is typed offers those that fit"));
    m_line->setClearButtonEnabled(true);
    auto* const completer = new QCompleter(usages(), m_line);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setFilterMode(Qt::MatchContains);
    m_line->setCompleter(completer);
    connect(m_line, &QLineEdit::returnPressed, this, &ScenarioPanel::performTyped);

    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(4);
    layout->addWidget(makeBar(actions));
    layout->addWidget(m_table);
    layout->addWidget(m_line);
    connect(&meeting, &Meeting::changed, this, &ScenarioPanel::showPlace);
}

QWidget* ScenarioPanel::makeBar(const QList<QAction*>& actions)
{
    auto* const bar = new QWidget;
    auto* const layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    for (QAction* const action : actions) {
        auto* const button = new QToolButton;
        button->setDefaultAction(action);
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        button->setAutoRaise(true);
        layout->addWidget(button);
    }
    layout->addStretch();
    layout->addWidget(m_place);
    return bar;
}

void ScenarioPanel::performTyped()
{
    if (m_meeting.performLine(m_line->text()))
        m_line->clear();
}

void ScenarioPanel::showPlace()
{
    const zrhost::ScenarioPlayer& scenario = m_meeting.scenario();
    const int next = static_cast<int>(scenario.next());
    const int count = static_cast<int>(scenario.steps().size());
    m_place->setText(tr("%1 of %2 steps done").arg(next).arg(count));
    m_table->scrollTo(m_model->index(qMin(next, count - 1), 0));
}

} // namespace zrworkbench
