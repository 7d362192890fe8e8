// graph_marks.h: what lies over the curves and changes without them: overlay lines, the point under the
// pointer, the rectangle being drawn for a zoom. Each is on a layer with a buffer of its own, so that the
// curves aren't drawn again.
#pragma once
#include <optional>
#include <utility>
#include <vector>

#include <qcustomplot.h>

#include "platform/graph/graph_content.h"

namespace graph {

/// Lines and labels in data coordinates. A label that would cover an earlier one isn't drawn.
class OverlayLines final : public QCPLayerable {
 public:
  OverlayLines(QCustomPlot& plot, const QString& layer);
  void clear() {
    lines_.clear();
    labels_.clear();
  }
  void add(const OverlayLine& line) { lines_.push_back(line); }
  void add(PlotLabel label) { labels_.push_back(std::move(label)); }

 protected:
  QRect clipRect() const override;
  void applyDefaultAntialiasingHint(QCPPainter* painter) const override;
  void draw(QCPPainter* painter) override;

 private:
  void draw_labels(QCPPainter& painter) const;

  std::vector<OverlayLine> lines_;
  std::vector<PlotLabel> labels_;
};

/// The enlarged point and the zoom rectangle.
class PointerMarks final : public QCPLayerable {
 public:
  PointerMarks(QCustomPlot& plot, const QString& layer, const GraphContent& content);
  void set_point(std::optional<PointIndex> point) { point_ = point; }
  std::optional<PointIndex> point() const { return point_; }
  void set_band(std::optional<QRectF> band) { band_ = band; }

 protected:
  QRect clipRect() const override;
  void applyDefaultAntialiasingHint(QCPPainter* painter) const override;
  void draw(QCPPainter* painter) override;

 private:
  const GraphContent& content_;
  std::optional<PointIndex> point_;
  std::optional<QRectF> band_;
};

}  // namespace graph
