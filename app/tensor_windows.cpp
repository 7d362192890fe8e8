#include "app/tensor_windows.h"

#include "tensor/windows/Form_pseudo_section.h"
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
          [this](int station_index, double frequency, const QString& data_type) {
            display_.display_at(station_index, frequency, data_type.toStdString());
          });
  connect(&line_, &ShownLine::edited, &display_, &SurveyDisplay::redraw);
  connect(&line_, &ShownLine::marks_changed, &display_, &SurveyDisplay::redraw);
  connect(&line_, &ShownLine::strike_chosen, this, [this](double strike) { Q_EMIT strike_chosen(strike); });
}

void TensorWindows::show_pseudo_section() {
  if (pseudo_section_ && pseudo_section_->isVisible()) {
    pseudo_section_->raise();
    pseudo_section_->activateWindow();
    return;
  }
  auto* const window = new Form_pseudo_section(line_, &main_window_);
  pseudo_section_ = window;
  window->setAttribute(Qt::WA_DeleteOnClose);
  window->restoreGeometry(pseudo_section_place_);
  connect(window, &QDialog::finished, this,
          [this, window] { pseudo_section_place_ = window->saveGeometry(); });
  connect(window, &Form_pseudo_section::undo_wanted, &display_, &SurveyDisplay::undo);
  connect(window, &Form_pseudo_section::redo_wanted, &display_, &SurveyDisplay::redo);
  window->show();
}

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
      // At once: a closed window that still follows the line may begin work whose progress runs events, and
      // these would delete it in the middle.
      delete window.data();
    }
  }
  Q_EMIT strike_chosen(std::nullopt);
}
