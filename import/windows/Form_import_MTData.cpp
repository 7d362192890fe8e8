#include "import/windows/Form_import_MTData.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QPointer>
#include <QScreen>
#include <algorithm>
#include <unordered_set>

#include "core/trap_errors.h"
#include "import/import_files.h"
#include "import/report_groups.h"
#include "import/station_sites.h"
#include "import/windows/Form_import_report.h"
#include "import/windows/import_choice_controls.h"
#include "import/windows/import_plan_model.h"
#include "platform/widgets/panel_controls.h"
#include "platform/windows/progress_in_window.h"
#include "projections/windows/Form_define_projection.h"
#include "reduction/each_item.h"
#include "ui_Form_import_MTData.h"

using namespace Module_data_file;

namespace {

constexpr std::string_view looking_failed = "An error occurred while looking into the files: ";
constexpr qint64 table_milliseconds = 250;  // between two fillings of the table during a scan
constexpr qint64 share_of_scan = 4;         // so much more time goes into the scan than into the table

}  // namespace

Form_import_MTData::Form_import_MTData(LastingChoices& lasting, QWidget* parent)
    : QDialog(parent),
      ui_(std::make_unique<Ui::Form_import_MTData>()),
      model_(new ImportPlanModel(this)),
      lasting_(lasting) {
  ui_->setupUi(this);
  hide_until_work({ui_->ProgressBar_import, ui_->Command_stop_import});
  controls_ = new ImportChoiceControls(*ui_, lasting_, this);
  ui_->Table_import_plan->show_model(*model_);
  ui_->Label_progress->setMinimumWidth(fontMetrics().horizontalAdvance("Importing data files  "));
  ui_->Command_as_last_time->setEnabled(last_import_entries().has_value());
  connect_controls();
  set_running(false);
  show_page(ui_->Frame_select_files);
  resize_to_fit(*this, {fontMetrics().averageCharWidth() * 220, fontMetrics().height() * 60});
}

Form_import_MTData::~Form_import_MTData() = default;

void Form_import_MTData::connect_controls() {
  connect(ui_->Command_process_files, &QPushButton::clicked, this, &Form_import_MTData::process_files);
  connect(ui_->Command_back, &QPushButton::clicked, this, [this] { show_page(ui_->Frame_select_files); });
  connect(ui_->Command_cancel_import, &QPushButton::clicked, this, &QDialog::reject);
  connect(ui_->Command_import_data_0, &QPushButton::clicked, this, [this] { import_data(ImportMode::scan); });
  connect(ui_->Command_import_data_1, &QPushButton::clicked, this,
          [this] { import_data(ImportMode::import); });
  connect(ui_->Command_next_sample, &QPushButton::clicked, this, [this] { step_sample(1); });
  connect(ui_->Command_previous_sample, &QPushButton::clicked, this, [this] { step_sample(-1); });
  connect(ui_->Command_define_projection, &QPushButton::clicked, this,
          &Form_import_MTData::define_projection);
  connect(ui_->Command_as_last_time, &QPushButton::clicked, this, &Form_import_MTData::as_last_time);
  connect(controls_, &ImportChoiceControls::changed, this, &Form_import_MTData::choices_changed);
  connect(ui_->Table_import_plan, &ImportPlanTable::row_chosen, this, &Form_import_MTData::show_sample);
  connect(ui_->Grid_import_decode, &ImportDecodeGrid::refused, ui_->Label_plan_status, &QLabel::setText);
  connect(model_, &ImportPlanModel::edited, this, &Form_import_MTData::make_plan);
  connect(model_, &ImportPlanModel::refused, ui_->Label_plan_status, &QLabel::setText);
}

void Form_import_MTData::show_page(QWidget* page) {
  const bool importing = page == ui_->Page_import_data;
  ui_->Pages->setCurrentWidget(page);
  QSizePolicy keeps_its_place = ui_->Frame_progress->sizePolicy();
  keeps_its_place.setRetainSizeWhenHidden(importing);  // nothing moves when a run begins
  ui_->Frame_progress->setSizePolicy(keeps_its_place);
  for (QPushButton* const button :
       {ui_->Command_back, ui_->Command_import_data_0, ui_->Command_import_data_1}) {
    button->setVisible(importing);
  }
  ui_->Command_process_files->setVisible(!importing);
  ui_->Command_process_files->setDefault(!importing);
}

void Form_import_MTData::take_files(const std::vector<std::string>& paths) {
  QStringList given;
  for (const std::string& path : paths) {
    given.append(QString::fromStdString(path));
  }
  ui_->Frame_select_files->take_paths(given);
  given_ = true;
  QMetaObject::invokeMethod(this, &Form_import_MTData::process_files, Qt::QueuedConnection);
}

void Form_import_MTData::process_files() {
  std::vector<std::string> files = ui_->Frame_select_files->files();
  if (files.empty()) {
    QApplication::beep();
    ui_->Frame_select_files->ask_for_files();
    return;
  }
  const std::unordered_set<std::string> before(files_.begin(), files_.end());
  by_hand_.reset();
  if (std::ranges::any_of(files, [&](const std::string& file) { return before.contains(file); })) {
    by_hand_ = {proposals_.choices, controls_->choices(), controls_->has_chosen_stations()};
  }
  files_ = std::move(files);
  show_page(ui_->Page_import_data);
  ui_->Text_current_directory->setText(QDir::toNativeSeparators(QString::fromStdString(folder_of_files())));
  scan_files();
  ui_->Combo_data_type->setFocus();
}

