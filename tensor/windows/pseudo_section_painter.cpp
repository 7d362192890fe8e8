#include "tensor/windows/pseudo_section_painter.h"

#include <QFontMetricsF>
#include <QPaintEngine>
#include <QPolygonF>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "core/median.h"
#include "core/number_text.h"
#include "platform/graph/picture_axes.h"
#include "tensor/section_contours.h"
#include "tensor/section_texts.h"
#include "tensor/windows/ellipse_cloud.h"
#include "tensor/windows/scale_bar.h"

namespace Module_tensor {

namespace {

constexpr double left_margin = 66.0;  // pixels
constexpr double top_margin = 58.0;   // title, names and marks of the stations
constexpr double bottom_margin = 40.0;
constexpr double bar_gap = 12.0;
constexpr double mark_size = 4.0;

/// From places of the section to pixels and back.
class Plot {
 public:
  Plot(QSize size, const PseudoSectionPicture& picture, const PseudoSectionView& view)
      : area_(pseudo_section_plot(size)),
        picture_(picture),
        view_(view),
        upward_(picture.period_up && facts_of(picture.section.quantity).axis == SectionAxis::period) {}

  [[nodiscard]] const QRectF& area() const { return area_; }
  [[nodiscard]] double x(double place) const {
    const double share = (place - picture_.across.lower) / (picture_.across.upper - picture_.across.lower);
    return area_.left() + area_.width() * view_.across.to_view(share);
  }
  [[nodiscard]] double y(double height) const {
    const double share =
        (height - picture_.heights.lower) / (picture_.heights.upper - picture_.heights.lower);
    return area_.top() + area_.height() * view_.down.to_view(upward_ ? 1.0 - share : share);
  }
  [[nodiscard]] double place_at(double x) const {
    const double share = view_.across.from_view((x - area_.left()) / area_.width());
    return std::lerp(picture_.across.lower, picture_.across.upper, share);
  }
  [[nodiscard]] double height_at(double y) const {
    const double share = view_.down.from_view((y - area_.top()) / area_.height());
    return std::lerp(picture_.heights.lower, picture_.heights.upper, upward_ ? 1.0 - share : share);
  }
  [[nodiscard]] bool shows(const SectionColumn& column) const {
    return x(column.across.upper) >= area_.left() && x(column.across.lower) <= area_.right();
  }

