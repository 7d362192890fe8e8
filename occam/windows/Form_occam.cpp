#include "occam/windows/Form_occam.h"

#include <QCoreApplication>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <utility>

#include "core/file_names.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "core/user_interface.h"
#include "database/frequency_store.h"
#include "occam/setup/design_summary.h"
#include "occam/setup/earlier_run.h"
#include "output/file_errors.h"
#include "platform/widgets/entry_mark.h"
#include "platform/widgets/panel_controls.h"
#include "platform/windows/progress_in_window.h"
#include "ui_Form_occam.h"

using Module_occam::ErrorForm;
using Module_occam::InversionInputs;
using Module_occam::ModeChoice;
using Module_occam::PositionSource;

namespace {

struct TextControl {
  QLineEdit* Ui::Form_occam::*box;
  std::string InversionInputs::*text;
};

constexpr TextControl text_controls[] = {
    {&Ui::Form_occam::Text_model_file, &InversionInputs::model_file},
    {&Ui::Form_occam::Text_data_file, &InversionInputs::data_file},
    {&Ui::Form_occam::Text_description, &InversionInputs::description},
    {&Ui::Form_occam::Text_iterations, &InversionInputs::max_iterations},
    {&Ui::Form_occam::Text_RMS, &InversionInputs::target_RMS},
    {&Ui::Form_occam::Text_initial_model, &InversionInputs::initial_res},
    {&Ui::Form_occam::Text_first_station, &InversionInputs::first_station},
    {&Ui::Form_occam::Text_last_station, &InversionInputs::last_station},
    {&Ui::Form_occam::Text_res_error_floor, &InversionInputs::res_error_floor},
    {&Ui::Form_occam::Text_phase_error_floor, &InversionInputs::phase_error_floor},
    {&Ui::Form_occam::Text_te_res_error_floor, &InversionInputs::te_res_error_floor},
    {&Ui::Form_occam::Text_te_phase_error_floor, &InversionInputs::te_phase_error_floor},
    {&Ui::Form_occam::Text_num_layers, &InversionInputs::num_layers},
    {&Ui::Form_occam::Text_Layers_decade, &InversionInputs::layers_per_decade},
    {&Ui::Form_occam::Text_top_layer, &InversionInputs::top_layer},
    {&Ui::Form_occam::Text_block_width, &InversionInputs::block_width},
    {&Ui::Form_occam::Text_doubling_threshold, &InversionInputs::doubling_threshold},
    {&Ui::Form_occam::Text_occam_directory, &InversionInputs::occam_directory}};

struct CheckControl {
  QCheckBox* Ui::Form_occam::*box;
  bool InversionInputs::*on;
};

constexpr CheckControl check_controls[] = {
    {&Ui::Form_occam::Check_occam_apply_static, &InversionInputs::apply_static},
    {&Ui::Form_occam::Check_use_standard_error, &InversionInputs::use_standard_error},
    {&Ui::Form_occam::Check_use_rhoplus_error, &InversionInputs::use_rhoplus_error}};

constexpr QSize design_size(1120, 560);

/// What the floor of resistivities is a floor of.
struct ResistivityFloor {
  const char* unit;
  const char* meaning;
};

ResistivityFloor resistivity_floor(const InversionInputs& entries) {
  if (entries.errors == ErrorForm::as_before && entries.use_standard_error) {
    return {"% of log10 resistivity",
            "percent of its logarithm: 5 gives 0.001 decades at 1 ohm-m and 0.15 at 1000"};
  }
  if (entries.errors == ErrorForm::as_before && !entries.use_rhoplus_error) {
    return {"decades of resistivity", "decades: 5 gives 5 decades, 0.05 what 12 percent are"};
  }
  return {"% of resistivity", "the same percent of every one: 5 gives 0.022 decades"};
}

/// In Combo_errors.
int index_of(ErrorForm form) { return form == ErrorForm::relative ? 1 : 0; }

}  // namespace

Form_occam::Form_occam(Module_output::RhoplusSettings& rhoplus, Module_occam::StationSteps steps,
                       QWidget* parent, Module_occam::PositionSource positions, std::optional<double> strike)
    : QDialog(parent),
      ui_(std::make_unique<Ui::Form_occam>()),
      rhoplus_(rhoplus),
      steps_(std::move(steps)),
      line_(Module_occam::selected_line()),
      Command_run_inversion_(new QPushButton("Run In&version")) {
  ui_->setupUi(this);
  add_run_button();
  hide_until_work({ui_->ProgressBar_occam, ui_->Command_stop});
  setWindowTitle("Create Occam Inversion for line: " + QString::fromStdString(line_.line));
  if (steps_.show_station) {
    steps_.show_station = [show = steps_.show_station](int place_in_line) {
      show(place_in_line);
      QCoreApplication::processEvents();  // each station is drawn once
    };
  }
  fill_drives();
  fill_controls();
  offer_positions(positions);
  ui_->Text_rotate_to_strike->setText(strike ? QString::fromStdString(format_number(*strike, "0.0")) : "0");
  connect_controls();
  propose_folder();
  choose_rotation();
  show_error_form();
  show_hint();
  resize_to_fit(*this, design_size);
}

