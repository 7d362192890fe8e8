// picture_site_map.h: the stations in plan, as dots in the plan window.
#pragma once
#include <QWidget>

class SiteMap : public QWidget {
  Q_OBJECT

 public:
  explicit SiteMap(QWidget* parent = nullptr);
  QSize minimumSizeHint() const override { return {120, 80}; }

 Q_SIGNALS:
  void station_picked(int station_index);
  void pointer_moved(double x, double y);  // m
  void pointer_left();
  void zoom_wanted(int steps);
  void resized();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
};
