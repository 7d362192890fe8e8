#include "tensor/windows/dimension_picture.h"

#include <QMouseEvent>
#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "core/number_text.h"
#include "platform/graph/axis_ticks.h"
#include "platform/graph/picture_axes.h"
#include "platform/widgets/panel_controls.h"

namespace Module_tensor {

using numerics::impedance::Dimensionality;

namespace {

struct DimensionLook {
  Dimensionality dimension;
  const char* name;
  QColor colour;  // told apart with any kind of colour blindness, by lightness, too
};

const DimensionLook looks[] = {{Dimensionality::one, "1-D", {150, 205, 240}},
                               {Dimensionality::two, "2-D", {240, 225, 90}},
                               {Dimensionality::three, "3-D", {190, 75, 10}}};

const QColor& colour_of(Dimensionality dimension) {
  return looks[static_cast<std::size_t>(dimension)].colour;
}

bool has_cells(const DimensionFigure& figure) {
  return std::ranges::any_of(figure.stations, [](const auto& station) { return !station.cells.empty(); });
}

double widest_title(const QFontMetricsF& metrics, const DimensionFigure& figure) {
  double widest = 0.0;
  for (const DimensionFigure::Station& station : figure.stations) {
    widest = std::max(widest, metrics.horizontalAdvance(station.title));
  }
  constexpr double longest = 90.0;
  return std::min(widest, longest);
}

DimensionPlaces places_of(const QFontMetricsF& metrics, const QRectF& area, const DimensionFigure& figure) {
  DimensionPlaces places;
  places.shortest = std::numeric_limits<double>::infinity();
  places.longest = -places.shortest;
  for (const DimensionFigure::Station& station : figure.stations) {
    for (const DimensionCell& cell : station.cells) {
      places.shortest = std::min(places.shortest, std::log10(cell.shortest_period));
      places.longest = std::max(places.longest, std::log10(cell.longest_period));
    }
  }
  const double line = metrics.height();
  const double left = metrics.horizontalAdvance("100000") + line + 10.0;
  places.plot = area.adjusted(left, 2.8 * line, -8.0, -widest_title(metrics, figure) - line - 12.0);
  places.plot.setSize(places.plot.size().expandedTo(QSizeF(1.0, 1.0)));
  places.column = places.plot.width() / static_cast<double>(std::max<std::size_t>(figure.stations.size(), 1));
  return places;
}

/// How often each class occurs, in the heading's second line.
void draw_key(QPainter& painter, const QRectF& row, const DimensionFigure& figure) {
  std::vector<std::vector<DimensionCell>> cells;
  for (const DimensionFigure::Station& station : figure.stations) {
    cells.push_back(station.cells);
  }
  const auto counts = dimension_counts(cells, figure.band.value_or(FrequencyBand{}));
  const double all = std::max(static_cast<double>(counts[0] + counts[1] + counts[2]), 1.0);
  const QFontMetricsF metrics(painter.font(), painter.device());
  const double box = 0.7 * row.height();
  double left = row.left();
  for (std::size_t i = 0; i < counts.size(); ++i) {
    const QRectF square(left, row.center().y() - box / 2.0, box, box);
    painter.fillRect(square, looks[i].colour);
    painter.drawRect(square);
    const QString text = QString(looks[i].name) + "  " +
                         qt_text(format_number(100.0 * static_cast<double>(counts[i]) / all, "0")) + " %";
    const double width = metrics.horizontalAdvance(text) + 2.0;
    painter.drawText(QRectF(square.right() + 5.0, row.top(), width, row.height()),
                     Qt::AlignLeft | Qt::AlignVCenter, text);
    left = square.right() + width + 18.0;
  }
}

void draw_cells(QPainter& painter, const DimensionPlaces& places, const DimensionFigure& figure) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing, false);
  for (std::size_t i = 0; i < figure.stations.size(); ++i) {
    const double left = places.plot.left() + places.column * static_cast<double>(i);
    const auto& cells = figure.stations[i].cells;
    for (std::size_t first = 0; first < cells.size();) {  // neighbours of one colour as one
      std::size_t last = first;
      while (last + 1 < cells.size() && cells[last + 1].dimension == cells[first].dimension &&
             cells[last + 1].longest_period >= cells[last].shortest_period * (1.0 - 1e-9)) {
        ++last;
      }
      const double top = places.y_of(cells[last].shortest_period);
      painter.fillRect(QRectF(left, top, places.column, places.y_of(cells[first].longest_period) - top),
                       colour_of(cells[first].dimension));
      first = last + 1;
    }
    if (places.column > 4.0 && i > 0) {
      painter.setPen(QPen(Qt::white, 1.0));
      painter.drawLine(QPointF(left, places.plot.top()), QPointF(left, places.plot.bottom()));
    }
  }
  painter.restore();
}