Form_occam::~Form_occam() = default;

void Form_occam::add_run_button() {
  Command_run_inversion_->setObjectName("Command_run_inversion");
  Command_run_inversion_->setToolTip("Opens the run that was created, to invert it here");
  Command_run_inversion_->setAutoDefault(false);
  Command_run_inversion_->setEnabled(false);
  ui_->buttons->insertWidget(ui_->buttons->indexOf(ui_->Command_done), Command_run_inversion_);
  setTabOrder(ui_->Command_create_inversion, Command_run_inversion_);
  connect(Command_run_inversion_, &QPushButton::clicked, this, [this] {
    directory_to_run_ = created_directory_;
    accept();
  });
}

void Form_occam::fill_drives() {
  ui_->DriveList->addItem("Home (" + QDir::toNativeSeparators(QDir::homePath()) + ")", QDir::homePath());
  for (const QFileInfo& drive : QDir::drives()) {
    ui_->DriveList->addItem("Computer (" + QDir::toNativeSeparators(drive.absoluteFilePath()) + ")",
                            drive.absoluteFilePath());
  }
  ui_->DriveList->setPlaceholderText("Go to");
  ui_->DriveList->setCurrentIndex(-1);
}

void Form_occam::fill_controls() {
  InversionInputs kept = Module_occam::load_inversion_inputs();
  kept.directory = Module_util::directory_of(session().database_file);
  for (const TextControl& control : text_controls) {
    ((*ui_).*control.box)->setText(QString::fromStdString(kept.*control.text));
  }
  for (const CheckControl& control : check_controls) {
    ((*ui_).*control.box)->setChecked(kept.*control.on);
  }
  ui_->Combo_modes->setCurrentIndex(kept.modes == ModeChoice::both ? 1 : 0);
  ui_->Combo_errors->setCurrentIndex(index_of(Module_occam::error_form(kept)));
  ui_->Combo_use_file_errors->setCurrentIndex(rhoplus_.use_file_errors);
  ui_->DirList->choose(QString::fromStdString(kept.directory));
}

void Form_occam::offer_positions(PositionSource proposed) {
  static_cast<void>(trap_errors("An error occurred while looking for the places of the stations: ",
                                [&] { distances_ = Module_projections::line_distances(line_.line); }));
  const bool known = distances_.known();
  ui_->Combo_positions->setEnabled(known);
  ui_->Combo_positions->setToolTip(known ? QString("Where the stations stand in mesh and data file")
                                         : QString::fromStdString(distances_.refusal));
  ui_->Combo_positions->setCurrentIndex(known && proposed == PositionSource::distances ? 1 : 0);
  show_positions_hint();
}

/// Its label is the last one of its column: what it says moves nothing else.
void Form_occam::show_positions_hint() {
  const bool by_number = inputs().positions == PositionSource::station_numbers;
  const QString hint = by_number ? QString::fromStdString(distances_.warning) : QString();
  ui_->Label_positions_hint->setText(hint);
  // A form asks a label that wraps for the height of one line.
  constexpr int most_lines = 4;
  ui_->Label_positions_hint->setMinimumHeight(hint.isEmpty() ? 0 : most_lines * fontMetrics().lineSpacing());
}

void Form_occam::choose_modes() {
  ui_->Combo_errors->setCurrentIndex(index_of(Module_occam::usual_error_form(inputs().modes)));
  propose_folder();
  count_data();
  show_error_form();
  show_hint();
}

void Form_occam::choose_rotation() {
  const bool rotate = ui_->Check_rotate_to_strike->isChecked();
  ui_->Text_rotate_to_strike->setEnabled(rotate);
  const std::string_view mode =
      Module_occam::run_modes(ModeChoice::current_type, line_.data_type)[0].mode.name;
  ui_->Combo_modes->setItemText(0, rotate ? "Current mode (" + QString::fromStdString(std::string(mode)) + ")"
                                          : QString::fromStdString("Current data type: " + line_.data_type +
                                                                   " (" + std::string(mode) + ")"));
  ui_->Combo_modes->setItemText(1, rotate ? "Both: TE along, TM across" : "Both: TE (EyHx), TM (ExHy)");
  count_data();
}

