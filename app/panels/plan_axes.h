// plan_axes.h: the frame of the plan: the values of its axes, and what its colours mean.
#pragma once
#include <QWidget>
#include <optional>

#include "app/panels/plan_painter.h"

class PlanAxes : public QWidget {
  Q_OBJECT

 public:
  /// @param plan  drawn in the frame, which owns it
  explicit PlanAxes(QWidget* plan, QWidget* parent = nullptr);

  /// What the colour bar is of; none: there is no bar. The numbers are those of the plan window.
  void show_colouring(std::shared_ptr<const PlanColouring> colouring);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void paint_colour_bar(QPainter& painter) const;

  QWidget* plan_;
  std::shared_ptr<const PlanColouring> colouring_;
};
