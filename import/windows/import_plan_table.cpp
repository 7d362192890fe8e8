#include "import/windows/import_plan_table.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <algorithm>
#include <array>

#include "import/windows/import_plan_model.h"
#include "platform/widgets/preview_table.h"

namespace {

// Of the columns before the remarks, in average characters.
constexpr std::array<int, Module_data_file::plan_column_titles.size() - 1> column_characters{
    30, 16, 8, 10, 7, 12, 7, 25, 9, 9};

}  // namespace

ImportPlanTable::ImportPlanTable(QWidget* parent) : QTableView(parent) {
  set_up_preview_table(*this);
  setEditTriggers(DoubleClicked | EditKeyPressed | AnyKeyPressed);
}

void ImportPlanTable::show_model(ImportPlanModel& model) {
  plan_ = &model;
  setModel(&model);
  setSortingEnabled(true);
  size_columns();
}

void ImportPlanTable::size_columns() {
  for (std::size_t column = 0; column < column_characters.size(); ++column) {
    setColumnWidth(static_cast<int>(column),
                   std::max(column_characters[column] * fontMetrics().averageCharWidth(),
                            horizontalHeader()->sectionSizeHint(static_cast<int>(column))));
  }
}

void ImportPlanTable::go_to_row(int row) {
  if (row >= 0 && row < model()->rowCount()) {
    setCurrentIndex(model()->index(row, std::max(currentIndex().column(), 0)));
  }
}

void ImportPlanTable::commitData(QWidget* editor) {
  const auto* const typed = qobject_cast<QLineEdit*>(editor);
  QModelIndexList cells;
  for (const QModelIndex& index : selectionModel()->selectedIndexes()) {
    if (index.column() == currentIndex().column()) {
      cells.append(index);
    }
  }
  if (typed == nullptr || cells.size() < 2) {
    QTableView::commitData(editor);
  } else if (typed->isModified()) {
    plan_->type_into(cells, typed->text());
  }
}

void ImportPlanTable::reset_selected() { plan_->reset_cells(selectionModel()->selectedIndexes()); }

void ImportPlanTable::contextMenuEvent(QContextMenuEvent* event) {
  const QModelIndexList selected = selectionModel()->selectedIndexes();
  QMenu menu(this);
  QAction* const back = menu.addAction("Back to the &proposal\tDel", this, &ImportPlanTable::reset_selected);
  back->setEnabled(
      std::ranges::any_of(selected, [this](const auto& index) { return plan_->is_edited(index); }));
  QAction* const all = menu.addAction("Back to &all proposals", plan_, &ImportPlanModel::reset_all);
  all->setEnabled(!plan_->edits().empty());
  menu.exec(event->globalPos());
}

void ImportPlanTable::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Delete) {
    reset_selected();
  } else {
    QTableView::keyPressEvent(event);
  }
}

void ImportPlanTable::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTableView::currentChanged(current, previous);
  Q_EMIT row_chosen(current.row());
}
