#include "app/tensor_windows.h"

TensorWindows::TensorWindows(SurveyDisplay& display, QWidget& main_window)
    : QObject(&main_window), display_(display), main_window_(main_window) {
  connect(&display, &SurveyDisplay::station_displayed, this, [this] { line_.follow_selection(); });
  connect(&display, &SurveyDisplay::selection_changed, this, [this] { line_.follow_selection(); });
  connect(&display, &SurveyDisplay::data_changed, this, [this] { line_.follow_edit(); });
  connect(&display, &SurveyDisplay::survey_changed, this, [this] { line_.forget(); });
  connect(&display, &SurveyDisplay::positions_changed, this,
          [this] { line_.set_positions(display_.positions()); });
  connect(&line_, &ShownLine::station_chosen, &display_,
          [this](int station_index, double) { display_.display_station(station_index); });
  connect(&line_, &ShownLine::edited, &display_, &SurveyDisplay::redraw);
  connect(&line_, &ShownLine::marks_changed, &display_, &SurveyDisplay::redraw);
  connect(&line_, &ShownLine::strike_chosen, this, [this](double strike) { chosen_strike_ = strike; });
}

void TensorWindows::show_pseudo_section() {}

void TensorWindows::show_strike() {}

void TensorWindows::show_map() {}

void TensorWindows::close_all() {
  for (const QPointer<QWidget>& window : {pseudo_section_, strike_, map_}) {
    if (window) {
      window->close();
    }
  }
}
