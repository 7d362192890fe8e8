#include "app/rhoplus_windows.h"

#include <utility>

#include "display/selection.h"
#include "occam/windows/Form_occam.h"
#include "rhoplus/windows/Form_rhoplus.h"
#include "rhoplus/windows/Form_rhoplus_inversion.h"

RhoplusWindows::RhoplusWindows(SurveyDisplay& display, QWidget& main_window)
    : QObject(&main_window), display_(display), main_window_(main_window) {
  connect(&display, &SurveyDisplay::selection_changed, this, &RhoplusWindows::close_results);
  connect(&display, &SurveyDisplay::station_displayed, this, [this] {
    if (results_ && results_->isVisible()) {  // a closed one is deleted only when events run
      results_->follow_station();
    }
  });
  connect(&display, &SurveyDisplay::data_changed, this, [this] {
    if (results_) {
      results_->refresh_rhoplus_results();
    }
  });
}

void RhoplusWindows::edit_settings() {
  Form_rhoplus(Module_output::rhoplus_settings(), &main_window_).exec();
  if (results_) {
    results_->refresh_rhoplus_results();
  }
}

void RhoplusWindows::show_results() {
  if (results_ && results_->isVisible()) {
    results_->raise();
    results_->activateWindow();
    return;
  }
  results_ = new Form_rhoplus_inversion(Module_output::rhoplus_settings(), &main_window_);
  results_->setAttribute(Qt::WA_DeleteOnClose);
  connect(results_, &Form_rhoplus_inversion::station_chosen, &display_,
          [this](int station_index) { display_.display_station(station_index); });
  connect(results_, &Form_rhoplus_inversion::line_run_begun, this, &RhoplusWindows::keep_display);
  connect(results_, &Form_rhoplus_inversion::line_run_ended, this, &RhoplusWindows::put_back_display);
  connect(results_, &QObject::destroyed, this, &RhoplusWindows::put_back_display);  // in the middle of a run
  connect(results_, &Form_rhoplus_inversion::edited, &display_, &SurveyDisplay::redraw);
  connect(results_, &Form_rhoplus_inversion::undo_wanted, &display_, &SurveyDisplay::undo);
  connect(results_, &Form_rhoplus_inversion::redo_wanted, &display_, &SurveyDisplay::redo);
  connect(results_, &Form_rhoplus_inversion::marked, &display_, &SurveyDisplay::redraw_marks);
  connect(&display_, &SurveyDisplay::marks_changed, results_, &Form_rhoplus_inversion::show_marks);
  connect(results_, &Form_rhoplus_inversion::occam_requested, this, &RhoplusWindows::create_occam_inversion);
  results_->show();
  results_->refresh_rhoplus_results();
}

void RhoplusWindows::close_results() {
  if (results_) {
    results_->close();
  }
}

void RhoplusWindows::keep_display() { kept_.emplace(display_.keep()); }

void RhoplusWindows::put_back_display() {
  if (const auto kept = std::exchange(kept_, std::nullopt)) {
    display_.put_back(*kept);
  }
}

void RhoplusWindows::create_occam_inversion() {
  if (Module_occam::check_line_for_inversion() != 0) {
    return;
  }
  Module_occam::StationSteps steps;
  steps.show_station = [this](int place_in_line) {
    if (!kept_) {
      keep_display();
    }
    if (results_ && place_in_line == 1) {
      results_->begin_line_run();
    }
    display_.display_station(Module_display_data::first_station_of_current_line() + place_in_line - 1);
  };
  const std::int32_t file_errors = Module_output::rhoplus_settings().use_file_errors;
  Form_occam dialog(Module_output::rhoplus_settings(), steps, &main_window_, display_.positions(),
                    proposed_strike_);
  dialog.exec();  // the results window may be closed before this one
  put_back_display();
  if (results_) {
    results_->end_line_run();
    if (Module_output::rhoplus_settings().use_file_errors != file_errors) {
      results_->refresh_rhoplus_results();
    }
  }
  if (!dialog.directory_to_run().empty()) {
    Q_EMIT inversion_wanted(QString::fromStdString(dialog.directory_to_run()));
  }
}
