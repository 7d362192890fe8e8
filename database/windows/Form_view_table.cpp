#include "database/windows/Form_view_table.h"

#include <QFileInfo>
#include <QHeaderView>
#include <QScreen>
#include <algorithm>

#include "platform/widgets/copy_cells.h"
#include "platform/widgets/panel_controls.h"
#include "ui_Form_view_table.h"

namespace {

constexpr int rows_measured = 30;  // for the widths of the columns; about what is seen at once

QString utf8(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

Form_view_table::Form_view_table(const std::string& path, const Module_database::ViewedTable& table,
                                 QWidget* parent)
    : QDialog(parent),
      ui_(std::make_unique<Ui::Form_view_table>()),
      model_(new TableModel(Module_database::TableRows(path, table.table), this)) {
  ui_->setupUi(this);
  setWindowTitle(utf8(table.caption) + " - " + QFileInfo(QString::fromStdString(path)).fileName());
  ui_->Grid_table->horizontalHeader()->setResizeContentsPrecision(rows_measured);
  ui_->Grid_table->verticalHeader()->setDefaultSectionSize(fontMetrics().height() +
                                                           fontMetrics().descent() * 2);
  ui_->Grid_table->setModel(model_);
  ui_->Grid_table->resizeColumnsToContents();
  ui_->Label_row_count->setText(QString::number(model_->rowCount()) +
                                (model_->rowCount() == 1 ? " row" : " rows"));
  resize_to_fit(*this, {fontMetrics().averageCharWidth() * 180, fontMetrics().height() * 32});
  make_cells_copyable(*ui_->Grid_table);

  const auto current = [this] { return ui_->Grid_table->currentIndex().row(); };
  connect(ui_->Command_first, &QToolButton::clicked, this, [this] { go_to_row(0); });
  connect(ui_->Command_previous, &QToolButton::clicked, this, [this, current] { go_to_row(current() - 1); });
  connect(ui_->Command_next, &QToolButton::clicked, this, [this, current] { go_to_row(current() + 1); });
  connect(ui_->Command_last, &QToolButton::clicked, this, [this] { go_to_row(model_->rowCount() - 1); });
  connect(ui_->Grid_table->selectionModel(), &QItemSelectionModel::currentChanged, this,
          &Form_view_table::show_position);
  connect(ui_->Command_done, &QPushButton::clicked, this, &QDialog::accept);
  go_to_row(0);
  show_position();
}

Form_view_table::~Form_view_table() = default;

void Form_view_table::go_to_row(int row) {
  const int column = std::max(ui_->Grid_table->currentIndex().column(), 0);
  ui_->Grid_table->setCurrentIndex(model_->index(row, column));
}

void Form_view_table::show_position() {
  const int row = ui_->Grid_table->currentIndex().row();
  const int rows = model_->rowCount();
  ui_->Label_record->setText(
      rows == 0 ? "No records" : "Record " + QString::number(row + 1) + " of " + QString::number(rows));
  ui_->Command_first->setEnabled(row > 0);
  ui_->Command_previous->setEnabled(row > 0);
  ui_->Command_next->setEnabled(row + 1 < rows);
  ui_->Command_last->setEnabled(row + 1 < rows);
}
