#include "survey_edits/windows/Form_rename.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "core/number_text.h"
#include "core/trap_errors.h"
#include "platform/widgets/panel_controls.h"
#include "survey_edits/removal_plan.h"
#include "survey_edits/rename.h"

using namespace Module_survey_edits;

Form_rename::Form_rename(SurveyContents contents, const std::string& line, QWidget* parent)
    : QDialog(parent),
      contents_(std::move(contents)),
      Combo_line_(make_list("Combo_line")),
      Combo_station_(make_list("Combo_station")),
      Text_name_(make_text("Text_name", 12)),
      Label_fault_(named(new QLabel, "Label_fault")),
      Label_change_(named(new QLabel, "Label_change")),
      Command_rename_(named(new QPushButton("&Rename"), "Command_rename")) {
  setObjectName("Form_rename");
  setWindowTitle("Rename a Line or Station");
  for (const HeldLine& held : contents_.lines) {
    Combo_line_->addItem(qt_text(held.line));
  }
  const auto lines = lines_named(contents_, line);
  Combo_line_->setCurrentIndex(lines.empty() ? 0 : static_cast<int>(lines.front()));
  compose();
  list_stations();
  Combo_line_->setToolTip("The line that gets another name, or whose station another number");
  Combo_station_->setToolTip("The station that gets another number, or the line as a whole");
  connect(Combo_line_, &QComboBox::currentIndexChanged, this, &Form_rename::list_stations);
  connect(Combo_station_, &QComboBox::currentIndexChanged, this, &Form_rename::show_change);
  connect(Text_name_, &QLineEdit::textChanged, this, &Form_rename::show_change);
  connect(Command_rename_, &QPushButton::clicked, this, &Form_rename::rename);
  Text_name_->setFocus();
}

void Form_rename::compose() {
  auto* const name_row = new QHBoxLayout;
  name_row->addWidget(Text_name_);
  name_row->addWidget(Label_fault_, 1);
  auto* const form = new QFormLayout;
  form->addRow("&Line", Combo_line_);
  form->addRow("&Station", Combo_station_);
  auto* const name_label = new QLabel("&New name");
  name_label->setBuddy(Text_name_);
  form->addRow(name_label, name_row);
  auto* const cancel = named(new QPushButton("&Cancel"), "Command_cancel");
  auto* const buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(Command_rename_);
  buttons->addWidget(cancel);
  auto* const rows = new QVBoxLayout(this);
  rows->addLayout(form);
  rows->addWidget(Label_change_, 1);
  rows->addLayout(buttons);
  for (QLabel* const label : {Label_fault_, Label_change_}) {
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
  }
  Label_change_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  Combo_station_->setMinimumContentsLength(14);
  Text_name_->setToolTip(
      "A line's name is a whole number with N, S, E or W; without a letter, the line keeps its "
      "direction. A station's name is its number");
  Command_rename_->setDefault(true);
  cancel->setAutoDefault(false);
  cancel->setToolTip("Closes the window; nothing is renamed (Esc)");
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
  resize_to_fit(*this, {520, 240});
}

const HeldLine& Form_rename::line() const {
  return contents_.lines[static_cast<std::size_t>(std::max(Combo_line_->currentIndex(), 0))];
}

const HeldStation* Form_rename::station() const {
  const int index = Combo_station_->currentIndex();
  return index < 1 ? nullptr : &contents_.stations[line().stations[static_cast<std::size_t>(index - 1)]];
}

void Form_rename::list_stations() {
  const QSignalBlocker quiet(Combo_station_);
  Combo_station_->clear();
  Combo_station_->addItem("(the whole line)");
  if (!contents_.lines.empty()) {
    for (const std::size_t index : line().stations) {
      const HeldStation& held = contents_.stations[index];
      Combo_station_->addItem(
          qt_text(plain_text(held.station) + (held.name.empty() ? "" : "  " + held.name)));
    }
  }
  show_change();
}

void Form_rename::show_change() {
  const std::string typed = Text_name_->text().trimmed().toStdString();
  Command_rename_->setEnabled(false);
  Label_fault_->clear();
  Label_change_->clear();
  if (typed.empty() || contents_.lines.empty()) {
    return;
  }
  static_cast<void>(trap_errors("An error occurred while reading the stations: ", [&] {
    const HeldStation* const held = station();
    const NewLine name = held == nullptr ? new_line_name(line().line, typed) : NewLine{};
    const NewStation number =
        held == nullptr ? NewStation{} : new_station_number(held->line, held->station, typed);
    const std::string& fault = held == nullptr ? name.fault : number.fault;
    Label_fault_->setText(qt_text(fault));
    Command_rename_->setEnabled(fault.empty());
    if (!fault.empty()) {
      return;
    }
    const std::string what = held == nullptr ? "Line " + line().line + " becomes " + name.line + ", with " +
                                                   counted(line().stations.size(), "station") + " and " +
                                                   counted(line().readings, "reading") + "."
                                             : "Station " + plain_text(held->station) + " of line " +
                                                   held->line + " becomes " + plain_text(number.station) +
                                                   ", with " + counted(held->readings, "reading") + ".";
    Label_change_->setText(
        qt_text(what +
                " Local coordinates follow; places on the map that a file gave stay. Edits and removals from "
                "before can't be undone any more."));
  }));
}

void Form_rename::rename() {
  const std::string typed = Text_name_->text().trimmed().toStdString();
  const HeldStation* const held = station();
  const int result = held == nullptr
                         ? rename_line(line().line, new_line_name(line().line, typed).line)
                         : rename_station(held->line, held->station,
                                          new_station_number(held->line, held->station, typed).station);
  if (result == 0) {
    accept();
  }
}
