#include "import/windows/Form_import_MTData.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QScreen>

#include "import/import_files.h"
#include "import/windows/Form_import_report.h"
#include "platform/windows/progress_in_window.h"
#include "projections/windows/Form_define_projection.h"
#include "ui_Form_import_MTData.h"

using namespace Module_data_file;

Form_import_MTData::Form_import_MTData(DecodeTable& decode, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::Form_import_MTData>()), decode_(decode) {
  for (DecodeRow& row : decode_) {
    row.specified.clear();
  }
  ui_->setupUi(this);
  fill_controls();
  connect_controls();
  set_running(false);
  show_page(ui_->Frame_select_files);
  resize(QSize(fontMetrics().averageCharWidth() * 180, fontMetrics().height() * 48)
             .boundedTo(screen()->availableSize() * 0.95));
}

Form_import_MTData::~Form_import_MTData() = default;

void Form_import_MTData::fill_controls() {
  ui_->Combo_data_type->addItems({"Not Remote Referenced", "Remote Referenced", "Cross Referenced"});
  ui_->Combo_data_reduced->addItems({"Raw", "Averaged", "Merged"});
  ui_->Text_station_step->setText(QString::fromStdString(choices_.station_step));
  ui_->Grid_import_decode->edit_table(decode_);
  // The line stays as high without a note: nothing below it may move when one comes.
  ui_->Label_sample_note->setMinimumHeight(2 * fontMetrics().lineSpacing());
  ui_->Label_progress->setMinimumWidth(fontMetrics().horizontalAdvance("Importing data files  "));
}