void draw_station_titles(QPainter& painter, const DimensionPlaces& places, const DimensionFigure& figure) {
  const QFontMetricsF metrics(painter.font(), painter.device());
  const double length = widest_title(metrics, figure);
  double last = -1e9;
  for (std::size_t i = 0; i < figure.stations.size(); ++i) {
    const double at = places.plot.left() + places.column * (static_cast<double>(i) + 0.5);
    if (at - last < metrics.height()) {
      continue;
    }
    last = at;
    painter.drawLine(QPointF(at, places.plot.bottom()), QPointF(at, places.plot.bottom() + 4.0));
    painter.save();
    painter.translate(at, places.plot.bottom() + 6.0);
    painter.rotate(-90.0);
    painter.drawText(QRectF(-length, -metrics.height() / 2.0, length, metrics.height()),
                     Qt::AlignRight | Qt::AlignVCenter,
                     metrics.elidedText(figure.stations[i].title, Qt::ElideMiddle, length));
    painter.restore();
  }
  painter.drawText(
      QRectF(places.plot.left(), places.plot.bottom() + 8.0 + length, places.plot.width(), metrics.height()),
      Qt::AlignCenter, "Station");
}

void draw_periods(QPainter& painter, const DimensionPlaces& places) {
  const QFontMetricsF metrics(painter.font(), painter.device());
  graph::TickRoom room;
  room.pixels = places.plot.height();
  room.gap = 4.0;
  room.max_characters = graph::longest_left_label;
  room.extent = [&metrics](const QString& /*label*/) { return metrics.height(); };
  const graph::AxisTicks ticks =
      graph::logarithmic_ticks({std::pow(10.0, places.shortest), std::pow(10.0, places.longest)}, room);
  std::vector<graph::PictureTick> labelled;
  for (qsizetype i = 0; i < ticks.major.size(); ++i) {
    labelled.push_back({places.y_of(ticks.major[i]), ticks.labels[i]});
  }
  graph::draw_left_axis(painter, places.plot, labelled, "Period (s)");
}

/// The band of the strike as a bar along the periods, and a mark above the main window's station.
void draw_marks(QPainter& painter, const DimensionPlaces& places, const DimensionFigure& figure) {
  painter.save();
  if (figure.band) {
    const auto within = [&](double period) {
      return std::clamp(places.y_of(period), places.plot.top(), places.plot.bottom());
    };
    painter.setPen(QPen(Qt::black, 1.0, Qt::DashLine));
    for (const double frequency : {figure.band->lower, figure.band->upper}) {
      const double y = within(1.0 / frequency);
      if (y > places.plot.top() + 1.0 && y < places.plot.bottom() - 1.0) {
        painter.drawLine(QPointF(places.plot.left(), y), QPointF(places.plot.right(), y));
      }
    }
  }
  if (figure.shown_station) {
    const double at = places.plot.left() + places.column * (static_cast<double>(*figure.shown_station) + 0.5);
    constexpr double size = 4.0;
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawPolygon(QPolygonF({QPointF(at - size, places.plot.top() - 2.0 * size),
                                   QPointF(at + size, places.plot.top() - 2.0 * size),
                                   QPointF(at, places.plot.top() - 1.0)}));
  }
  painter.restore();
}

}  // namespace