/// The folder that the files were chosen from; of dropped files that of the first one.
std::string Form_import_MTData::folder_of_files() const {
  const std::string chosen = ui_->Frame_select_files->folder().toStdString();
  std::string first = QFileInfo(QString::fromStdString(files_.front())).path().toStdString();
  if (given_) {
    return first;
  }
  return (first + "/").starts_with(chosen + "/") ? chosen : first;
}

// The files are looked into once for each list; what can be chosen is then followed without them.
void Form_import_MTData::scan_files() {
  scanned_.clear();
  proposals_ = {};
  model_->show_files(files_);
  controls_->propose_stations_again(!by_hand_ || !by_hand_->stations_chosen);
  set_running(true);
  bool finished = false;
  const int result = trap_errors(looking_failed, [&] {
    maker_ = std::make_unique<PlanMaker>();
    finished = look_into_files();
    propose_choices();
  });
  set_running(false);
  ui_->Table_import_plan->go_to_row(0);
  const std::size_t chosen = files_.size();
  files_.resize(scanned_.size());  // the others are not in the table
  if (result == 0 && !finished) {
    ui_->Label_plan_status->setText(
        QString("Stopped: %1 of %2 files were looked into. The others won't be imported")
            .arg(scanned_.size())
            .arg(chosen));
  }
}

/// Fills the table as it goes. @return false if the user has stopped it
bool Form_import_MTData::look_into_files() {
  const BusyPointer busy;
  const ProgressInWindow in_window(*ui_->ProgressBar_import, *ui_->Label_progress, *ui_->Command_stop_import);
  Module_averaged_data::WorkProgress progress("Looking into the files", files_.size());
  QElapsedTimer since_table;
  since_table.start();
  qint64 wait = table_milliseconds;
  const auto outcome = Module_averaged_data::each_item(progress, [&](std::size_t index) {
    ui_->Text_import_file->setText(QFileInfo(QString::fromStdString(files_[index])).fileName());
    scanned_.push_back(scan_field_file(files_[index]));
    if (since_table.elapsed() >= wait) {
      since_table.restart();
      propose_choices();
      wait = std::max(table_milliseconds, share_of_scan * since_table.restart());
    }
    return 0;
  });
  return outcome == Module_averaged_data::Outcome::finished;
}

void Form_import_MTData::propose_choices() {
  proposals_ = propose(scanned_, *maker_, controls_->choices().line_direction);
  ImportChoices choices = proposals_.choices;
  take_lasting(lasting_, choices);
  if (by_hand_) {
    take_set_by_hand(*by_hand_, choices);
  }
  controls_->show(choices);
  controls_->open_events(
      !std::ranges::all_of(scanned_, [](const ScannedFile& file) { return names_sites(file.format); }));
  if (by_hand_) {
    choices_changed();  // the stations were proposed for other lines
  } else {
    make_plan();
  }
}

void Form_import_MTData::choices_changed() {
  if (maker_ == nullptr) {
    return;
  }
  (void)trap_errors(looking_failed, [&] {
    ImportChoices choices = controls_->choices();
    const ChosenStations stations =
        controls_->has_chosen_stations() ? ChosenStations::by_hand : ChosenStations::by_proposal;
    follow_choices(scanned_, *maker_, stations, choices, proposals_);
    controls_->show(choices);
  });
  make_plan();
}

void Form_import_MTData::as_last_time() {
  if (maker_ == nullptr) {
    return;  // no files have been looked into
  }
  if (const std::optional<ImportEntries> entries = last_import_entries()) {
    ImportChoices choices = controls_->choices();
    take_entries(*entries, choices);
    controls_->show(choices);
    controls_->propose_stations_again(false);
    make_plan();
  }
}

void Form_import_MTData::make_plan() {
  (void)trap_errors(looking_failed, [&] {
    const ImportChoices& choices = controls_->choices();
    model_->show_plan(maker_->plan(scanned_, choices, model_->edits()), choices.line_direction);
    const ImportPlan& plan = model_->plan();
    ui_->Label_plan_status->setText(QString::fromStdString(plan.fault.empty() ? plan.summary() : plan.fault));
    controls_->show_reasons(proposals_);
    show_sample(ui_->Table_import_plan->currentIndex().row());
  });
}

