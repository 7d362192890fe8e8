// rose_picture.h: roses of the strikes of a line: one for all frequencies, and small ones by method and
// decade.
//
// North is up. The area of a bin is in proportion to its points, or to their weights.
#pragma once
#include <QPainter>
#include <QString>
#include <QWidget>
#include <optional>

#include "tensor/strike_summary.h"

namespace Module_tensor {

struct RoseFigure {
  std::optional<StrikeSummary> summary;  // none: the note says why
  numerics::impedance::StrikeMethod method =
      numerics::impedance::StrikeMethod::phase_tensor_azimuth;  // of the large rose
  std::optional<double> line_azimuth;                           // degrees from north
  QString heading;                                              // the line and the choices
  QString note;
};

/// Pen and letters of a picture: those of the painter.
void paint_roses(QPainter& painter, const QRectF& area, const RoseFigure& figure);

}  // namespace Module_tensor

class RosePicture : public QWidget {
  Q_OBJECT

 public:
  explicit RosePicture(QWidget* parent = nullptr);

  void show_figure(Module_tensor::RoseFigure figure);
  [[nodiscard]] const Module_tensor::RoseFigure& figure() const { return figure_; }

  QSize sizeHint() const override { return {900, 300}; }
  QSize minimumSizeHint() const override { return {420, 200}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Module_tensor::RoseFigure figure_;
};
