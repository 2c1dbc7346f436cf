// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/RowTable.h"

#include <QHeaderView>
#include <QTableView>

void makeRowTable(QTableView &table, std::span<const int> widths)
{
    constexpr int rowMargin = 6; // pixels, above and below the text
    table.setShowGrid(false);
    table.setAlternatingRowColors(true);
    table.setSelectionBehavior(QAbstractItemView::SelectRows);
    table.setTabKeyNavigation(false);
    table.setWordWrap(false);
    table.setContextMenuPolicy(Qt::CustomContextMenu);
    table.verticalHeader()->hide();
    table.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table.verticalHeader()->setDefaultSectionSize(table.fontMetrics().height() + rowMargin);
    QHeaderView *const header = table.horizontalHeader();
    header->setHighlightSections(false);
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header->setStretchLastSection(true);
    for (std::size_t column = 0; column < widths.size(); ++column)
        header->resizeSection(static_cast<int>(column),
                              widths[column] * table.fontMetrics().averageCharWidth());
}
