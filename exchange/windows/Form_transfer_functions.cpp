#include "exchange/windows/Form_transfer_functions.h"

#include <QDesktopServices>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>
#include <initializer_list>
#include <utility>

#include "core/finished_work.h"
#include "core/user_interface.h"
#include "exchange/windows/export_controls.h"
#include "exchange/windows/export_plan_model.h"
#include "exchange/windows/export_table.h"
#include "exchange/windows/told_export.h"
#include "platform/widgets/panel_controls.h"
#include "platform/windows/progress_in_window.h"

using namespace Module_exchange;

namespace {

constexpr QSize design_size(1200, 700);
constexpr int look_milliseconds = 200;  // keys of a word follow each other quickly

QPushButton* make_button(const QString& name, const QString& text, const QString& tip) {
  auto* const button = named(new QPushButton(text), name);
  button->setToolTip(tip);
  button->setAutoDefault(false);
  return button;
}

}  // namespace

Form_transfer_functions::Form_transfer_functions(ExportEntries& entries,
                                                 const Module_output::RhoplusSettings& rhoplus,
                                                 QWidget* parent)
    : QDialog(parent),
      entries_(entries),
      rhoplus_(rhoplus),
      controls_(new ExportControls),
      model_(new ExportPlanModel(this)),
      table_(new ExportTable(*model_)),
      summary_(make_heading("Label_export_summary")),
      doing_(make_heading("Label_export_progress")),
      bar_(named(new QProgressBar, "ProgressBar_export")),
      stop_(make_button("Command_stop_export", "Sto&p", "Ends the work; files written by then stay")),
      open_folder_(
          make_button("Command_open_folder", "Open Fold&er", "Shows the folder with what was written")),
      write_(make_button("Command_write", "&Write", "Writes the files; asks before others are replaced")),
      close_(make_button("Command_close", "Clo&se", "Closes this window (Esc); the choices stay")),
      look_soon_(new QTimer(this)) {
  setObjectName("Form_transfer_functions");
  setWindowTitle("Transfer functions");
  lay_out();
  set_work(Work::none);
  if (read_export_lists(lists_) == 0) {
    begin_export(lists_, entries_);
  }
  controls_->show_entries(lists_, entries_);
  connect_controls();
  look();
}

void Form_transfer_functions::lay_out() {
  auto* const rows = new QVBoxLayout(this);
  rows->addWidget(controls_);
  rows->addWidget(table_, 1);
  rows->addWidget(summary_);
  rows->addLayout(make_buttons());
  resize_to_fit(*this, design_size);
}

QBoxLayout* Form_transfer_functions::make_buttons() {
  bar_->setToolTip("How far the work is");
  hide_until_work({bar_, doing_, stop_});
  write_->setDefault(true);
  open_folder_->setEnabled(false);
  auto* const row = new QHBoxLayout;
  row->addWidget(doing_, 2);
  row->addWidget(bar_, 3);
  row->addWidget(stop_);
  row->addSpacing(16);
  row->addWidget(open_folder_);
  row->addWidget(write_);
  row->addWidget(close_);
  return row;
}

void Form_transfer_functions::connect_controls() {
  look_soon_->setSingleShot(true);
  look_soon_->setInterval(look_milliseconds);
  connect(look_soon_, &QTimer::timeout, this, &Form_transfer_functions::make_plan);
  connect(controls_, &ExportControls::changed, this, &Form_transfer_functions::choices_changed);
  connect(open_folder_, &QPushButton::clicked, this, &Form_transfer_functions::open_folder);
  connect(write_, &QPushButton::clicked, this, &Form_transfer_functions::write);
  connect(close_, &QPushButton::clicked, this, &QDialog::reject);
}

ExportChoices Form_transfer_functions::choices() const { return choices_of(lists_, entries_, rhoplus_); }

void Form_transfer_functions::choices_changed() {
  controls_->read_entries(entries_);
  controls_->follow(entries_);
  enable_write();
  if (have_same_files(choices(), looked_for_) && model_->plan().fault.empty()) {
    return;  // a folder is typed letter by letter, and a look at long lines takes its time
  }
  end_look();  // at what is out of date
  look();
}

void Form_transfer_functions::look() {
  looked_for_ = choices();
  look_soon_->start();
}

