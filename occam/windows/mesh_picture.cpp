#include "occam/windows/mesh_picture.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <array>
#include <cmath>

#include "platform/graph/axis_ticks.h"
#include "platform/graph/mouse_gestures.h"

using Module_occam::CodeLines;
using Module_occam::OccamModel;
using Module_occam::TopoMask;

namespace {

const QColor free_colour(226, 200, 160);
const QColor masked_colour(214, 234, 248);
const QColor fixed_colour(150, 150, 158);
const QColor edge_colour(0, 0, 0, 45);
const QColor ground_colour(150, 60, 20);
const QColor text_colour(40, 40, 40);
const QColor axis_colour(110, 110, 110);

constexpr double min_cell = 4.0;  // pixels; closer lines would only darken the picture
constexpr double tick_length = 4.0;
constexpr double gap = 6.0;

QColor colour_of(char code) {
  return code == Module_occam::free_code     ? free_colour
         : code == Module_occam::masked_code ? masked_colour
                                             : fixed_colour;
}

/// The code of a cell whose triangles all have the same one; 0 for a mixed cell.
char common_code(const CodeLines& lines, std::size_t column) {
  const char first = lines[0][column];
  const bool same =
      std::ranges::all_of(lines, [&](const std::string& line) { return line[column] == first; });
  return same ? first : '\0';
}

/// The cells that a view shows: from `first` up to `end`.
struct Visible {
  std::size_t first = 0;
  std::size_t end = 0;
};

Visible visible(const std::vector<double>& lines, std::size_t cells, const graph::AxisRange& range) {
  const auto at = [&](double place) {
    const auto line =
        std::upper_bound(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(cells), place);
    return static_cast<std::size_t>(line - lines.begin());
  };
  const std::size_t first = at(range.lower);
  return {first > 0 ? first - 1 : 0, std::min(at(range.upper), cells)};
}

graph::AxisRange widened(graph::AxisRange range, double share) {
  const double margin = share * (range.upper - range.lower);
  return {range.lower - margin, range.upper + margin};
}

QString metres(double value) { return QString::number(value, 'f', std::abs(value) < 1000.0 ? 1 : 0); }

}  // namespace

MeshPicture::MeshPicture(QWidget* parent) : QWidget(parent) {
  setMouseTracking(true);
  connect_mouse();
}

void MeshPicture::connect_mouse() {
  auto* const gestures = new graph::MouseGestures(*this);
  gestures->setParent(this);
  const auto set_band = [this](std::optional<QRectF> band) {
    band_ = band;
    update();
  };
  connect(gestures, &graph::MouseGestures::band_dragged, this,
          [set_band](QPointF from, QPointF to) { set_band(QRectF(from, to).normalized()); });
  connect(gestures, &graph::MouseGestures::band_cancelled, this, [set_band] { set_band(std::nullopt); });
  connect(gestures, &graph::MouseGestures::band_released, this, [this, set_band](QPointF from, QPointF to) {
    zoom_to_band(from, to);
    set_band(std::nullopt);
  });
  connect(gestures, &graph::MouseGestures::double_clicked, this, &MeshPicture::reset_zoom);
  connect(gestures, &graph::MouseGestures::wheel_turned, this, &MeshPicture::turn_wheel);
  connect(gestures, &graph::MouseGestures::panned, this, [this](QPointF from, QPointF to) {
    const QPointF old_place = from_pixels(from);
    const QPointF new_place = from_pixels(to);
    station_view_.drag(old_place.x(), new_place.x());
    depth_view_.drag(old_place.y(), new_place.y());
    update();
  });
}

void MeshPicture::show_mesh(const TopoMask& mask, const std::vector<CodeLines>& codes) {
  mask_ = mask;
  codes_ = codes;
  set_home();
  update();
}

void MeshPicture::set_whole_mesh(bool whole) {
  whole_mesh_ = whole;
  set_home();
  reset_zoom();
}

void MeshPicture::reset_zoom() {
  station_view_.reset();
  depth_view_.reset();
  update();
}