/// What the user has typed stays.
void Form_occam::propose_folder() {
  if (ui_->Text_occam_directory->text() == proposed_folder_) {
    const InversionInputs entries = inputs();
    proposed_folder_ = QString::fromStdString(Module_occam::free_run_name(
        entries.directory, line_.line, Module_occam::modes_in_name(entries.modes, line_.data_type)));
    ui_->Text_occam_directory->setText(proposed_folder_);
  }
  show_run_folder();
}

void Form_occam::count_data() {
  counts_.clear();
  static_cast<void>(trap_errors("An error occurred while counting the data of the line: ", [this] {
    const InversionInputs entries = inputs();
    if (!entries.rotate_to_strike) {
      counts_ = Module_occam::count_data(line_, entries.modes, rhoplus_);
    } else if (load_tensors() == 0) {
      counts_ = Module_occam::count_rotated_data(*tensors_, line_.data_type, entries, rhoplus_);
    }
  }));
  show_summary();
}

/// The window is modal: what was read once stays as it is. @return 0, or -1 after a message
int Form_occam::load_tensors() {
  if (tensors_) {
    return 0;
  }
  const auto frequencies = Module_database::load_reference_frequencies(line_.reference_type);
  return frequencies ? Module_tensor::load_line_tensors({line_.line, line_.reference_type, line_.dipole},
                                                        *frequencies, tensors_.emplace())
                     : -1;
}

/// Which entries the modes and the form of the errors use, and what the floors are floors of.
void Form_occam::show_error_form() {
  const InversionInputs entries = inputs();
  const bool both = entries.modes == ModeChoice::both;
  const bool relative = entries.errors == ErrorForm::relative;
  const ResistivityFloor res = resistivity_floor(entries);
  const QString res_tip = QString("Least error of a resistivity, ") + res.meaning;
  const QString phase_tip =
      relative ? "Least error of a phase, degrees"
               : "Least error of a phase, taken in percent of the phase: 5 gives 2.25 degrees at 45";
  ui_->Label_floor_units->setText(QString("Floors: ") + res.unit +
                                  (relative ? ", degrees of phase" : ", % of phase"));
  const QString te_tip =
      both ? "; for TE, blank: as TM" : "; TE has a floor of its own where a run has both modes";
  for (QWidget* const part :
       std::initializer_list<QWidget*>{ui_->Label_te_res_error_floor, ui_->Text_te_res_error_floor,
                                       ui_->Label_te_phase_error_floor, ui_->Text_te_phase_error_floor}) {
    part->setEnabled(both);
  }
  mark_invalid({});  // the mark would bring the earlier tip back
  ui_->Text_res_error_floor->setToolTip(res_tip);
  ui_->Text_te_res_error_floor->setToolTip(res_tip + te_tip);
  ui_->Text_phase_error_floor->setToolTip(phase_tip);
  ui_->Text_te_phase_error_floor->setToolTip(phase_tip + te_tip);
  ui_->Check_use_standard_error->setEnabled(!relative);
  show_summary();
}

/// Marks the box of an entry, and takes the marks of the others away.
void Form_occam::mark_invalid(const std::optional<Module_occam::InvalidEntry>& fault) {
  const QString message = fault ? fault->message : "";
  for (const TextControl& control : text_controls) {
    mark_entry(*((*ui_).*control.box), fault && fault->entry == control.text ? message : QString());
  }
  mark_entry(*ui_->Text_rotate_to_strike, fault && fault->entry == nullptr ? message : QString());
}

/// After a refusal: the cursor goes where something is to be typed anew.
void Form_occam::go_to_marked() {
  for (QLineEdit* const box : findChildren<QLineEdit*>()) {
    if (is_marked(*box)) {
      box->setFocus();
      box->selectAll();
    }
  }
}

void Form_occam::connect_controls() {
  connect(ui_->Combo_modes, &QComboBox::currentIndexChanged, this, &Form_occam::choose_modes);
  connect(ui_->Combo_errors, &QComboBox::currentIndexChanged, this, &Form_occam::show_error_form);
  connect(ui_->Check_use_standard_error, &QCheckBox::toggled, this, &Form_occam::show_error_form);
  connect(ui_->Check_use_rhoplus_error, &QCheckBox::toggled, this, &Form_occam::show_error_form);
  connect(ui_->Combo_positions, &QComboBox::currentIndexChanged, this, [this] {
    show_positions_hint();
    show_summary();
  });
  connect(ui_->Check_rotate_to_strike, &QCheckBox::toggled, this, &Form_occam::choose_rotation);
  connect(ui_->Text_rotate_to_strike, &QLineEdit::textChanged, this, &Form_occam::count_data);
  connect(ui_->Check_occam_apply_static, &QCheckBox::toggled, this, &Form_occam::count_data);
  connect(ui_->DriveList, &QComboBox::activated, this,
          [this] { ui_->DirList->choose(ui_->DriveList->currentData().toString()); });
  connect(ui_->DirList, &FolderTree::folder_chosen, this, &Form_occam::show_run_folder);
  connect(ui_->Text_occam_directory, &QLineEdit::textChanged, this, &Form_occam::show_run_folder);
  for (const TextControl& control : text_controls) {
    connect((*ui_).*control.box, &QLineEdit::textChanged, this, &Form_occam::show_summary);
  }
  connect(ui_->Combo_use_file_errors, &QComboBox::currentIndexChanged, this, &Form_occam::choose_file_errors);
  connect(ui_->Command_create_inversion, &QPushButton::clicked, this, &Form_occam::create_inversion);
  connect(ui_->Command_done, &QPushButton::clicked, this, &QDialog::accept);
}

