#include "eventpanel.h"

#include "eventmodel.h"
#include "tables.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>

namespace zrworkbench {

/// Messages and failures, on request commands and their answers; of them those with a text.
class EventFilter : public QSortFilterProxyModel
{
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    void showCommands(bool show)
    {
        m_showsCommands = show;
        invalidateFilter();
    }

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override
    {
        const auto kind = static_cast<Event::Kind>(
            sourceModel()->index(row, 0).data(EventModel::kKindRole).toInt());
        return (m_showsCommands || kind != Event::Kind::Command)
               && QSortFilterProxyModel::filterAcceptsRow(row, parent);
    }

private:
    bool m_showsCommands = true;
};

EventPanel::EventPanel(Meeting& meeting, QWidget* parent)
    : QWidget(parent)
    , m_model(new EventModel(this))
    , m_filter(new EventFilter(this))
    , m_table(new QTableView)
{
    m_filter->setSourceModel(m_model);
    m_filter->setFilterKeyColumn(-1);
    m_filter->setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_table->setObjectName(QStringLiteral("messages"));
    m_table->setModel(m_filter);
    makeList(*m_table);
    m_table->setColumnWidth(EventModel::Time,
                            m_table->fontMetrics().horizontalAdvance("00000.000  "));
    m_table->setColumnWidth(EventModel::Name, m_table->fontMetrics().horizontalAdvance(
                                                  "ZRMSG_PERSON_INFO_UPDATED    "));

    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(4);
    layout->addWidget(makeBar());
    layout->addWidget(m_table);

    connect(&meeting, &Meeting::happened, m_model, &EventModel::add);
    connect(&meeting, &Meeting::begun, m_model, &EventModel::clear);
    connect(m_filter, &QAbstractItemModel::rowsAboutToBeInserted, this, &EventPanel::followNewest);
}

QWidget* EventPanel::makeBar()
{
    auto* const bar = new QWidget;
    auto* const layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* const text = new QLineEdit;
    text->setPlaceholderText(tr("Show only lines with this text, such as VIDEO_SHOWN or user2"));
    text->setClearButtonEnabled(true);
    connect(text, &QLineEdit::textChanged, m_filter, &EventFilter::setFilterFixedString);
    auto* const commands = new QCheckBox(tr("Commands too"));
    commands->setToolTip(tr("Show what was done between the messages that came of it"));
    commands->setChecked(true);
    connect(commands, &QCheckBox::toggled, m_filter, &EventFilter::showCommands);
    auto* const clear = new QPushButton(tr("Clear"));
    connect(clear, &QPushButton::clicked, m_model, &EventModel::clear);
    for (QWidget* const widget : {static_cast<QWidget*>(text), static_cast<QWidget*>(commands),
                                  static_cast<QWidget*>(clear)})
        layout->addWidget(widget);
    return bar;
}

void EventPanel::followNewest()
{
    const QScrollBar* const bar = m_table->verticalScrollBar();
    if (bar->value() == bar->maximum())
        QTimer::singleShot(0, m_table, &QTableView::scrollToBottom);
}

} // namespace zrworkbench