/// The part of the mesh that the topography lies in: the padding beside and below is a hundred times as
/// large.
void MeshPicture::set_home() {
  const OccamModel& model = mask_.model;
  if (codes_.empty()) {
    return;
  }
  const auto rows = static_cast<std::size_t>(model.mesh.rows());
  graph::AxisRange stations{model.node_x.front(), model.node_x.back()};
  graph::AxisRange depths{0.0, model.node_z[rows]};
  const std::vector<double>& points = mask_.topo.curve.x;
  if (!whole_mesh_ && !points.empty()) {
    constexpr double margin = 0.1;
    const graph::AxisRange around = widened({points.front(), points.back()}, margin);
    const graph::AxisRange inside{std::max(stations.lower, around.lower),
                                  std::min(stations.upper, around.upper)};
    if (inside.lower < inside.upper) {
      stations = inside;
    }
    constexpr std::size_t some_rows = 6;
    constexpr double below_ground = 2.0;
    const auto [highest, lowest] =
        std::ranges::minmax(ground_depths(model, mask_.topo.curve, mask_.choices.datum_elevation));
    depths.lower = std::min(highest, 0.0);
    depths.upper = std::clamp(below_ground * lowest, model.node_z[std::min(some_rows, rows)], depths.upper);
  }
  constexpr double air = 0.05;
  depths.lower -= air * (depths.upper - depths.lower);
  station_view_.set_home(stations, graph::AxisType::linear);
  depth_view_.set_home(depths, graph::AxisType::linear);
}

QRectF MeshPicture::plot_area() const {
  const QFontMetricsF metrics(font());
  const double line = metrics.height();
  const double left = line + metrics.horizontalAdvance("-000000") + tick_length + 2.0 * gap;
  const double bottom = 2.0 * line + tick_length + 2.0 * gap;
  const double top = line + 2.0 * gap;
  return QRectF(rect()).adjusted(left, top, -3.0 * gap, -bottom);
}

QPointF MeshPicture::to_pixels(double station, double depth) const {
  const QRectF area = plot_area();
  return {area.left() + area.width() * station_view_.to_view(station),
          area.top() + area.height() * depth_view_.to_view(depth)};
}

QPointF MeshPicture::from_pixels(QPointF at) const {
  const QRectF area = plot_area();
  return {station_view_.from_view((at.x() - area.left()) / area.width()),
          depth_view_.from_view((at.y() - area.top()) / area.height())};
}

void MeshPicture::zoom_to_band(QPointF from, QPointF to) {
  const QRectF band = QRectF(from, to).normalized();
  constexpr double thin = 8.0;  // pixels; a thin band zooms along its length only
  const QPointF upper_left = from_pixels(band.topLeft());
  const QPointF lower_right = from_pixels(band.bottomRight());
  if (band.width() >= thin) {
    station_view_.show({upper_left.x(), lower_right.x()});
  }
  if (band.height() >= thin) {
    depth_view_.show({upper_left.y(), lower_right.y()});
  }
}

void MeshPicture::turn_wheel(QPointF at, double notches) {
  constexpr double factor_of_notch = 0.8;
  const double factor = std::pow(factor_of_notch, notches);
  const QRectF area = plot_area();
  const QPointF place = from_pixels(at);
  if (at.x() >= area.left()) {
    station_view_.zoom_about(place.x(), factor);
  }
  if (at.y() <= area.bottom()) {
    depth_view_.zoom_about(place.y(), factor);
  }
  update();
}

QString MeshPicture::text_at(QPointF at) const {
  const OccamModel& model = mask_.model;
  const QPointF place = from_pixels(at);
  if (codes_.empty() || !plot_area().contains(at) || place.x() < model.node_x.front() || place.y() < 0.0) {
    return {};
  }
  const auto column =
      static_cast<std::size_t>(std::ranges::upper_bound(model.node_x, place.x()) - model.node_x.begin()) - 1;
  const auto row =
      static_cast<std::size_t>(std::ranges::upper_bound(model.node_z, place.y()) - model.node_z.begin()) - 1;
  if (column >= model.mesh.node_widths.size() || row >= codes_.size()) {
    return {};
  }
  const double across = (place.x() - model.node_x[column]) / model.mesh.node_widths[column] - 0.5;
  const double down = (place.y() - model.node_z[row]) / model.mesh.node_heights[row] - 0.5;
  const bool vertical = std::abs(down) > std::abs(across);
  const std::size_t k = vertical ? (down < 0.0 ? 0 : 2) : (across < 0.0 ? 1 : 3);
  constexpr std::array names{"Top", "Left", "Bottom", "Right"};
  const char code = codes_[row][k][column];
  return QString("%1 triangle of column %2 (%3 to %4 m), row %5 (%6 to %7 m)\n%8")
             .arg(names[k])
             .arg(column + 1)
             .arg(metres(model.node_x[column]), metres(model.node_x[column + 1]))
             .arg(row + 1)
             .arg(metres(model.node_z[row]), metres(model.node_z[row + 1]),
                  code == Module_occam::free_code     ? QString("free")
                  : code == Module_occam::masked_code ? QString("air")
                  : code == Module_occam::sea_code    ? QString("sea water")
                                                      : QString("fixed, code \"%1\"").arg(code)) +
         QString("\nGround at %1 m below the mesh's upper edge")
             .arg(metres(mask_.choices.datum_elevation -
                         numerics::gridding::cubval(mask_.topo.curve, place.x())));
}

