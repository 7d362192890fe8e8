// plan_picture.h: the plan of the survey: all stations, the current one marked.
#pragma once
#include <QWidget>
#include <cstdint>

class PlanPicture : public QWidget {
  Q_OBJECT

 public:
  explicit PlanPicture(QWidget* parent = nullptr);

  /// Brings the plan's window to this picture and draws it. @return what the scale bar has to show
  int show_plan(int scale_value);

  [[nodiscard]] QSize sizeHint() const override { return {320, 280}; }

 signals:
  /// A press nearest to this station (from 1).
  void station_picked(std::int32_t station_index);
  /// The pointer is over the plan, at this place in m.
  void pointer_moved(double x, double y);
  void pointer_left();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
};
