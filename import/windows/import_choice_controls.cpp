#include "import/windows/import_choice_controls.h"

#include <initializer_list>
#include <utility>

#include "core/scope_guard.h"
#include "ui_Form_import_MTData.h"

using namespace Module_data_file;

ImportChoiceControls::ImportChoiceControls(Ui::Form_import_MTData& ui, LastingChoices& lasting,
                                           QObject* parent)
    : QObject(parent), ui_(ui), lasting_(lasting) {
  ui_.Combo_data_type->addItems({"Not Remote Referenced", "Remote Referenced", "Cross Referenced"});
  ui_.Combo_data_reduced->addItems({"Raw", "Averaged", "Merged"});
  ui_.Grid_import_decode->edit_table(decode_);
  show({});
  connect_controls();
}

void ImportChoiceControls::connect_controls() {
  const auto user_changed = [this] { this->user_changed(); };
  connect(ui_.Grid_import_decode, &ImportDecodeGrid::table_changed, this, user_changed);
  for (QComboBox* const combo : {ui_.Combo_data_type, ui_.Combo_data_reduced}) {
    connect(combo, &QComboBox::currentIndexChanged, this, user_changed);
  }
  for (QLineEdit* const box : {ui_.Text_start_station, ui_.Text_station_step}) {
    connect(box, &QLineEdit::textChanged, this, user_changed);
  }
  for (QAbstractButton* const button : std::initializer_list<QAbstractButton*>{
           ui_.Option_linedirection_0, ui_.Check_convert_geographic_coordinates,
           ui_.Check_compute_from_impedance, ui_.Check_turn_ey_phase, ui_.Check_turn_ey_always}) {
    connect(button, &QAbstractButton::toggled, this, user_changed);
  }
  for (QAbstractButton* const option : {ui_.Option_count_stations, ui_.Check_use_SECTID_as_station,
                                        ui_.Check_sectid_digits, ui_.Option_station_distance}) {
    connect(option, &QAbstractButton::toggled, this, [this](bool checked) {
      if (checked) {  // not for the one that it takes the mark from, too
        this->user_changed();
      }
    });
  }
}

void ImportChoiceControls::show(const ImportChoices& choices) {
  const ScopedValue updating(updating_, true);
  choices_ = choices;
  decode_ = choices.decode;
  ui_.Grid_import_decode->refresh();
  ui_.Combo_data_type->setCurrentIndex(choices.ReferenceType);
  ui_.Combo_data_reduced->setCurrentIndex(choices.ReductionType);
  const bool is_east = choices.line_direction == LineDirection::local_east;
  (is_east ? ui_.Option_linedirection_0 : ui_.Option_linedirection_1)->setChecked(true);
  for (const auto& [box, text] : {std::pair(ui_.Text_start_station, choices.start_station),
                                  std::pair(ui_.Text_station_step, choices.station_step)}) {
    if (box->text().toStdString() != text) {  // the cursor stays where somebody types
      box->setText(QString::fromStdString(text));
    }
  }
  QRadioButton* const options[] = {ui_.Option_count_stations, ui_.Check_use_SECTID_as_station,
                                   ui_.Check_sectid_digits, ui_.Option_station_distance};
  options[static_cast<std::size_t>(choices.stations_by)]->setChecked(true);
  for (QRadioButton* const option : options) {  // Tab leads to the chosen one, as after a click
    option->setFocusPolicy(option->isChecked() ? Qt::StrongFocus : Qt::ClickFocus);
  }
  ui_.Check_convert_geographic_coordinates->setChecked(choices.convert_coordinates);
  ui_.Check_compute_from_impedance->setChecked(choices.compute_from_impedance);
  ui_.Check_turn_ey_phase->setChecked(choices.turn_ey == TurnEy::where_needed);
  ui_.Check_turn_ey_always->setChecked(choices.turn_ey == TurnEy::always);
}