bool MeshPicture::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto& help = *static_cast<QHelpEvent*>(event);
    QToolTip::showText(help.globalPos(), text_at(help.pos()), this);
    return true;
  }
  return QWidget::event(event);
}

void MeshPicture::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  const QRectF area = plot_area();
  if (codes_.empty() || area.width() <= 1.0 || area.height() <= 1.0) {
    return;
  }
  painter.save();
  painter.setClipRect(area);
  draw_cells(painter);
  draw_cell_edges(painter);
  painter.setRenderHint(QPainter::Antialiasing);
  draw_ground(painter);
  if (band_) {
    painter.setPen(QPen(axis_colour, 1.0, Qt::DashLine));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(*band_);
  }
  painter.restore();
  draw_axes(painter);
  draw_key(painter);
}

void MeshPicture::draw_cells(QPainter& painter) const {
  const OccamModel& model = mask_.model;
  const Visible columns = visible(model.node_x, model.mesh.node_widths.size(), station_view_.shown());
  const Visible rows = visible(model.node_z, codes_.size(), depth_view_.shown());
  for (std::size_t row = rows.first; row < rows.end; ++row) {
    for (std::size_t column = columns.first; column < columns.end;) {
      const char code = common_code(codes_[row], column);
      if (code == '\0') {
        draw_triangles(painter, row, column++);
        continue;
      }
      const std::size_t first = column;
      while (column < columns.end && common_code(codes_[row], column) == code) {
        ++column;
      }
      painter.fillRect(QRectF(to_pixels(model.node_x[first], model.node_z[row]),
                              to_pixels(model.node_x[column], model.node_z[row + 1])),
                       colour_of(code));
    }
  }
}

void MeshPicture::draw_triangles(QPainter& painter, std::size_t row, std::size_t column) const {
  const OccamModel& model = mask_.model;
  const QRectF cell(to_pixels(model.node_x[column], model.node_z[row]),
                    to_pixels(model.node_x[column + 1], model.node_z[row + 1]));
  const std::array corners{cell.topLeft(), cell.bottomLeft(), cell.bottomRight(), cell.topRight()};
  painter.setPen(Qt::NoPen);
  for (std::size_t k = 0; k < Module_occam::triangles; ++k) {
    // Triangle k is the one before corner k on the way round from the upper left: top, left, bottom, right.
    const QPolygonF triangle{corners[(k + 3) % 4], corners[k], cell.center()};
    painter.setBrush(colour_of(codes_[row][k][column]));
    painter.drawPolygon(triangle);
  }
}

void MeshPicture::draw_cell_edges(QPainter& painter) const {
  const OccamModel& model = mask_.model;
  const std::size_t column_count = model.mesh.node_widths.size();
  const Visible columns = visible(model.node_x, column_count, station_view_.shown());
  const Visible rows = visible(model.node_z, codes_.size(), depth_view_.shown());
  const QPointF upper_left = to_pixels(model.node_x[columns.first], model.node_z[rows.first]);
  const QPointF lower_right = to_pixels(model.node_x[columns.end], model.node_z[rows.end]);
  painter.setPen(QPen(edge_colour, 0.0));
  for (std::size_t column = columns.first; column <= columns.end; ++column) {
    const double x = to_pixels(model.node_x[column], 0.0).x();
    if (column == columns.end || to_pixels(model.node_x[column + 1], 0.0).x() - x >= min_cell) {
      painter.drawLine(QPointF(x, upper_left.y()), QPointF(x, lower_right.y()));
    }
  }
  for (std::size_t row = rows.first; row <= rows.end; ++row) {
    const double y = to_pixels(0.0, model.node_z[row]).y();
    if (row == rows.end || to_pixels(0.0, model.node_z[row + 1]).y() - y >= min_cell) {
      painter.drawLine(QPointF(upper_left.x(), y), QPointF(lower_right.x(), y));
    }
  }
  constexpr double min_halved_cell = 3.0 * min_cell;
  for (std::size_t row = rows.first; row < rows.end; ++row) {
    for (std::size_t column = columns.first; column < columns.end; ++column) {
      const QRectF cell(to_pixels(model.node_x[column], model.node_z[row]),
                        to_pixels(model.node_x[column + 1], model.node_z[row + 1]));
      if (std::min(cell.width(), cell.height()) >= min_halved_cell) {
        painter.drawLine(cell.topLeft(), cell.bottomRight());
        painter.drawLine(cell.bottomLeft(), cell.topRight());
      }
    }
  }
}