double DimensionPlaces::y_of(double period) const {
  return plot.top() + plot.height() * (std::log10(period) - shortest) / (longest - shortest);
}

DimensionPlaces paint_dimensions(QPainter& painter, const QRectF& area, const DimensionFigure& figure) {
  if (!has_cells(figure)) {
    painter.drawText(area.adjusted(8.0, 0.0, -8.0, 0.0), Qt::AlignCenter | Qt::TextWordWrap, figure.note);
    return {};
  }
  const QFontMetricsF metrics(painter.font(), painter.device());
  const DimensionPlaces places = places_of(metrics, area, figure);
  const double line = metrics.height();
  painter.drawText(QRectF(area.left() + 4.0, area.top(), area.width() - 8.0, line), Qt::AlignHCenter,
                   metrics.elidedText(figure.heading, Qt::ElideRight, area.width() - 8.0));
  draw_key(painter, QRectF(places.plot.left(), area.top() + line, places.plot.width(), line), figure);
  draw_cells(painter, places, figure);
  painter.save();
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(places.plot);
  painter.restore();
  painter.save();
  painter.translate(area.left(), 0.0);
  DimensionPlaces from_left = places;
  from_left.plot.translate(-area.left(), 0.0);
  draw_periods(painter, from_left);
  painter.restore();
  draw_station_titles(painter, places, figure);
  draw_marks(painter, places, figure);
  return places;
}

}  // namespace Module_tensor

using Module_tensor::DimensionCell;
using Module_tensor::DimensionFigure;

namespace {

QString cell_text(const DimensionFigure::Station& station, const DimensionCell& cell) {
  return "Station " + station.text + "   " +
         qt_text(plain_text(static_cast<float>(cell.frequency)) + " Hz, " +
                 plain_text(static_cast<float>(1.0 / cell.frequency)) + " s   ") +
         QString::number(static_cast<int>(cell.dimension) + 1) + "-D   skew " +
         qt_text(format_number(cell.skew, "0.0") + "   ellipticity " +
                 format_number(cell.ellipticity, "0.00"));
}

}  // namespace

DimensionPicture::DimensionPicture(QWidget* parent) : QWidget(parent) {
  setObjectName("Picture_dimensions");
  setMouseTracking(true);
  setToolTip("Click on a cell to see its station and frequency in the main window");
}

void DimensionPicture::show_figure(DimensionFigure figure) {
  figure_ = std::move(figure);
  update();
}

void DimensionPicture::show_station(std::optional<std::size_t> index) {
  figure_.shown_station = index;
  update();
}

void DimensionPicture::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  graph::use_picture_style(painter);
  places_ = paint_dimensions(painter, QRectF(rect()), figure_);
}

std::optional<DimensionPicture::Hit> DimensionPicture::hit_at(QPointF at) const {
  if (!places_.plot.contains(at) || figure_.stations.empty()) {
    return std::nullopt;
  }
  const auto column = static_cast<std::size_t>((at.x() - places_.plot.left()) / places_.column);
  const DimensionFigure::Station& station = figure_.stations[std::min(column, figure_.stations.size() - 1)];
  const auto cell = std::ranges::find_if(station.cells, [&](const DimensionCell& candidate) {
    return at.y() >= places_.y_of(candidate.shortest_period) &&
           at.y() <= places_.y_of(candidate.longest_period);
  });
  return Hit{&station, cell == station.cells.end() ? nullptr : &*cell};
}

void DimensionPicture::mouseMoveEvent(QMouseEvent* event) {
  const auto hit = hit_at(event->position());
  Q_EMIT hovered(hit && hit->cell != nullptr ? cell_text(*hit->station, *hit->cell)
                 : hit                       ? "Station " + hit->station->text
                                             : QString());
}

void DimensionPicture::mousePressEvent(QMouseEvent* event) {
  if (const auto hit = hit_at(event->position()); hit && event->button() == Qt::LeftButton) {
    Q_EMIT chosen(hit->station->station, hit->cell != nullptr ? hit->cell->frequency : 0.0);
  }
}

void DimensionPicture::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  Q_EMIT hovered(QString());
}
