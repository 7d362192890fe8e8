#include "exchange/windows/export_table.h"

#include <QHeaderView>
#include <algorithm>

#include "exchange/windows/export_plan_model.h"
#include "platform/widgets/copy_cells.h"

namespace {

constexpr int column_count = static_cast<int>(Module_exchange::export_column_titles.size());
constexpr int most_characters = 40;  // of a column before the remarks

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
  connect(&model, &QAbstractItemModel::modelReset, this, &ExportTable::size_columns);
  connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this](int column) {
    if (!sizing_) {
      set_by_hand_.insert(column);
    }
  });
  make_cells_copyable(*this);
}

void ExportTable::size_columns() {
  sizing_ = true;
  for (int column = 0; column < column_count - 1; ++column) {
    if (!set_by_hand_.contains(column)) {
      const int contents =
          std::min(sizeHintForColumn(column), most_characters * fontMetrics().averageCharWidth());
      setColumnWidth(column, std::max(contents, horizontalHeader()->sectionSizeHint(column)));
    }
  }
  sizing_ = false;
}