ImportChoices ImportChoiceControls::read() const {
  ImportChoices choices = choices_;
  choices.decode = decode_;
  choices.ReferenceType = ui_.Combo_data_type->currentIndex();
  choices.ReductionType = ui_.Combo_data_reduced->currentIndex();
  choices.line_direction =
      ui_.Option_linedirection_0->isChecked() ? LineDirection::local_east : LineDirection::local_north;
  choices.start_station = ui_.Text_start_station->text().toStdString();
  choices.station_step = ui_.Text_station_step->text().toStdString();
  choices.stations_by = ui_.Check_use_SECTID_as_station->isChecked() ? StationsBy::sectid
                        : ui_.Check_sectid_digits->isChecked()       ? StationsBy::sectid_digits
                        : ui_.Option_station_distance->isChecked()   ? StationsBy::distance
                                                                     : StationsBy::count;
  choices.convert_coordinates = ui_.Check_convert_geographic_coordinates->isChecked();
  choices.compute_from_impedance = ui_.Check_compute_from_impedance->isChecked();
  choices.turn_ey = ui_.Check_turn_ey_always->isChecked()  ? TurnEy::always
                    : ui_.Check_turn_ey_phase->isChecked() ? TurnEy::where_needed
                                                           : TurnEy::never;
  return choices;
}

void ImportChoiceControls::user_changed() {
  if (updating_) {
    return;
  }
  ImportChoices now = read();
  if (now.decode[decode_line_number] != choices_.decode[decode_line_number]) {
    now.folder_lines.clear();  // what is typed holds for all folders
  }
  if (now.decode[decode_sample_rate] != choices_.decode[decode_sample_rate]) {
    now.own_rate_of_fixed_columns = false;
  }
  if (now.stations_by != choices_.stations_by || now.start_station != choices_.start_station ||
      now.station_step != choices_.station_step) {
    has_chosen_stations_ = true;
    now.count_sites = false;
  }
  note_by_hand(choices_, now, lasting_);
  choices_ = std::move(now);
  Q_EMIT changed();
}

void ImportChoiceControls::open_events(bool open) {
  ui_.Grid_import_decode->open_row(static_cast<int>(decode_event), open);
}

QString ImportChoiceControls::reason(const Proposals& proposals, ProposedChoice choice,
                                     bool is_as_proposed) const {
  const Proposal* const proposal = proposals.find(choice);
  if (proposal == nullptr) {
    return {};
  }
  return is_as_proposed ? QString::fromStdString(proposal->why)
                        : QString("set by hand; %1 is proposed").arg(QString::fromStdString(proposal->value));
}

void ImportChoiceControls::show_reasons(const Proposals& proposals) {
  const ImportChoices& proposed = proposals.choices;
  const auto show = [&](QLabel* label, ProposedChoice choice, bool is_as_proposed) {
    label->setText(reason(proposals, choice, is_as_proposed));
  };
  const auto show_row = [&](QLabel* label, ProposedChoice choice, std::size_t row, const char* title) {
    const QString why = reason(proposals, choice, choices_.decode[row] == proposed.decode[row]);
    label->setText(why.isEmpty() ? why : title + why);
  };
  show(ui_.Label_why_reference, ProposedChoice::reference, choices_.ReferenceType == proposed.ReferenceType);
  show(ui_.Label_why_reduction, ProposedChoice::reduction, choices_.ReductionType == proposed.ReductionType);
  show_row(ui_.Label_why_line, ProposedChoice::line, decode_line_number, "Line: ");
  show_row(ui_.Label_why_event, ProposedChoice::event, decode_event, "Event: ");
  show_row(ui_.Label_why_rate, ProposedChoice::rate, decode_sample_rate, "Rate: ");
  show(ui_.Label_why_stations, ProposedChoice::stations, choices_.stations_by == proposed.stations_by);
  show(ui_.Label_why_projection, ProposedChoice::projection,
       choices_.convert_coordinates == proposed.convert_coordinates);
  show(ui_.Label_why_impedance, ProposedChoice::from_impedance,
       choices_.compute_from_impedance == proposed.compute_from_impedance);
  show(ui_.Label_why_turn_ey, ProposedChoice::turn_ey, choices_.turn_ey == proposed.turn_ey);
}
