// plan_panel.h: the plan of the survey with the bars that pan and zoom it.
#pragma once
#include <QObject>
#include <QWidget>
#include <cstdint>

class PlanPicture;
class QScrollBar;

/// Builds itself into the Picture_plan of the main window.
class PlanPanel : public QObject {
  Q_OBJECT

 public:
  explicit PlanPanel(QWidget* picture_plan);

  /// Draws the plan with the selected station marked; fits it if the survey or the coordinates are new.
  void display();

 signals:
  void station_picked(std::int32_t station_index);
  void pointer_moved(double x, double y);
  void pointer_left();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void pan(QScrollBar* bar, void (*move)(int));

  PlanPicture* picture_;
  QScrollBar* x_centre_;
  QScrollBar* y_centre_;
  QScrollBar* scale_;
};
