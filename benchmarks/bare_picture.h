// bare_picture.h: the bound of a graph: a white picture, a polyline for each series and a copied disc for
// each of its points, evenly along the width and by their logarithm in height, without axes and texts.
#pragma once
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QPolygonF>
#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "platform/graph/plot_table.h"

class BarePicture {
 public:
  BarePicture(const graph::PlotTable& table, QSize size)
      : image_(size, QImage::Format_ARGB32_Premultiplied), disc_(disc_size, disc_size) {
    disc_.fill(Qt::black);
    double low = std::numeric_limits<double>::infinity();
    double high = -low;
    for (const graph::PlotSeries& series : table.series) {
      for (const double y : series.y) {
        if (y > 0.0) {
          low = std::min(low, y);
          high = std::max(high, y);
        }
      }
    }
    const double scale = size.height() / std::max(std::log(high / low), 1e-6);
    for (const graph::PlotSeries& series : table.series) {
      const double spacing = static_cast<double>(size.width()) / static_cast<double>(series.x.size());
      QPolygonF line;
      for (std::size_t i = 0; i < series.y.size(); ++i) {
        if (series.y[i] > 0.0) {
          line.append({(static_cast<double>(i) + 0.5) * spacing, scale * std::log(high / series.y[i])});
        }
      }
      lines_.push_back(line);
    }
  }

  void draw() {
    image_.fill(Qt::white);
    QPainter painter(&image_);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const QPolygonF& line : lines_) {
      painter.drawPolyline(line);
      for (const QPointF& point : line) {
        painter.drawPixmap(point.toPoint(), disc_);
      }
    }
  }

 private:
  static constexpr int disc_size = 9;  // pixels

  QImage image_;
  QPixmap disc_;
  std::vector<QPolygonF> lines_;
};
