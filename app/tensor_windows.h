// tensor_windows.h: the windows of "View Data" beside the main window, which show a line as a whole.
#pragma once
#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <optional>

#include "app/survey_display.h"
#include "tensor/windows/shown_line.h"

/// Keeps at most one window of each kind. They follow the main view's line, station and edits, and close with
/// the survey.
class TensorWindows : public QObject {
  Q_OBJECT

 public:
  /// @param display outlives this object
  TensorWindows(SurveyDisplay& display, QWidget& main_window);

  void show_pseudo_section();
  void show_strike();
  void show_map();
  void close_all();

 Q_SIGNALS:
  /// A strike is handed on, degrees from north; none: that of another survey holds no longer.
  void strike_chosen(std::optional<double> strike);

 private:
  SurveyDisplay& display_;
  QWidget& main_window_;
  ShownLine line_;
  QPointer<QWidget> pseudo_section_;
  QByteArray pseudo_section_place_;  // on the screen, where it was closed last
  QPointer<QWidget> strike_;
  QPointer<QWidget> map_;
};