 private:
  QRectF area_;
  const PseudoSectionPicture& picture_;
  const PseudoSectionView& view_;
  bool upward_;
};

int whole_pixel(double place) {
  constexpr double far_off = 1e6;
  return static_cast<int>(std::lround(std::clamp(place, -far_off, far_off)));
}

struct Run {
  int top = 0;
  int bottom = 0;
  graph::Colour colour;
};

/// Corners are on whole pixels, so that neighbours meet without a seam; neighbours of one colour are drawn as
/// one.
void paint_cells(QPainter& painter, const PseudoSectionPicture& picture, const Plot& plot) {
  for (const SectionColumn& column : picture.section.columns) {
    if (!plot.shows(column)) {
      continue;
    }
    const int left = whole_pixel(plot.x(column.across.lower));
    const int width = std::max(whole_pixel(plot.x(column.across.upper)) - left, 1);
    std::optional<Run> run;
    const auto finish = [&] {
      if (run) {
        painter.fillRect(left, run->top, width, run->bottom - run->top, graph::to_qt(run->colour));
      }
    };
    for (const SectionCell& cell : column.cells) {
      const int one = whole_pixel(plot.y(cell.heights.lower));
      const int other = whole_pixel(plot.y(cell.heights.upper));
      const Run next{std::min(one, other), std::max(one, other), picture.scale.colour_of(cell.value)};
      if (run && next.colour == run->colour && (next.top == run->bottom || next.bottom == run->top)) {
        run->top = std::min(run->top, next.top);
        run->bottom = std::max(run->bottom, next.bottom);
      } else if (next.bottom > next.top) {
        finish();
        run = next;
      }
    }
    finish();
  }
}

/// Pixels from point to point, the usual ones across and down.
std::array<double, 2> spacing_of(const PseudoSectionPicture& picture, const Plot& plot) {
  std::vector<double> across;
  std::vector<double> down;
  for (const SectionColumn& column : picture.section.columns) {
    across.push_back(plot.x(column.across.upper) - plot.x(column.across.lower));
    for (std::size_t i = 0; i + 1 < column.points.size(); ++i) {
      const double distance = std::abs(plot.y(column.points[i + 1].height) - plot.y(column.points[i].height));
      if (std::isfinite(distance)) {
        down.push_back(distance);
      }
    }
  }
  constexpr double of_one = 40.0;
  return {median(std::move(across), of_one), median(std::move(down), of_one)};
}

void paint_ellipses(QPainter& painter, const PseudoSectionPicture& picture, const Plot& plot) {
  constexpr double share_of_spacing = 0.47;
  constexpr double rows_in_height = 1.5;  // soundings are dense in period: ellipses may lie over one another
  constexpr double least_radius = 2.5;
  constexpr double largest_radius = 28.0;
  const auto [across, down] = spacing_of(picture, plot);
  const double radius =
      std::clamp(share_of_spacing * std::min(across, rows_in_height * down), least_radius, largest_radius);
  EllipseCloud cloud(painter, plot.area(), radius);
  for (const SectionColumn& column : picture.section.columns) {
    const double x = plot.x(column.x);
    if (x < plot.area().left() - radius || x > plot.area().right() + radius) {
      continue;
    }
    for (const SectionPoint& point : column.points) {
      const double y = plot.y(point.height);
      if (point.tensor != nullptr && y > plot.area().top() - radius && y < plot.area().bottom() + radius) {
        cloud.add(*point.tensor, {x, y}, picture.scale.colour_of(point.value));
      }
    }
  }
  cloud.finish();
}

/// Places for the values of contour lines: on the lines, within the plot, and clear of one another.
class LabelPlaces {
 public:
  LabelPlaces(const QRectF& area, const QFontMetricsF& metrics) : area_(area), metrics_(metrics) {}

  void add(const QString& text, const QPointF& centre) {
    constexpr double room = 2.0;
    const QSizeF size(metrics_.horizontalAdvance(text) + 2.0 * room, metrics_.height());
    const QRectF place(centre - QPointF(size.width() / 2.0, size.height() / 2.0), size);
    const auto is_near = [&](const Label& other) {
      constexpr double same_line = 170.0;  // pixels from one value of a line to its next
      return other.place.intersects(place) ||
             (other.text == text && QLineF(other.place.center(), centre).length() < same_line);
    };
    if (area_.contains(place) && std::ranges::none_of(labels_, is_near)) {
      labels_.push_back({text, place});
    }
  }
  void paint(QPainter& painter) const {
    painter.setPen(QColor(20, 20, 20));
    for (const Label& label : labels_) {
      painter.fillRect(label.place, QColor(255, 255, 255, 200));
      painter.drawText(label.place, Qt::AlignCenter, label.text);
    }
  }