void Form_transfer_functions::enable_write() {
  const ExportPlan& plan = model_->plan();
  write_->setEnabled(work_ != Work::writing && plan.fault.empty() &&
                     (plan.stopped || plan.file_count() > 0) && fault_of_folder(entries_).empty());
}

void Form_transfer_functions::end_look() {
  if (work_ == Work::looking) {
    stop_->click();
  }
}

/// What stations give is looked at anew, and shown unless other choices have been made meanwhile.
void Form_transfer_functions::make_plan() {
  if (work_ != Work::none) {
    look_soon_->start();  // in the middle of work that ends first
    return;
  }
  ExportPlan plan;
  plan.fault = fault_of_rotation(entries_);  // in the words that stand beside it
  if (plan.fault.empty()) {
    plan.fault = fault_of(choices());
  }
  if (plan.fault.empty()) {
    look_at_stations(plan);
  }
  if (std::exchange(write_soon_, false)) {
    write_files();
  } else if (!look_soon_->isActive()) {
    show_plan(std::move(plan));
  }
}

void Form_transfer_functions::look_at_stations(ExportPlan& plan) {
  set_work(Work::looking);
  int status = -1;
  {
    const BusyPointer busy;
    const ProgressInWindow progress(*bar_, *doing_, *stop_);
    status = make_export_plan(choices(), plan);
  }
  set_work(Work::none);
  if (status != 0) {
    plan = {};
    plan.fault = "The stations couldn't be looked at";  // why was a message
  }
}

void Form_transfer_functions::show_plan(ExportPlan plan) {
  model_->show_plan(std::move(plan));
  summary_->setText(qt_text(plan_summary(model_->plan())));
  enable_write();
}

void Form_transfer_functions::write() {
  if (work_ == Work::looking) {
    write_soon_ = true;
    end_look();
  } else if (work_ == Work::none) {  // a button pressed by its key clicks a little later
    write_files();
  }
}

void Form_transfer_functions::write_files() {
  look_soon_->stop();
  const QPointer<QWidget> had_focus(focusWidget());
  const ExportChoices chosen = choices();
  ExportResult result;
  set_work(Work::writing);
  int status = -1;
  {
    const BusyPointer busy;
    const ProgressInWindow progress(*bar_, *doing_, *stop_);
    status = export_files(
        chosen,
        [](double share) {
          constexpr double percent = 100.0;
          user_interface().show_progress("Writing", static_cast<int>(percent * share));
          return !user_interface().stop_requested();
        },
        result);
  }
  set_work(Work::none);
  if (had_focus) {
    had_focus->setFocus();  // lost while everything was disabled
  }
  written_to_ = result.files.empty() ? QString() : qt_text(chosen.folder);
  if (!result.files.empty()) {
    keep_export_folder(entries_);
    controls_->follow(entries_);
  }
  open_folder_->setEnabled(!written_to_.isEmpty());
  if (status == 0 && !result.declined) {
    user_interface().show_message(told_export(chosen, result));
    if (!result.files.empty()) {
      Module_Brenlox::tell_finished(told_export(chosen, result), chosen.folder);
    }
  }
  look();  // what is shown may be of earlier choices
}

void Form_transfer_functions::set_work(Work work) {
  work_ = work;
  const bool writing = work == Work::writing;
  controls_->setEnabled(!writing);
  close_->setEnabled(!writing);
  enable_write();
  if (writing) {
    open_folder_->setEnabled(false);
  }
  show_progress(work != Work::none);
}

void Form_transfer_functions::show_progress(bool shown) {
  for (QWidget* const part : std::initializer_list<QWidget*>{bar_, doing_, stop_}) {
    part->setVisible(shown);
  }
}

/// While a question waits for its answer nothing goes on that could be stopped.
bool Form_transfer_functions::event(QEvent* event) {
  if (event->type() == QEvent::WindowBlocked) {
    show_progress(false);
  } else if (event->type() == QEvent::WindowUnblocked) {
    show_progress(work_ != Work::none);
  }
  return QDialog::event(event);
}

void Form_transfer_functions::open_folder() const {
  QDesktopServices::openUrl(QUrl::fromLocalFile(written_to_));
}

void Form_transfer_functions::reject() {
  if (work_ == Work::writing) {
    stop_->click();
    return;
  }
  look_soon_->stop();
  write_soon_ = false;
  end_look();
  QDialog::reject();
}
