#include "app/tensor_windows.h"

#include "tensor/windows/Form_strike.h"
#include "tensor/windows/Form_tensor_map.h"

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
  connect(&line_, &ShownLine::strike_chosen, this, [this](double strike) {
    chosen_strike_ = strike;
    Q_EMIT strike_chosen(strike);
  });
}

void TensorWindows::show_pseudo_section() {}

void TensorWindows::show_strike() {
  if (!strike_) {
    strike_ = new Form_strike(line_, &main_window_);
    strike_->setAttribute(Qt::WA_DeleteOnClose);
  }
  strike_->show();
  strike_->raise();
  strike_->activateWindow();
}

void TensorWindows::show_map() {
  if (map_ && map_->isVisible()) {
    map_->raise();
    map_->activateWindow();
    return;
  }
  map_ = new Form_tensor_map(line_, &main_window_);
  map_->setAttribute(Qt::WA_DeleteOnClose);
  map_->show();
}

void TensorWindows::close_all() {
  for (const QPointer<QWidget>& window : {pseudo_section_, strike_, map_}) {
    if (window) {
      window->close();
    }
  }
}
