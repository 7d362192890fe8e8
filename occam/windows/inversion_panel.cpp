#include "occam/windows/inversion_panel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QTimer>
#include <QVBoxLayout>
#include <utility>

#include "core/finished_work.h"
#include "core/trap_errors.h"
#include "occam/inversion/earlier_iterations.h"
#include "occam/windows/inversion_worker.h"
#include "platform/widgets/panel_controls.h"

using namespace Module_occam;

namespace {

constexpr int entry_width = 6;  // digits
constexpr int progress_milliseconds = 100;
constexpr int whole_bar = 1000;
constexpr int most_threads = 1024;

QPushButton* make_button(const char* text, const char* name, const char* tip) {
  auto* const button = named(new QPushButton(text), name);
  button->setToolTip(tip);
  button->setAutoDefault(false);
  return button;
}

QLabel* make_message(const char* name) {
  auto* const label = named(new QLabel, name);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

std::string ending_text(const InversionReport& report) {
  std::string text = report.reason;
  if (!report.earlier_folder.empty()) {
    text += " The earlier inversion is in " + report.earlier_folder + ".";
  }
  if (!report.static_shift_file.empty()) {
    text += " The static shifts that were found are in " + report.static_shift_file + ".";
  }
  return text;
}

}  // namespace

InversionPanel::InversionPanel(std::filesystem::path directory, std::string start_file, QWidget* parent)
    : QWidget(parent),
      directory_(std::move(directory)),
      start_file_(std::move(start_file)),
      worker_(new InversionWorker(this)),
      Text_run_iterations_(make_text("Text_run_iterations", entry_width)),
      Text_run_target_(make_text("Text_run_target", entry_width)),
      Text_run_roughness_(make_text("Text_run_roughness", entry_width)),
      Combo_run_search_(make_list("Combo_run_search")),
      Check_run_huber_(named(new QCheckBox("Hu&ber weights"), "Check_run_huber")),
      Check_run_static_shift_(
          named(new QCheckBox("Static shifts, error (decades)"), "Check_run_static_shift")),
      Text_run_static_shift_(make_text("Text_run_static_shift", entry_width)),
      Spin_run_threads_(named(new QSpinBox, "Spin_run_threads")),
      Command_run_(make_button("R&un", "Command_run", "Inverts from the start file on")),
      Command_stop_run_(make_button("St&op", "Command_stop_run",
                                    "Ends the inversion; iterations that are finished stay, and it can be "
                                    "continued")),
      Command_continue_(make_button("Cont&inue", "Command_continue", "Goes on from the last iteration")),
      ProgressBar_run_(named(new QProgressBar, "ProgressBar_run")),
      Label_run_progress_(make_message("Label_run_progress")),
      Label_run_ending_(make_message("Label_run_ending")),
      Timer_progress_(named(new QTimer(this), "Timer_progress")) {
  setObjectName("Inversion_panel");
  lay_out();
  fill_entries();
  connect_controls();
  enable_controls();
}

void InversionPanel::lay_out() {
  entries_box_ = make_entries();
  ProgressBar_run_->setRange(0, whole_bar);
  ProgressBar_run_->setTextVisible(false);
  ProgressBar_run_->setToolTip("How much of the iteration under way is done");
  ProgressBar_run_->setAccessibleName("Share of the iteration that is done");
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(6, 6, 6, 6);
  rows->addWidget(entries_box_);
  rows->addWidget(make_buttons());
  rows->addWidget(ProgressBar_run_);
  rows->addWidget(Label_run_progress_);
  rows->addWidget(Label_run_ending_);
  rows->addStretch();
  // Nothing moves when a text comes.
  Label_run_progress_->setMinimumHeight(fontMetrics().lineSpacing());
}

QWidget* InversionPanel::make_entries() {
  auto* const box = new QWidget;
  auto* const rows = new QFormLayout(box);
  rows->setContentsMargins(0, 0, 0, 0);
  Combo_run_search_->addItems({"better", "classic"});
  Spin_run_threads_->setRange(0, most_threads);
  Spin_run_threads_->setSpecialValueText("all");
  Text_run_iterations_->setToolTip("At most so many more iterations");
  Text_run_target_->setToolTip("RMS of the misfits, in units of the errors, that the model is to reach");
  Text_run_roughness_->setToolTip(
      "1: differences of neighbouring blocks; 3: by height over width; 4: by depth; 101 to 199 and 201 to "
      "299: neighbours beside, or below, weighted by the last two digits");
  Combo_run_search_->setToolTip(
      "better: fewer trials, and never above the target once it is reached; classic: as the public program");
  Check_run_huber_->setToolTip("Residuals beyond 1.5 errors count linearly, so that outliers draw less");
  Spin_run_threads_->setToolTip("Threads that compute; all: as many as the machine has cores");
  rows->addRow("Iter&ations", Text_run_iterations_);
  rows->addRow("Target R&MS", Text_run_target_);
  rows->addRow("Roughness t&ype", Text_run_roughness_);
  rows->addRow("Sear&ch", Combo_run_search_);
  rows->addRow(Check_run_huber_);
  rows->addRow(make_shift_row());
  rows->addRow("T&hreads", Spin_run_threads_);
  return box;
}

QWidget* InversionPanel::make_shift_row() {
  auto* const row = new QWidget;
  auto* const items = new QHBoxLayout(row);
  items->setContentsMargins(0, 0, 0, 0);
  items->addWidget(Check_run_static_shift_);
  items->addWidget(Text_run_static_shift_);
  items->addStretch();
  Check_run_static_shift_->setToolTip("Each site and mode gets an unknown static shift, drawn to 0");
  Text_run_static_shift_->setToolTip("Decades: how far the shifts are expected from 0");
  Text_run_static_shift_->setAccessibleName("Error of static shifts");
  return row;
}

QWidget* InversionPanel::make_buttons() {
  auto* const row = new QWidget;
  auto* const items = new QHBoxLayout(row);
  items->setContentsMargins(0, 0, 0, 0);
  for (QPushButton* const button : {Command_run_, Command_stop_run_, Command_continue_}) {
    button->setMinimumWidth(button->fontMetrics().horizontalAdvance(button->text()) + 18);
    items->addWidget(button);
  }
  return row;
}

void InversionPanel::connect_controls() {
  connect(Command_run_, &QPushButton::clicked, this, [this] { begin(false); });
  connect(Command_continue_, &QPushButton::clicked, this, [this] { begin(true); });
  connect(Command_stop_run_, &QPushButton::clicked, this, &InversionPanel::stop);
  connect(Check_run_static_shift_, &QCheckBox::toggled, this, &InversionPanel::enable_controls);
  for (QLineEdit* const text :
       {Text_run_iterations_, Text_run_target_, Text_run_roughness_, Text_run_static_shift_}) {
    connect(text, &QLineEdit::returnPressed, Command_run_, &QPushButton::click);
  }
  Timer_progress_->setInterval(progress_milliseconds);
  connect(Timer_progress_, &QTimer::timeout, this, &InversionPanel::show_progress);
  connect(worker_, &InversionWorker::iteration_ended, this, &InversionPanel::iteration_ended);
  connect(worker_, &InversionWorker::earlier_found, this, &InversionPanel::ask_about_earlier);
  connect(worker_, &InversionWorker::ended, this, [this](const InversionReport& report) {
    last_ending_ = qt_text(ending_text(report));
    show_state(last_ending_);
    const std::string folder = directory_.string();
    Module_Brenlox::tell_finished("The inversion in " + folder + " has ended. " + ending_text(report),
                                  folder);
    Q_EMIT ended();
  });
  connect(worker_, &InversionWorker::failed, this, [this](const QString& sentence) {
    last_ending_ = sentence;
    show_state(last_ending_);
    user_interface().show_message(sentence.toStdString());
    Q_EMIT ended();
  });
}

void InversionPanel::fill_entries() {
  const InversionEntries proposed = proposed_entries(directory_, start_file_);
  Text_run_iterations_->setText(qt_text(proposed.iterations));
  Text_run_target_->setText(qt_text(proposed.target_rms));
  Text_run_roughness_->setText(qt_text(proposed.roughness_type));
  Text_run_static_shift_->setText(qt_text(proposed.static_shift_error));
}

InversionEntries InversionPanel::entries() const {
  return {.iterations = Text_run_iterations_->text().toStdString(),
          .target_rms = Text_run_target_->text().toStdString(),
          .roughness_type = Text_run_roughness_->text().toStdString(),
          .better_search = Combo_run_search_->currentIndex() == 0,
          .robust = Check_run_huber_->isChecked(),
          .static_shifts = Check_run_static_shift_->isChecked(),
          .static_shift_error = Text_run_static_shift_->text().toStdString(),
          .threads = Spin_run_threads_->value()};
}

bool InversionPanel::running() const { return worker_->running(); }

void InversionPanel::offer_continue(bool iterations) {
  has_iterations_ = iterations;
  enable_controls();
}

QString InversionPanel::state_text() const {
  return running() ? Label_run_progress_->text() : Label_run_ending_->text();
}

void InversionPanel::begin(bool go_on) {
  if (running()) {
    return;  // Enter in a box reaches here as well
  }
  static_cast<void>(trap_errors("", [&] {
    InversionOptions options = options_of(entries());
    options.go_on = go_on;
    options.from = go_on ? std::string() : start_file_;
    start(options);
  }));
}

void InversionPanel::start(const InversionOptions& options) {
  const bool has_focus = isAncestorOf(window()->focusWidget());
  options_ = options;
  estimate_.emplace();
  clock_.start();
  worker_->start(directory_, options_);
  ProgressBar_run_->setValue(0);
  Timer_progress_->start();
  Label_run_ending_->clear();
  show_progress();
  enable_controls();
  if (has_focus) {  // what had it is switched off while the inversion runs
    Command_stop_run_->setFocus();
  }
}

void InversionPanel::stop() {
  if (running()) {
    worker_->stop();
    enable_controls();
    show_progress();
  }
}

void InversionPanel::ask_about_earlier(const QString& sentence) {
  const bool stopped = worker_->stopping();
  show_state(last_ending_);
  if (stopped) {
    Q_EMIT ended();
    return;
  }
  const QString folder = qt_text(EarlierIterationFiles(directory_, -1).folder().filename().string());
  QMessageBox box(QMessageBox::Question, window()->windowTitle(), sentence, QMessageBox::Cancel, this);
  box.setTextFormat(Qt::PlainText);
  const QAbstractButton* const anew =
      box.addButton("&Keep them in " + folder + " and start anew", QMessageBox::AcceptRole);
  const QAbstractButton* const go_on =
      has_iterations_ ? box.addButton("C&ontinue", QMessageBox::AcceptRole) : nullptr;
  box.setDefaultButton(QMessageBox::Cancel);
  box.exec();
  const QAbstractButton* const chosen = box.clickedButton();
  if (chosen != anew && (chosen == nullptr || chosen != go_on)) {
    Q_EMIT ended();
    return;
  }
  InversionOptions options = options_;
  options.may_move_earlier = chosen == anew;
  options.go_on = !options.may_move_earlier;
  options.from = options.go_on ? std::string() : start_file_;
  start(options);
}

void InversionPanel::show_progress() {
  estimate_->take(worker_->progress(), static_cast<double>(clock_.elapsed()) / 1000.0);
  ProgressBar_run_->setValue(static_cast<int>(whole_bar * estimate_->share()));
  Label_run_progress_->setText(worker_->stopping() ? QString("Stopping") : qt_text(estimate_->text()));
  Q_EMIT state_changed();
}

/// Of an inversion that isn't running any more.
void InversionPanel::show_state(const QString& ending) {
  Timer_progress_->stop();
  ProgressBar_run_->reset();
  Label_run_progress_->clear();
  Label_run_ending_->setText(ending);
  enable_controls();
  Q_EMIT state_changed();
}

void InversionPanel::enable_controls() {
  const bool idle = !running();
  entries_box_->setEnabled(idle);
  Text_run_static_shift_->setEnabled(Check_run_static_shift_->isChecked());
  Command_run_->setEnabled(idle);
  Command_continue_->setEnabled(idle && has_iterations_);
  Command_stop_run_->setEnabled(!idle && !worker_->stopping());
}
