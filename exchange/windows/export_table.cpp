#include "exchange/windows/export_table.h"

#include <QHeaderView>
#include <algorithm>
#include <array>

#include "exchange/windows/export_plan_model.h"
#include "platform/widgets/copy_cells.h"

namespace {

// Of the columns before the remarks, in average characters.
constexpr std::array<int, Module_exchange::export_column_titles.size() - 1> column_characters{24, 12, 12, 16,
                                                                                              28, 11, 18};

}  // namespace

ExportTable::ExportTable(ExportPlanModel& model, QWidget* parent) : QTableView(parent) {
  setObjectName("Table_export_plan");
  setAccessibleName("Files that would be written");
  setToolTip("What would be written; Ctrl+C copies the selected cells");
  setAlternatingRowColors(true);
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setWordWrap(false);
  setTabKeyNavigation(false);  // the tab key goes on to the next control
  setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setStretchLastSection(true);
  horizontalHeader()->setSortIndicatorShown(true);
  horizontalHeader()->setSortIndicatorClearable(true);
  horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
  setModel(&model);
  setSortingEnabled(true);
  size_columns();
  make_cells_copyable(*this);
}

void ExportTable::size_columns() {
  for (std::size_t column = 0; column < column_characters.size(); ++column) {
    setColumnWidth(static_cast<int>(column),
                   std::max(column_characters[column] * fontMetrics().averageCharWidth(),
                            horizontalHeader()->sectionSizeHint(static_cast<int>(column))));
  }
}