void Form_import_MTData::show_sample(int row) {
  const bool is_row = row >= 0 && row < model_->rowCount();
  const auto shown = [&](PlanColumn column) {
    return is_row ? QString::fromStdString(plan_cell_text(model_->section(row), column)) : QString();
  };
  ui_->Text_sample_line->setText(shown(PlanColumn::line));
  ui_->Text_sample_event->setText(shown(PlanColumn::event));
  ui_->Text_sample_rate->setText(shown(PlanColumn::rate));
  ui_->Text_sample_station->setText(shown(PlanColumn::station));
  ui_->Label_sample_note->setText(shown(PlanColumn::remarks));
  const std::size_t file = is_row ? model_->section(row).file_index : 0;
  ui_->Text_sample_date->setText(is_row ? QString::fromStdString(scanned_.at(file).date) : QString());
  ui_->Label_sample_file->setText(is_row ? QString("File %1 of %2: ").arg(file + 1).arg(files_.size()) +
                                               shown(PlanColumn::file)
                                         : QString());
  ui_->Command_previous_sample->setEnabled(row > 0);
  ui_->Command_next_sample->setEnabled(row + 1 < model_->rowCount());
}

void Form_import_MTData::step_sample(int step) {
  ui_->Table_import_plan->go_to_row(ui_->Table_import_plan->currentIndex().row() + step);
}

void Form_import_MTData::define_projection() {
  const int row = ui_->Table_import_plan->currentIndex().row();
  std::optional<numerics::geodesy::GeographicPlace> site;
  if (row >= 0 && row < model_->rowCount()) {
    const ScannedFile& sample = scanned_.at(model_->section(row).file_index);
    site = sample.place ? sample.place : sample.first_place;
  }
  Form_define_projection::define_projection(this, site);
  (void)trap_errors(looking_failed, [&] { maker_ = std::make_unique<PlanMaker>(); });
  choices_changed();
}

void Form_import_MTData::import_data(ImportMode mode) {
  if (running_ || maker_ == nullptr) {
    return;  // a button pressed by its key clicks a little later, when a run may have begun
  }
  if (mode == ImportMode::import && model_->plan().fault.empty() &&
      !may_share_stations(model_->plan().shared_stations())) {
    return;
  }
  ImportReport report;
  const QPointer<QWidget> had_focus(focusWidget());  // it may be a cell's editor, which closes
  set_running(true);
  const int result = run(mode, report);
  set_running(false);
  if (had_focus) {
    had_focus->setFocus();  // lost while everything was disabled
  }
  if (mode == ImportMode::import && !report.files.empty()) {
    report_ = report;
    (void)trap_errors(looking_failed, [&] { maker_ = std::make_unique<PlanMaker>(); });
    make_plan();  // into the survey as it is now
  }
  if (!report.files.empty() || report.stopped) {  // else a fault was shown
    report_result(mode, result, report);
  }
}

int Form_import_MTData::run(ImportMode mode, ImportReport& report) {
  const ProgressInWindow progress(*ui_->ProgressBar_import, *ui_->Label_progress, *ui_->Command_stop_import);
  const ImportChoices choices = controls_->choices();
  const auto file_begins = [&](const std::string& file) {
    if (file == files_.front()) {  // the choices are valid
      keep_import_folder(folder_of_files());
      keep_import_entries(choices);
    }
    ui_->Text_import_file->setText(QFileInfo(QString::fromStdString(file)).fileName());
  };
  return run_import(choices, files_, mode, report, file_begins, SharedStations::tell, &model_->plan());
}

void Form_import_MTData::set_running(bool running) {
  running_ = running;
  for (QWidget* const part : std::initializer_list<QWidget*>{
           ui_->Combo_data_type, ui_->Combo_data_reduced, ui_->Frame_decode, ui_->Frame_sample,
           ui_->Frame_stations, ui_->Frame_additions, ui_->Command_back, ui_->Command_import_data_0,
           ui_->Command_import_data_1, ui_->Command_cancel_import}) {
    part->setEnabled(!running);
  }
  model_->allow_edits(!running);  // the table is there to be looked at
  ui_->Command_as_last_time->setEnabled(!running && last_import_entries().has_value());
  ui_->Frame_progress->setVisible(running);
}

// Whoever has asked for the dialog is told when it is done. Files that were dropped are to be seen at once:
// there is a message only if it says more than that they are there.
void Form_import_MTData::report_result(ImportMode mode, int result, const ImportReport& report) {
  const bool importing = mode == ImportMode::import;
  const bool quiet =
      given_ && importing && result == 0 && !report.stopped &&
      std::ranges::none_of(report_groups(report, OptionNames::window), &ReportGroup::needs_action);
  if (report.stopped) {
    const char* const stored = report.files.empty()
                                   ? "The import was stopped. Nothing was stored."
                                   : "The import was stopped. The files read by then are stored.";
    user_interface().show_message(importing ? stored : "The scan was stopped.");
  } else if (result == 0) {
    const std::string told = importing ? "Data import complete. " + report.totals() : "Data scan complete";
    if (importing) {
      told_ = QString::fromStdString(told);
    }
    if (!quiet) {
      user_interface().show_message(told);
    }
  }
  if (report.has_remarks() && !quiet) {
    Form_import_report(report, this).exec();
  }
  if (importing && result == 0 && !report.stopped) {
    accept();
  }
}

void Form_import_MTData::reject() {
  if (running_) {
    ui_->Command_stop_import->click();
  } else {
    QDialog::reject();
  }
}

void Form_import_MTData::done(int result) {
  keep_import_extension(ui_->Frame_select_files->extension().toStdString());
  QDialog::done(result);
}
