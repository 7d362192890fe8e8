#include "app/tools/Form_frequency.h"

#include <QApplication>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QShortcut>
#include <QTableWidget>
#include <QVBoxLayout>
#include <utility>

#include "core/number_text.h"
#include "core/session_state.h"
#include "database/frequency_store.h"
#include "platform/graph/frequency_axis.h"
#include "platform/widgets/check_cells.h"
#include "platform/widgets/entry_mark.h"
#include "platform/widgets/panel_controls.h"

namespace {

enum Column : int { frequency_column, use_column, period_column };

QTableWidgetItem* number_cell(const QString& text) {
  auto* const cell = new QTableWidgetItem(text);
  cell->setFlags(Qt::ItemIsEnabled);
  cell->setTextAlignment(Qt::AlignCenter);
  return cell;
}

}  // namespace

Form_frequency::Form_frequency(Frequencies selection, QWidget* parent)
    : QDialog(parent),
      choice_(std::move(selection)),
      Grid_frequencies_(make_switch_grid("Grid_frequencies", {"Frequency", "Use", "Period (s)"})),
      Text_from_(make_text("Text_from", 9)),
      Text_to_(make_text("Text_to", 9)),
      Command_use_range_(named(new QPushButton("&Use"), "Command_use_range")),
      Command_leave_range_(named(new QPushButton("&Leave Out"), "Command_leave_range")),
      Label_count_(named(new QLabel, "Label_count")),
      Command_save_changes_(named(new QPushButton("&Save Changes"), "Command_save_changes")),
      Command_cancel_changes_(named(new QPushButton("&Cancel Changes"), "Command_cancel_changes")),
      Command_done_(named(new QPushButton("&Done"), "Command_done")) {
  setObjectName("Form_frequency");
  setWindowTitle("Select Frequencies");
  auto* const frame = named(new QGroupBox("Frequencies (Hz)"), "Frame_frequencies");
  auto* const inside = new QVBoxLayout(frame);
  inside->addWidget(Grid_frequencies_);
  inside->addLayout(make_range());
  inside->addWidget(Label_count_);
  auto* const rows = new QVBoxLayout(this);
  rows->addWidget(frame, 1);
  rows->addLayout(make_buttons());
  Grid_frequencies_->setAccessibleName("Frequencies");
  // Ranges are typed in Hz either way, so that the frequencies stay beside the periods of the graphs.
  Grid_frequencies_->horizontalHeader()->moveSection(period_column, use_column);
  Grid_frequencies_->setColumnHidden(period_column, !graph::FrequencyAxis::instance().shows_periods());
  Grid_frequencies_->setToolTip(
      "Click into the column Use to switch a frequency on or off; Shift+click switches all from there to "
      "here");
  connect_controls();
  fill_grid();
  resize_to_fit(*this, {sizeHint().width(), 520});
}

QHBoxLayout* Form_frequency::make_range() {
  Text_from_->setToolTip("The lower end of a range, Hz; empty: the lowest frequency");
  Text_to_->setToolTip("The upper end of a range, Hz; empty: the highest frequency");
  Command_use_range_->setToolTip("Switches all frequencies of the range on");
  Command_leave_range_->setToolTip("Switches all frequencies of the range off");
  auto* const row = new QHBoxLayout;
  add_labelled(*row, "&From", Text_from_);
  add_labelled(*row, "&to", Text_to_);
  row->addWidget(Command_use_range_);
  row->addWidget(Command_leave_range_);
  row->addStretch();
  return row;
}

QHBoxLayout* Form_frequency::make_buttons() {
  Command_save_changes_->setToolTip("Stores which frequencies are used");
  Command_cancel_changes_->setToolTip("Back to what is stored; Ctrl+Z takes single steps back");
  Command_done_->setToolTip("Closes the window (Esc)");
  auto* const row = new QHBoxLayout;
  row->addWidget(Command_save_changes_);
  row->addWidget(Command_cancel_changes_);
  row->addStretch();
  row->addWidget(Command_done_);
  for (QPushButton* const button : {Command_save_changes_, Command_cancel_changes_, Command_done_,
                                    Command_use_range_, Command_leave_range_}) {
    button->setAutoDefault(false);
  }
  return row;
}