 private:
  struct Label {
    QString text;
    QRectF place;
  };
  QRectF area_;
  QFontMetricsF metrics_;
  std::vector<Label> labels_;
};

void paint_contours(QPainter& painter, const PseudoSectionPicture& picture, const Plot& plot) {
  const QuantityFacts& facts = facts_of(picture.section.quantity);
  QList<QLineF> lines;
  LabelPlaces labels(plot.area(), QFontMetricsF(painter.font()));
  const auto levels = contour_levels({picture.scale.lower, picture.scale.upper});
  QStringList texts;
  for (const double level : levels) {
    texts.append(QString::fromStdString(range_text(facts, level)));
  }
  for (const ContourPiece& piece : contour_lines(picture.section, levels)) {
    const QLineF line(plot.x(piece.x1), plot.y(piece.height1), plot.x(piece.x2), plot.y(piece.height2));
    lines.append(line);
    labels.add(texts[static_cast<qsizetype>(piece.level)], line.center());
  }
  painter.setPen(QPen(QColor(20, 20, 20), 0.8));
  painter.drawLines(lines);
  labels.paint(painter);
}

/// Dots where data are, with white around them to be seen on any colour; crosses where they are masked.
void paint_points(QPainter& painter, const PseudoSectionPicture& picture, const Plot& plot) {
  const QuantityFacts& facts = facts_of(picture.section.quantity);
  constexpr double dense = 7.0;  // pixels from point to point
  const auto [across, down] = spacing_of(picture, plot);
  const bool small = std::min(across, down) < dense;
  const double arm = small ? 1.5 : 3.0;
  QList<QPointF> dots;
  QList<QLineF> crosses;
  for (const SectionColumn& column : picture.section.columns) {
    if (!plot.shows(column)) {
      continue;
    }
    const double x = plot.x(column.x);
    for (const SectionPoint& point : column.points) {
      const double y = plot.y(point.height);
      if (!std::isfinite(y) || (point.counts && facts.ellipses)) {
        continue;
      }
      if (point.counts) {
        dots.append({x, y});
      } else if (!picture.hide_masked) {
        crosses.append({x - arm, y - arm, x + arm, y + arm});
        crosses.append({x - arm, y + arm, x + arm, y - arm});
      }
    }
  }
  if (!small) {
    painter.setPen(QPen(Qt::white, 4.0, Qt::SolidLine, Qt::RoundCap));
    painter.drawPoints(dots.constData(), static_cast<int>(dots.size()));
  }
  painter.setPen(QPen(QColor(30, 30, 30), small ? 1.0 : 2.0, Qt::SolidLine, Qt::RoundCap));
  painter.drawPoints(dots.constData(), static_cast<int>(dots.size()));
  painter.setPen(QPen(QColor(120, 120, 120), 1.0));
  painter.drawLines(crosses);
}

void paint_rings(QPainter& painter, const PseudoSectionPicture& picture, const Plot& plot) {
  constexpr double radius = 6.0;
  painter.setBrush(Qt::NoBrush);
  for (const SectionColumn& column : picture.section.columns) {
    for (const SectionPoint& point : column.points) {
      if (std::ranges::binary_search(
              picture.ringed, RingedPoint{column.station_index, static_cast<float>(point.frequency)})) {
        for (const auto& [colour, width] :
             {std::pair(QColor(Qt::white), 4.0), std::pair(QColor(Qt::black), 2.0)}) {
          painter.setPen(QPen(colour, width));
          painter.drawEllipse(QPointF(plot.x(column.x), plot.y(point.height)), radius, radius);
        }
      }
    }
  }
}

void paint_frame(QPainter& painter, const PseudoSectionPicture& picture, const Plot& plot) {
  for (const SectionColumn& column : picture.section.columns) {
    if (picture.framed && column.station_index == *picture.framed) {
      const double left = std::round(plot.x(column.across.lower));
      const double right = std::max(std::round(plot.x(column.across.upper)), left + 3.0);
      painter.setBrush(Qt::NoBrush);
      painter.setPen(QPen(Qt::white, 4.0));
      const QRectF frame(left, plot.area().top() + 1.5, right - left, plot.area().height() - 3.0);
      painter.drawRect(frame);
      painter.setPen(QPen(QColor(200, 0, 110), 2.0));
      painter.drawRect(frame);
    }
  }
}

/// A triangle above each station, and the names that have room.
void paint_stations(QPainter& painter, const PseudoSectionPicture& picture, const Plot& plot) {
  const QFontMetricsF metrics(painter.font());
  constexpr double gap = 8.0;
  const double ground = plot.area().top();
  double used = -1e9;
  double marked = -1e9;
  painter.setPen(Qt::black);
  painter.setBrush(Qt::black);
  for (const SectionColumn& column : picture.section.columns) {
    const double x = plot.x(column.x);
    if (x < plot.area().left() - 1.0 || x > plot.area().right() + 1.0) {
      continue;
    }
    if (x - marked >= 2.0) {  // closer ones would be one black bar
      painter.drawPolygon(QPolygonF({QPointF(x, ground), QPointF(x - mark_size, ground - 1.6 * mark_size),
                                     QPointF(x + mark_size, ground - 1.6 * mark_size)}));
      marked = x;
    }
    constexpr double longest = 90.0;
    const QString name = metrics.elidedText(
        QString::fromStdString(column.name.empty() ? plain_text(column.station) : column.name),
        Qt::ElideRight, longest);
    const double width = metrics.horizontalAdvance(name);
    const double left = std::min(x - width / 2.0, plot.area().right() - width);  // not into the bar's unit
    if (left >= used + gap) {
      used = left + width;
      painter.drawText(QPointF(left, ground - 1.6 * mark_size - 4.0), name);
    }
  }
}

/// Marks at the powers of ten; within few of them at 2 and 5, too.
std::vector<graph::PictureTick> height_ticks(const Plot& plot) {
  constexpr double least_distance = 15.0;
  constexpr double few = 3.0;  // powers
  const double one = plot.height_at(plot.area().top());
  const double other = plot.height_at(plot.area().bottom());
  const double lower = std::min(one, other);
  const double upper = std::max(one, other);
  const bool by_steps = upper - lower < few;
  std::vector<graph::PictureTick> ticks;
  for (int exponent = static_cast<int>(std::floor(lower)); exponent <= upper; ++exponent) {
    const double power = exponent;
    for (const double step : {1.0, 2.0, 5.0}) {
      const double height = power + std::log10(step);
      if ((step == 1.0 || by_steps) && height >= lower - 1e-9 && height <= upper + 1e-9) {
        const double value = step * std::pow(10.0, power);
        ticks.push_back({plot.y(height), QString::fromStdString(plain_text(static_cast<float>(value)))});
      }
    }
  }
  if (ticks.size() < 2) {  // far inside one step
    ticks.clear();
    for (const double height : {lower + 0.1 * (upper - lower), upper - 0.1 * (upper - lower)}) {
      constexpr double digits = 1e3;
      const double power = std::pow(10.0, std::floor(height)) / digits;
      const double value = std::round(std::pow(10.0, height) / power) * power;
      ticks.push_back({plot.y(height), QString::fromStdString(plain_text(static_cast<float>(value)))});
    }
  }
  std::ranges::sort(ticks, {}, &graph::PictureTick::at);
  return graph::ticks_with_room(ticks, least_distance);
}

/// The numbers of the stations that have room.
std::vector<graph::PictureTick> station_ticks(const QPainter& painter, const PseudoSectionPicture& picture,
                                              const Plot& plot) {
  const QFontMetricsF metrics(painter.font());
  constexpr double gap = 10.0;
  double widest = 0.0;
  std::vector<graph::PictureTick> ticks;
  for (const SectionColumn& column : picture.section.columns) {
    const double x = plot.x(column.x);
    if (x >= plot.area().left() && x <= plot.area().right()) {
      ticks.push_back({x, QString::fromStdString(plain_text(column.station))});
      widest = std::max(widest, metrics.horizontalAdvance(ticks.back().label));
    }
  }
  return graph::ticks_with_room(ticks, widest + gap);
}

void paint_axes(QPainter& painter, const PseudoSectionPicture& picture, const Plot& plot) {
  const QRectF& area = plot.area();
  painter.setPen(Qt::black);
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(area);
  const auto ticks =
      picture.in_order ? station_ticks(painter, picture, plot)
                       : graph::even_ticks(painter, plot.place_at(area.left()), plot.place_at(area.right()),
                                           area.width(), false, [&](double place) { return plot.x(place); });
  graph::draw_bottom_axis(painter, area, ticks, picture.x_title);
  graph::draw_left_axis(
      painter, area, height_ticks(plot),
      facts_of(picture.section.quantity).axis == SectionAxis::depth ? "Depth (m)" : "Period (s)");
}

void paint_scale(QPainter& painter, const PseudoSectionPicture& picture, const QRectF& plot) {
  const QuantityFacts& facts = facts_of(picture.section.quantity);
  const QRectF bar(plot.right() + bar_gap, plot.top(), scale_bar_width, plot.height());
  draw_scale_bar(painter, bar, picture.scale, QString::fromStdString(std::string(facts.unit)),
                 facts.is_logarithmic() ? ScaleNumbers::powers : ScaleNumbers::plain);
}

void paint_title(QPainter& painter, QSize size, const PseudoSectionPicture& picture) {
  painter.save();
  QFont font = painter.font();
  constexpr int title_pixels = 13;
  font.setPixelSize(title_pixels);
  painter.setFont(font);
  QString title = picture.title;
  if (facts_of(picture.section.quantity).ellipses) {
    title += " (north up)";
  }
  const QRectF place(8.0, 2.0, size.width() - 16.0, 20.0);
  painter.drawText(place, Qt::AlignCenter,
                   QFontMetricsF(font).elidedText(title, Qt::ElideMiddle, place.width()));
  painter.restore();
}

}  // namespace

void show_whole(PseudoSectionPicture& picture) {
  picture.across = picture.section.across.value_or(SectionRange{});
  picture.heights = picture.section.heights.value_or(SectionRange{});
}

QRectF pseudo_section_plot(QSize picture) {
  return {left_margin, top_margin, std::max(picture.width() - left_margin - bar_gap - scale_bar_room, 1.0),
          std::max(picture.height() - top_margin - bottom_margin, 1.0)};
}

void paint_pseudo_section(QPainter& painter, QSize size, const PseudoSectionPicture& picture,
                          const PseudoSectionView& view) {
  painter.save();
  painter.fillRect(QRect(QPoint(0, 0), size), Qt::white);
  graph::use_picture_style(painter);
  paint_title(painter, size, picture);
  if (picture.section.empty()) {
    painter.drawText(QRectF(QPointF(12.0, 24.0), QSizeF(size.width() - 24.0, size.height() - 30.0)),
                     Qt::AlignCenter | Qt::TextWordWrap, picture.note);
    painter.restore();
    return;
  }
  const Plot plot(size, picture, view);
  painter.save();
  painter.setClipRect(plot.area());
  if (facts_of(picture.section.quantity).ellipses) {
    paint_ellipses(painter, picture, plot);
  } else {
    paint_cells(painter, picture, plot);
  }
  if (picture.contours && !facts_of(picture.section.quantity).ellipses) {
    paint_contours(painter, picture, plot);
  }
  if (picture.points) {
    paint_points(painter, picture, plot);
  }
  if (!picture.ringed.empty()) {
    paint_rings(painter, picture, plot);
  }
  paint_frame(painter, picture, plot);
  painter.restore();
  painter.setRenderHint(QPainter::Antialiasing);
  paint_axes(painter, picture, plot);
  paint_stations(painter, picture, plot);
  paint_scale(painter, picture, plot.area());
  painter.restore();
}

PseudoSectionPlace pseudo_section_place(QSize size, const PseudoSectionPicture& picture,
                                        const PseudoSectionView& view, QPointF at) {
  const Plot plot(size, picture, view);
  if (picture.section.empty() || !plot.area().contains(at)) {
    return {};
  }
  const double x = plot.place_at(at.x());
  const auto column = std::ranges::find_if(picture.section.columns, [x](const SectionColumn& candidate) {
    return candidate.across.lower <= x && x < candidate.across.upper;
  });
  if (column == picture.section.columns.end()) {
    return {};
  }
  const double height = plot.height_at(at.y());
  const SectionPoint* const point = nearest_point(*column, height);
  if (point == nullptr) {
    return {&*column, nullptr};
  }
  constexpr double at_point = 8.0;  // pixels
  const auto [across, down] = spacing_of(picture, plot);
  const bool near = std::abs(plot.y(point->height) - at.y()) <= std::max(at_point, 0.75 * down);
  return {&*column, near ? point : nullptr};
}

QPointF pseudo_section_pixel(QSize size, const PseudoSectionPicture& picture, const PseudoSectionView& view,
                             const SectionColumn& column, const SectionPoint& point) {
  const Plot plot(size, picture, view);
  return {plot.x(column.x), plot.y(point.height)};
}

}  // namespace Module_tensor
