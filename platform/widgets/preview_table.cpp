#include "platform/widgets/preview_table.h"

#include <QHeaderView>
#include <QTableView>

void set_up_preview_table(QTableView& table) {
  table.setAlternatingRowColors(true);
  table.setSelectionMode(QAbstractItemView::ExtendedSelection);
  table.setWordWrap(false);
  table.setTabKeyNavigation(false);  // the tab key goes on to the next control
  table.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  QHeaderView& rows = *table.verticalHeader();
  rows.hide();
  rows.setSectionResizeMode(QHeaderView::Fixed);
  rows.setDefaultSectionSize(table.fontMetrics().height() + 6);
  QHeaderView& headings = *table.horizontalHeader();
  headings.setHighlightSections(false);
  headings.setStretchLastSection(true);
  headings.setSortIndicatorShown(true);
  headings.setSortIndicatorClearable(true);
  headings.setSortIndicator(-1, Qt::AscendingOrder);
}