void MeshPicture::draw_ground(QPainter& painter) const {
  const Module_occam::Topo& topo = mask_.topo;
  if (topo.empty()) {
    return;
  }
  const double datum = mask_.choices.datum_elevation;
  const QRectF area = plot_area();
  QPolygonF line;
  const int pixels = static_cast<int>(std::ceil(area.width()));
  for (int pixel = 0; pixel <= pixels; ++pixel) {
    const double station = from_pixels({area.left() + pixel, area.top()}).x();
    line << to_pixels(station, datum - numerics::gridding::cubval(topo.curve, station));
  }
  painter.setPen(QPen(ground_colour, 2.0));
  painter.drawPolyline(line);
  constexpr double radius = 2.5;
  painter.setPen(Qt::NoPen);
  painter.setBrush(ground_colour);
  const numerics::gridding::CubicSpline& curve = topo.curve;
  const auto first = std::ranges::lower_bound(curve.x, station_view_.shown().lower) - curve.x.begin();
  std::optional<QPoint> last;  // of thousands of points in a few pixels one shows
  for (auto point = static_cast<std::size_t>(first);
       point < curve.x.size() && curve.x[point] <= station_view_.shown().upper; ++point) {
    const QPointF place = to_pixels(curve.x[point], datum - curve.y[point]);
    if (last != place.toPoint()) {
      painter.drawEllipse(place, radius, radius);
      last = place.toPoint();
    }
  }
}

void MeshPicture::draw_axes(QPainter& painter) const {
  const QRectF area = plot_area();
  const QFontMetricsF metrics(font());
  const double line = metrics.height();
  painter.setPen(axis_colour);
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(area);
  const graph::AxisTicks stations = graph::linear_ticks(
      station_view_.shown(),
      {area.width(), 2.0 * gap, 100, [&](const QString& text) { return metrics.horizontalAdvance(text); }});
  for (qsizetype i = 0; i < stations.major.size(); ++i) {
    const double x = to_pixels(stations.major[i], 0.0).x();
    painter.setPen(axis_colour);
    painter.drawLine(QPointF(x, area.bottom()), QPointF(x, area.bottom() + tick_length));
    painter.setPen(text_colour);
    const double width = metrics.horizontalAdvance(stations.labels[i]) + 2.0;
    painter.drawText(QRectF(x - width / 2.0, area.bottom() + tick_length + 1.0, width, line), Qt::AlignCenter,
                     stations.labels[i]);
  }
  const graph::AxisTicks depths = graph::linear_ticks(
      depth_view_.shown(), {area.height(), gap, 100, [&](const QString&) { return line; }});
  for (qsizetype i = 0; i < depths.major.size(); ++i) {
    const double y = to_pixels(0.0, depths.major[i]).y();
    painter.setPen(axis_colour);
    painter.drawLine(QPointF(area.left() - tick_length, y), QPointF(area.left(), y));
    painter.setPen(text_colour);
    painter.drawText(QRectF(line, y - line / 2.0, area.left() - tick_length - 2.0 - line, line),
                     Qt::AlignRight | Qt::AlignVCenter, depths.labels[i]);
  }
  painter.drawText(QRectF(area.left(), height() - line - gap / 2.0, area.width(), line), Qt::AlignCenter,
                   "Station (m)");
  painter.save();
  painter.translate(gap / 2.0, area.center().y());
  painter.rotate(-90.0);
  painter.drawText(QRectF(-area.height() / 2.0, 0.0, area.height(), line), Qt::AlignCenter, "Depth (m)");
  painter.restore();
}

void MeshPicture::draw_key(QPainter& painter) const {
  const QFontMetricsF metrics(font());
  const double line = metrics.height();
  double x = plot_area().left();
  const double y = gap;
  const auto add = [&](const QString& text, const QColor& colour, bool as_line) {
    const QRectF sample(x, y + line * 0.15, line, line * 0.7);
    painter.setPen(QPen(as_line ? colour : axis_colour, as_line ? 2.0 : 1.0));
    painter.setBrush(colour);
    if (as_line) {
      painter.drawLine(QPointF(sample.left(), sample.center().y()),
                       QPointF(sample.right(), sample.center().y()));
    } else {
      painter.drawRect(sample);
    }
    painter.setPen(text_colour);
    x += line + gap;
    painter.drawText(QPointF(x, y + metrics.ascent()), text);
    x += metrics.horizontalAdvance(text) + 3.0 * gap;
  };
  add("Free", free_colour, false);
  add("Air (code 0)", masked_colour, false);
  if (mask_.model.mesh.num_fixed_res() > 0) {
    add("Fixed", fixed_colour, false);
  }
  add("Ground", ground_colour, true);
}
