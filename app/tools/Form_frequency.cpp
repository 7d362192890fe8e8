#include "app/tools/Form_frequency.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>
#include <utility>

#include "core/number_text.h"
#include "core/session_state.h"
#include "platform/widgets/check_cells.h"
#include "platform/widgets/panel_controls.h"

Form_frequency::Form_frequency(Frequencies selection, QWidget* parent)
    : QDialog(parent),
      selection_(std::move(selection)),
      Grid_frequencies_(make_switch_grid("Grid_frequencies", {"Frequency", "Use"})),
      Command_save_changes_(named(new QPushButton("&Save Changes"), "Command_save_changes")),
      Command_cancel_changes_(named(new QPushButton("&Cancel Changes"), "Command_cancel_changes")) {
  setObjectName("Form_frequency");
  setWindowTitle("Select Frequencies");
  auto* const frame = named(new QGroupBox("Frequencies (Hz)"), "Frame_frequencies");
  (new QVBoxLayout(frame))->addWidget(Grid_frequencies_);
  auto* const done = named(new QPushButton("&Done"), "Command_done");
  auto* const buttons = new QHBoxLayout;
  buttons->addWidget(Command_save_changes_);
  buttons->addWidget(Command_cancel_changes_);
  buttons->addStretch();
  buttons->addWidget(done);
  auto* const rows = new QVBoxLayout(this);
  rows->addWidget(frame, 1);
  rows->addLayout(buttons);
  for (QPushButton* const button : {Command_save_changes_, Command_cancel_changes_, done}) {
    button->setAutoDefault(false);
  }
  resize_to_fit(*this, {sizeHint().width(), 480});
  connect_switches(*Grid_frequencies_, this, [this](int row, int column) { switch_cell(row, column); });
  Grid_frequencies_->setAccessibleName("Frequencies");
  Grid_frequencies_->setToolTip("Click into the column Use to switch a frequency on or off");
  Command_save_changes_->setToolTip("Stores which frequencies are used");
  Command_cancel_changes_->setToolTip("Back to what is stored");
  done->setToolTip("Closes the window (Esc)");
  connect(Command_save_changes_, &QPushButton::clicked, this, &Form_frequency::save_changes);
  connect(Command_cancel_changes_, &QPushButton::clicked, this, &Form_frequency::cancel_changes);
  connect(done, &QPushButton::clicked, this, &QDialog::accept);
  show_selection();
}

void Form_frequency::show_selection() {
  Grid_frequencies_->setRowCount(static_cast<int>(selection_.list.size()));
  for (int row = 0; row < Grid_frequencies_->rowCount(); ++row) {
    const auto index = static_cast<std::size_t>(row);
    auto* const frequency = new QTableWidgetItem(qt_text(plain_text(selection_.list[index])));
    frequency->setFlags(Qt::ItemIsEnabled);
    frequency->setTextAlignment(Qt::AlignCenter);
    Grid_frequencies_->setItem(row, 0, frequency);
    Grid_frequencies_->setItem(row, 1, make_check_cell(selection_.enabled[index] == 1));
  }
  set_edited(false);
}

void Form_frequency::switch_cell(int row, int column) {
  if (column < 1) {
    return;
  }
  QTableWidgetItem& cell = *Grid_frequencies_->item(row, column);
  set_checked(cell, !is_checked(cell));
  selection_.enabled[static_cast<std::size_t>(row)] = is_checked(cell) ? 1 : 0;
  set_edited(true);
}

void Form_frequency::save_changes() {
  if (Module_database::save_frequency_selection(session().current_reference_type, selection_) == 0) {
    frequencies_changed_ = true;
    set_edited(false);
  }
}

void Form_frequency::cancel_changes() {
  if (auto stored = Module_database::load_reference_frequencies(session().current_reference_type);
      stored && !stored->empty()) {
    selection_ = std::move(*stored);
    show_selection();
  }
}

void Form_frequency::set_edited(bool edited) {
  Command_save_changes_->setEnabled(edited);
  Command_cancel_changes_->setEnabled(edited);
}