void Form_import_MTData::connect_controls() {
  connect(ui_->Command_process_files, &QPushButton::clicked, this, &Form_import_MTData::process_files);
  connect(ui_->Command_back, &QPushButton::clicked, this, [this] { show_page(ui_->Frame_select_files); });
  connect(ui_->Command_cancel_import, &QPushButton::clicked, this, &QDialog::reject);
  connect(ui_->Command_import_data_0, &QPushButton::clicked, this, [this] { import_data(ImportMode::scan); });
  connect(ui_->Command_import_data_1, &QPushButton::clicked, this,
          [this] { import_data(ImportMode::import); });
  connect(ui_->Command_next_sample, &QPushButton::clicked, this, [this] { show_sample(sample_index_ + 1); });
  connect(ui_->Command_previous_sample, &QPushButton::clicked, this,
          [this] { show_sample(sample_index_ - 1); });
  connect(ui_->Command_define_projection, &QPushButton::clicked, this,
          [this] { Form_define_projection::define_projection(this); });
  connect(ui_->Grid_import_decode, &ImportDecodeGrid::table_changed, this,
          &Form_import_MTData::choices_changed);
  for (QComboBox* const combo : {ui_->Combo_data_type, ui_->Combo_data_reduced}) {
    connect(combo, &QComboBox::currentIndexChanged, this, &Form_import_MTData::choices_changed);
  }
  for (QAbstractButton* const button : std::initializer_list<QAbstractButton*>{
           ui_->Option_linedirection_0, ui_->Option_linedirection_1, ui_->Check_use_SECTID_as_station,
           ui_->Check_sectid_digits, ui_->Check_compute_from_impedance, ui_->Check_turn_ey_phase,
           ui_->Check_turn_ey_always}) {
    connect(button, &QAbstractButton::toggled, this, &Form_import_MTData::choices_changed);
  }
  connect(ui_->Check_use_SECTID_as_station, &QCheckBox::toggled, ui_->Check_sectid_digits,
          &QWidget::setEnabled);
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

void Form_import_MTData::process_files() {
  files_ = ui_->Frame_select_files->files();
  if (files_.empty()) {
    QApplication::beep();
    return;
  }
  show_page(ui_->Page_import_data);
  ui_->Text_current_directory->setText(QDir::toNativeSeparators(ui_->Frame_select_files->folder()));
  ui_->Combo_data_type->setCurrentIndex(-1);
  ui_->Combo_data_reduced->setCurrentIndex(-1);
  take_choices();
  show_sample(0);
  ui_->Combo_data_type->setFocus();
}

void Form_import_MTData::take_choices() {
  choices_.decode = decode_;
  choices_.ReferenceType = ui_->Combo_data_type->currentIndex();
  choices_.ReductionType = ui_->Combo_data_reduced->currentIndex();
  choices_.line_direction =
      ui_->Option_linedirection_0->isChecked() ? LineDirection::local_east : LineDirection::local_north;
  choices_.start_station = ui_->Text_start_station->text().toStdString();
  choices_.station_step = ui_->Text_station_step->text().toStdString();
  choices_.convert_coordinates = ui_->Check_convert_geographic_coordinates->isChecked();
  choices_.stations_by = !ui_->Check_use_SECTID_as_station->isChecked() ? StationsBy::count
                         : ui_->Check_sectid_digits->isChecked()        ? StationsBy::sectid_digits
                                                                        : StationsBy::sectid;
  choices_.compute_from_impedance = ui_->Check_compute_from_impedance->isChecked();
  choices_.turn_ey = ui_->Check_turn_ey_always->isChecked()  ? TurnEy::always
                     : ui_->Check_turn_ey_phase->isChecked() ? TurnEy::where_needed
                                                             : TurnEy::never;
}

void Form_import_MTData::choices_changed() {
  take_choices();
  show_sample(sample_index_);
}

void Form_import_MTData::show_sample(std::size_t index) {
  if (index >= files_.size()) {
    return;
  }
  sample_index_ = index;
  const FileSample sample = sampler_.sample(files_[index], choices_);
  ui_->Label_sample_file->setText(QString("File %1 of %2: ").arg(index + 1).arg(files_.size()) +
                                  QFileInfo(QString::fromStdString(files_[index])).fileName());
  const std::pair<QLineEdit*, const std::string&> fields[] = {
      {ui_->Text_sample_line, sample.fields.line},
      {ui_->Text_sample_event, sample.fields.event},
      {ui_->Text_sample_rate, sample.fields.rate},
      {ui_->Text_sample_station, sample.fields.station},
      {ui_->Text_sample_date, sample.fields.date}};
  for (const auto& [field, text] : fields) {
    field->setText(QString::fromStdString(text));
  }
  QStringList notes;
  for (const std::string& note : sample.notes) {
    notes.append(QString::fromStdString(note));
  }
  if (!sample.fault.empty()) {
    notes.append(QString::fromStdString(sample.fault));
  }
  ui_->Label_sample_note->setText(notes.join('\n'));
  ui_->Command_previous_sample->setEnabled(index > 0);
  ui_->Command_next_sample->setEnabled(index + 1 < files_.size());
}

void Form_import_MTData::import_data(ImportMode mode) {
  if (running_) {
    return;  // a button pressed by its key clicks a little later, when a run may have begun
  }
  take_choices();
  ImportReport report;
  int result = 0;
  const QPointer<QWidget> had_focus(focusWidget());  // it may be a cell's editor, which closes
  set_running(true);
  {
    const ProgressInWindow progress(*ui_->ProgressBar_import, *ui_->Label_progress,
                                    *ui_->Command_stop_import);
    const auto file_begins = [this](const std::string& file) {
      if (file == files_.front()) {  // the choices are valid
        keep_import_folder(ui_->Frame_select_files->folder().toStdString());
      }
      ui_->Text_import_file->setText(QFileInfo(QString::fromStdString(file)).fileName());
    };
    result = run_import(choices_, files_, mode, report, file_begins, SharedStations::ask);
  }
  set_running(false);
  if (had_focus) {
    had_focus->setFocus();  // lost while everything was disabled
  }
  static_cast<void>(choices_fault(choices_));
  decode_ = choices_.decode;  // with the typed line in its normal form, as the run took it
  ui_->Grid_import_decode->refresh();
  if (!report.files.empty() ||
      report.stopped) {  // else a fault was shown, or different sites shall not share a station
    report_result(mode, result, report);
  }
}

void Form_import_MTData::set_running(bool running) {
  running_ = running;
  for (QWidget* const part : std::initializer_list<QWidget*>{
           ui_->Combo_data_type, ui_->Combo_data_reduced, ui_->Frame_decode, ui_->Frame_sample,
           ui_->Frame_stations, ui_->Frame_additions, ui_->Command_back, ui_->Command_import_data_0,
           ui_->Command_import_data_1, ui_->Command_cancel_import}) {
    part->setEnabled(!running);
  }
  ui_->Frame_progress->setVisible(running);
}

void Form_import_MTData::report_result(ImportMode mode, int result, const ImportReport& report) {
  const bool importing = mode == ImportMode::import;
  if (report.stopped) {
    const char* const stored = report.files.empty()
                                   ? "The import was stopped. Nothing was stored."
                                   : "The import was stopped. The files read by then are stored.";
    user_interface().show_message(importing ? stored : "The scan was stopped.");
  } else if (result == 0) {
    user_interface().show_message(importing ? "Data import complete. " + report.totals()
                                            : "Data scan complete");
  }
  if (report.has_remarks()) {
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
