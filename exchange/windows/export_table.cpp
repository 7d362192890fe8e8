#include "exchange/windows/export_table.h"

#include <QHeaderView>
#include <algorithm>

#include "exchange/windows/export_plan_model.h"
#include "platform/widgets/copy_cells.h"
#include "platform/widgets/preview_table.h"

namespace {

constexpr int column_count = static_cast<int>(Module_exchange::export_column_titles.size());
constexpr int most_characters = 40;  // of a column before the remarks

}  // namespace

ExportTable::ExportTable(ExportPlanModel& model, QWidget* parent) : QTableView(parent) {
  setObjectName("Table_export_plan");
  setAccessibleName("Files that would be written");
  setToolTip("What would be written; Ctrl+C copies the selected cells");
  set_up_preview_table(*this);
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
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
