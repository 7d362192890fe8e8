// dimension_picture.h: how many dimensions the ground has at each station and period, in three colours.
//
// Stations stand in their order, a column each; periods grow downwards.
#pragma once
#include <QPainter>
#include <QString>
#include <QWidget>
#include <optional>
#include <vector>

#include "tensor/dimensions.h"

namespace Module_tensor {

struct DimensionFigure {
  struct Station {
    double station = 0.0;
    QString text;   // "1250 (ET001)"
    QString title;  // of its column
    std::vector<DimensionCell> cells;
  };
  std::vector<Station> stations;
  std::optional<FrequencyBand> band;         // of the strike, marked beside the periods
  std::optional<std::size_t> shown_station;  // by the main window
  QString heading;
  QString note;  // what stands in place of the cells if there are none
};

/// Where a picture has its cells.
struct DimensionPlaces {
  QRectF plot;
  double shortest = 0.0;  // log10 of the periods at the edges, s
  double longest = 0.0;
  double column = 0.0;  // width

  [[nodiscard]] double y_of(double period) const;
};

DimensionPlaces paint_dimensions(QPainter& painter, const QRectF& area, const DimensionFigure& figure);

}  // namespace Module_tensor

class DimensionPicture : public QWidget {
  Q_OBJECT

 public:
  explicit DimensionPicture(QWidget* parent = nullptr);

  void show_figure(Module_tensor::DimensionFigure figure);
  void show_station(std::optional<std::size_t> index);
  [[nodiscard]] const Module_tensor::DimensionFigure& figure() const { return figure_; }
  /// As painted last.
  [[nodiscard]] const Module_tensor::DimensionPlaces& places() const { return places_; }

  QSize sizeHint() const override { return {480, 300}; }
  QSize minimumSizeHint() const override { return {260, 160}; }

 Q_SIGNALS:
  void hovered(const QString& text);
  /// @param frequency  Hz; 0 in a gap
  void chosen(double station, double frequency);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  struct Hit {
    const Module_tensor::DimensionFigure::Station* station = nullptr;
    const Module_tensor::DimensionCell* cell = nullptr;  // none in a gap
  };
  [[nodiscard]] std::optional<Hit> hit_at(QPointF at) const;

  Module_tensor::DimensionFigure figure_;
  Module_tensor::DimensionPlaces places_;
};
