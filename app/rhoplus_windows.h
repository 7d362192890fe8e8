// rhoplus_windows.h: the windows of Rho+ inversion beside the main window.
#pragma once
#include <QObject>
#include <QPointer>

class Form_rhoplus_inversion;
class SurveyDisplay;

/// Keeps at most one results window, which follows the main view's station and edits. It closes when another
/// line, component, reference type or dipole length is chosen.
class RhoplusWindows : public QObject {
  Q_OBJECT

 public:
  /// @param display outlives this object
  RhoplusWindows(SurveyDisplay& display, QWidget& main_window);

  void edit_settings();
  void show_results();
  void close_results();

 private:
  void create_occam_inversion();

  SurveyDisplay& display_;
  QWidget& main_window_;
  QPointer<Form_rhoplus_inversion> results_;
};
