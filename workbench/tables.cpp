#include "tables.h"

#include <QHeaderView>
#include <QTableView>

namespace zrworkbench {

void makeList(QTableView& table)
{
    constexpr int kMarginPx = 4;
    table.setSelectionBehavior(QAbstractItemView::SelectRows);
    table.setEditTriggers(QAbstractItemView::NoEditTriggers);
    table.setShowGrid(false);
    table.setWordWrap(false);
    table.verticalHeader()->hide();
    table.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table.verticalHeader()->setDefaultSectionSize(table.fontMetrics().height() + kMarginPx);
    table.horizontalHeader()->setHighlightSections(false);
    table.horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    table.horizontalHeader()->setStretchLastSection(true);
}

} // namespace zrworkbench
