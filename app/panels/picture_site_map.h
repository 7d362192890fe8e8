// picture_site_map.h: the stations in plan, in the plan window; plan_painter says what is drawn.
//
// With the mouse: a click picks the nearest station, a drag moves the plan and never picks, the wheel zooms
// about the pointer, and the dot under the pointer is named in a tool tip.
#pragma once
#include <QPointF>
#include <QWidget>

#include "app/panels/plan_painter.h"
#include "platform/widgets/picture_drag.h"

class SiteMap : public QWidget {
  Q_OBJECT

 public:
  explicit SiteMap(QWidget* parent = nullptr);
  QSize minimumSizeHint() const override { return {120, 80}; }
  void show_contents(PlanContents contents);
  /// Other stations are displayed from now on, or these at other places.
  void forget_stations();
  [[nodiscard]] const PlanContents& contents() const { return contents_; }

 Q_SIGNALS:
  void station_picked(int station_index);
  /// @param station  under the pointer, in words; empty where there is none
  /// @param x,y      m
  void pointer_moved(const QString& station, double x, double y);
  void pointer_left();
  void dragged(QPointF from, QPointF to);
  void zoom_wanted(int steps, QPointF about);
  void resized();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  bool event(QEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  [[nodiscard]] QString station_text(QPointF place) const;

  PlanContents contents_;
  PlanPainter plan_;
  PictureDrag drag_{*this};
  int wheel_turned_ = 0;  // eighths of a degree that have not made a step yet
};