void Form_occam::show_run_folder() {
  ui_->Label_run_folder->setText("Files go to " + QDir::toNativeSeparators(QString::fromStdString(
                                                      Module_occam::run_directory(inputs()))));
}

void Form_occam::show_summary() {
  Module_occam::InversionChoices choices;
  mark_invalid(invalid_entry(inputs(), choices));
  ui_->Label_summary->setText(
      QString::fromStdString(Module_occam::design_summary(line_.line, inputs(), distances_, counts_)));
}

void Form_occam::choose_file_errors(int index) {
  rhoplus_.use_file_errors = index;
  Module_output::save_rhoplus_settings(rhoplus_);
  show_hint();
}

void Form_occam::show_hint() {
  const bool left_out = rhoplus_.use_file_errors == 0;
  if (left_out && file_errors_hint_.isEmpty()) {
    for (const Module_occam::ModeCount& count : counts_) {
      Module_database::LineSelection of_mode = line_;
      of_mode.data_type = count.mode.data_type;
      if (file_errors_hint_.isEmpty()) {
        file_errors_hint_ = QString::fromStdString(Module_output::file_errors_hint(of_mode));
      }
    }
  }
  ui_->Label_file_errors_hint->setText(file_errors_hint_);
  ui_->Label_file_errors_hint->setVisible(left_out && !file_errors_hint_.isEmpty());
}

InversionInputs Form_occam::inputs() const {
  InversionInputs inputs;
  for (const TextControl& control : text_controls) {
    inputs.*control.text = ((*ui_).*control.box)->text().toStdString();
  }
  for (const CheckControl& control : check_controls) {
    inputs.*control.on = ((*ui_).*control.box)->isChecked();
  }
  inputs.modes = ui_->Combo_modes->currentIndex() == 1 ? ModeChoice::both : ModeChoice::current_type;
  inputs.errors = ui_->Combo_errors->currentIndex() == index_of(ErrorForm::relative) ? ErrorForm::relative
                                                                                     : ErrorForm::as_before;
  inputs.directory = ui_->DirList->folder().toStdString();
  if (ui_->Check_rotate_to_strike->isChecked()) {
    inputs.rotate_to_strike = Module_tensor::azimuth_of(ui_->Text_rotate_to_strike->text().toStdString());
  }
  inputs.positions =
      ui_->Combo_positions->currentIndex() == 1 ? PositionSource::distances : PositionSource::station_numbers;
  return inputs;
}

void Form_occam::create_inversion() {
  if (running_) {
    return;  // a button pressed by its key clicks a little later, whatever has begun by then
  }
  Module_occam::CreatedInversion created;
  set_running(true);
  int status = -1;
  {
    const ProgressInWindow progress(*ui_->ProgressBar_occam, *ui_->Label_progress, *ui_->Command_stop);
    status = Module_occam::create_inversion(line_, inputs(), rhoplus_, steps_, created);
  }
  if (status == 0 && !created.stopped) {
    created_directory_ = created.directory;
  }
  set_running(false);
  ui_->Label_progress->setText(status == 0 && created.stopped ? "Stopped; nothing was written" : "");
  if (status != 0) {
    go_to_marked();
  }
}

void Form_occam::set_running(bool running) {
  running_ = running;
  if (!running) {  // they come up with the first step: entries may be refused before
    ui_->ProgressBar_occam->hide();
    ui_->Command_stop->hide();
  }
  for (QWidget* const part : std::initializer_list<QWidget*>{
           ui_->Frame_files, ui_->Frame_inversion, ui_->Frame_stations, ui_->Frame_errors, ui_->Frame_mesh,
           ui_->Frame_folder, ui_->Command_create_inversion, ui_->Command_done}) {
    part->setEnabled(!running);
  }
  Command_run_inversion_->setEnabled(!running && !created_directory_.empty());
}

void Form_occam::reject() {
  if (running_) {
    ui_->Command_stop->click();
  } else {
    QDialog::reject();
  }
}