void Form_frequency::connect_controls() {
  connect_switches(*Grid_frequencies_, this, [this](int row, int column) { switch_cell(row, column); });
  connect(Command_use_range_, &QPushButton::clicked, this, [this] { set_range(true); });
  connect(Command_leave_range_, &QPushButton::clicked, this, [this] { set_range(false); });
  for (QLineEdit* const box : {Text_from_, Text_to_}) {
    connect(box, &QLineEdit::textChanged, this, [this, box] {
      if (is_marked(*box)) {
        mark_entry(*box, {});
        show_choice();
      }
    });
  }
  connect(Command_save_changes_, &QPushButton::clicked, this, [this] { static_cast<void>(save_changes()); });
  connect(Command_cancel_changes_, &QPushButton::clicked, this, [this] {
    choice_.set_stored();
    show_choice();
  });
  connect(Command_done_, &QPushButton::clicked, this, &QDialog::accept);
  const auto add_key = [this](const char* keys, QWidget* widget, auto act) {
    auto* const key = new QShortcut(QKeySequence(keys), widget);
    key->setContext(widget == this ? Qt::WindowShortcut : Qt::WidgetShortcut);
    connect(key, &QShortcut::activated, this, act);
  };
  add_key("Ctrl+Z", this, [this] {
    choice_.undo();
    show_choice();
  });
  add_key("Ctrl+Y", this, [this] {
    choice_.redo();
    show_choice();
  });
  add_key("Shift+Space", Grid_frequencies_, [this] {
    if (Grid_frequencies_->currentRow() >= 0) {
      switch_cell(Grid_frequencies_->currentRow(), use_column);
    }
  });
}

void Form_frequency::fill_grid() {
  Grid_frequencies_->setRowCount(static_cast<int>(choice_.frequencies().count()));
  for (int row = 0; row < Grid_frequencies_->rowCount(); ++row) {
    const auto index = static_cast<std::size_t>(row);
    const float frequency = choice_.frequencies().list[index];
    Grid_frequencies_->setItem(row, frequency_column, number_cell(qt_text(plain_text(frequency))));
    Grid_frequencies_->setItem(row, period_column,
                               number_cell(QString::number(1.0 / double{frequency}, 'g', 4)));
    Grid_frequencies_->setItem(row, use_column, make_check_cell(choice_.is_used(index)));
  }
  show_choice();
}

void Form_frequency::show_choice() {
  for (int row = 0; row < Grid_frequencies_->rowCount(); ++row) {
    set_checked(*Grid_frequencies_->item(row, use_column), choice_.is_used(static_cast<std::size_t>(row)));
  }
  Label_count_->setText(QString("%1 of %2 are used")
                            .arg(choice_.frequencies().enabled_count())
                            .arg(choice_.frequencies().count()));
  Command_save_changes_->setEnabled(choice_.differs());
  Command_cancel_changes_->setEnabled(choice_.differs());
}

void Form_frequency::switch_cell(int row, int column) {
  if (column == frequency_column) {  // the period switches, too: the space bar may be pressed there
    return;
  }
  if (QApplication::keyboardModifiers().testFlag(Qt::ShiftModifier)) {
    const auto from = static_cast<std::size_t>(last_row_);
    choice_.set_rows(from, static_cast<std::size_t>(row), choice_.is_used(from));
  } else {
    const auto index = static_cast<std::size_t>(row);
    choice_.set_rows(index, index, !choice_.is_used(index));
  }
  last_row_ = row;
  show_choice();
}

void Form_frequency::set_range(bool use) {
  const auto wrong = choice_.set_range(Text_from_->text().toStdString(), Text_to_->text().toStdString(), use);
  show_choice();
  if (wrong) {
    QLineEdit* const box = wrong->at_from ? Text_from_ : Text_to_;
    mark_entry(*box, qt_text(wrong->text));
    Label_count_->setText(qt_text(wrong->text));
    box->setFocus();
    box->selectAll();
  }
}

bool Form_frequency::save_changes() {
  if (Module_database::save_frequency_selection(session().current_reference_type, choice_.frequencies()) !=
      0) {
    return false;  // the user has seen the message
  }
  choice_.saved();
  frequencies_changed_ = true;
  show_choice();
  return true;
}

void Form_frequency::done(int result) {
  if (choice_.differs()) {
    const auto answer = QMessageBox::question(
        this, windowTitle(), "The changes of the frequencies are not saved. Save them?",
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    if (answer != QMessageBox::Save && answer != QMessageBox::Discard) {
      return;  // Esc goes back to the changes
    }
    if (answer == QMessageBox::Save && !save_changes()) {
      return;  // what could not be saved is still to be seen
    }
  }
  QDialog::done(result);
}
