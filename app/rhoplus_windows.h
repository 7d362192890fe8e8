// rhoplus_windows.h: the windows of Rho+ inversion beside the main window.
#pragma once
#include <QObject>
#include <QPointer>
#include <optional>

#include "app/survey_display.h"

class Form_rhoplus_inversion;

/// Keeps at most one results window, which follows the main view's station and edits. It closes when another
/// line, component, reference type or dipole length is chosen. A run through the line, there or to create a
/// two-dimensional inversion, leaves the main view as it was.
class RhoplusWindows : public QObject {
  Q_OBJECT

 public:
  /// @param display outlives this object
  RhoplusWindows(SurveyDisplay& display, QWidget& main_window);

  void edit_settings();
  void show_results();
  void close_results();

  /// The strike that new two-dimensional inversions may be rotated to, degrees from north.
  void propose_strike(std::optional<double> strike) { proposed_strike_ = strike; }

 Q_SIGNALS:
  /// The user wants the two-dimensional inversion of a run that was created.
  void inversion_wanted(const QString& run_directory);

 private:
  void create_occam_inversion();
  void keep_display();
  void put_back_display();

  SurveyDisplay& display_;
  QWidget& main_window_;
  QPointer<Form_rhoplus_inversion> results_;
  std::optional<double> proposed_strike_;
  std::optional<SurveyDisplay::Kept> kept_;  // during a run through the line
};
