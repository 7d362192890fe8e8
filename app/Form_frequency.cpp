#include "app/Form_frequency.h"

#include <QHeaderView>

#include "core/number_text.h"
#include "ui_Form_frequency.h"

namespace {

constexpr int frequency_column = 0;
constexpr int use_column = 1;

QTableWidgetItem* new_cell(Qt::Alignment alignment) {
  auto* const item = new QTableWidgetItem;
  item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
  item->setTextAlignment(alignment);
  return item;
}

}  // namespace

Form_frequency::Form_frequency(std::int32_t reference_type, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::Form_frequency>()), reference_type_(reference_type) {
  ui_->setupUi(this);
  QHeaderView* const header = ui_->Grid_frequencies->horizontalHeader();
  header->setSectionResizeMode(QHeaderView::Stretch);
  ui_->Grid_frequencies->verticalHeader()->setVisible(false);
  connect(ui_->Grid_frequencies, &QTableWidget::cellClicked, this, &Form_frequency::toggle);
  // Enter does for the hand on the keys what a click does.
  connect(ui_->Grid_frequencies, &QTableWidget::cellActivated, this, &Form_frequency::toggle);
  connect(ui_->Command_save_changes, &QPushButton::clicked, this, &Form_frequency::save);
  connect(ui_->Command_cancel_changes, &QPushButton::clicked, this, &Form_frequency::load);
  connect(ui_->Command_done, &QPushButton::clicked, this, &QDialog::accept);
  load();
}

Form_frequency::~Form_frequency() = default;

void Form_frequency::load() {
  const auto stored = Module_database::read_frequency_selection(reference_type_);
  has_frequencies_ = stored.has_value();
  selection_ = stored.value_or(Module_database::FrequencySelection{});
  const int count = static_cast<int>(selection_.frequencies.size());
  ui_->Grid_frequencies->setRowCount(count);
  for (int row = 0; row < count; ++row) {
    ui_->Grid_frequencies->setItem(row, frequency_column, new_cell(Qt::AlignRight | Qt::AlignVCenter));
    ui_->Grid_frequencies->setItem(row, use_column, new_cell(Qt::AlignCenter));
    show_row(row);
  }
  set_edited(false);
}

void Form_frequency::show_row(int row) {
  const auto index = static_cast<std::size_t>(row);
  ui_->Grid_frequencies->item(row, frequency_column)
      ->setText(QString::fromStdString(plain_text(selection_.frequencies[index])));
  ui_->Grid_frequencies->item(row, use_column)
      ->setCheckState(selection_.flags[index] == 0 ? Qt::Unchecked : Qt::Checked);
}

void Form_frequency::toggle(int row, int /*column*/) {
  if (row < 0 || row >= static_cast<int>(selection_.flags.size())) {
    return;
  }
  std::int32_t& flag = selection_.flags[static_cast<std::size_t>(row)];
  flag = flag == 0 ? 1 : 0;
  show_row(row);
  set_edited(true);
}

void Form_frequency::save() {
  if (selection_.frequencies.empty() ||
      Module_database::save_frequency_selection(reference_type_, selection_) != 0) {
    return;
  }
  frequencies_changed_ = true;
  set_edited(false);
}

void Form_frequency::set_edited(bool edited) {
  ui_->Command_save_changes->setEnabled(edited);
  ui_->Command_cancel_changes->setEnabled(edited);
}
