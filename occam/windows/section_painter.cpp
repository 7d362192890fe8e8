#include "occam/windows/section_painter.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPolygonF>
#include <algorithm>
#include <array>
#include <cmath>

#include "core/number_text.h"
#include "occam/windows/short_site_name.h"
#include "platform/graph/picture_axes.h"

namespace Module_occam {

namespace {

constexpr double colour_bar_width = 14.0;
constexpr const char* resistivity_title = "log10  ohm-m";
constexpr const char* fading_entry = "pale: data\nsay little";
constexpr double mark_size = 5.0;

/// From pixels of the geometry to those of the drawing.
class ZoomedPlot {
 public:
  ZoomedPlot(const SectionGeometry& geometry, const SectionZoom& zoom)
      : plot_(plot_area(geometry.picture)), stretch_(stretch_of(geometry, plot_)), zoom_(zoom) {}

  [[nodiscard]] double x(double home) const {
    return plot_.left() + plot_.width() * zoom_.across.to_view((home - plot_.left()) / plot_.width());
  }
  [[nodiscard]] double y(double home) const {
    return plot_.top() +
           plot_.height() * zoom_.down.to_view((home - plot_.top()) * stretch_ / plot_.height());
  }
  [[nodiscard]] QPointF home(QPointF at) const {
    return {plot_.left() + plot_.width() * zoom_.across.from_view((at.x() - plot_.left()) / plot_.width()),
            plot_.top() +
                plot_.height() / stretch_ * zoom_.down.from_view((at.y() - plot_.top()) / plot_.height())};
  }
  [[nodiscard]] const QRectF& plot() const { return plot_; }

 private:
  /// The scale of the geometry follows the node lines; the plot ends at the depth asked for.
  static double stretch_of(const SectionGeometry& geometry, const QRectF& plot) {
    const double end = geometry.mapping.to_y(geometry.end_depth) - plot.top();
    return end > 0.0 ? plot.height() / end : 1.0;
  }

  QRectF plot_;
  double stretch_;
  const SectionZoom& zoom_;
};

/// The corners of a block on whole pixels, so that neighbours meet without a seam.
QRect pixels_of(const SectionRectangle& block, const ZoomedPlot& plot) {
  const auto pixel = [](double place) {
    constexpr double far_off = 1e6;
    return static_cast<int>(std::lround(std::clamp(place, -far_off, far_off)));
  };
  const QPoint corner(pixel(plot.x(block.left)), pixel(plot.y(block.top)));
  const QPoint end(pixel(plot.x(block.right)), pixel(plot.y(block.bottom)));
  return {corner, QSize(std::max(end.x() - corner.x(), 1), std::max(end.y() - corner.y(), 1))};
}

/// The colour of a block; of one that the data don't see, only a trace.
QColor faded(const QColor& colour, double visibility) {
  constexpr double trace = 0.08;
  const double kept = trace + (1.0 - trace) * std::clamp(visibility, 0.0, 1.0);
  const auto mixed = [kept](int part) { return static_cast<int>(std::lround(255.0 + kept * (part - 255))); };
  return {mixed(colour.red()), mixed(colour.green()), mixed(colour.blue())};
}

QColor colour_of(const SectionRectangle& block, const SectionPicture& picture, const QColor& colour) {
  const auto parameter = static_cast<std::size_t>(block.parameter_number) - 1;
  return parameter < picture.visibility.size() ? faded(colour, picture.visibility[parameter]) : colour;
}

void paint_blocks(QPainter& painter, const SectionPicture& picture, const ZoomedPlot& plot) {
  std::array<QColor, 256> colours;
  std::ranges::transform(picture.palette, colours.begin(), graph::to_qt);
  const QRect visible = plot.plot().toAlignedRect();
  QList<QRect> outlines;
  painter.save();
  painter.setClipRect(plot.plot());
  for (const SectionRectangle& block : picture.geometry.rectangles) {
    const QRect place = pixels_of(block, plot);
    if (!place.intersects(visible)) {
      continue;
    }
    painter.fillRect(place, colour_of(block, picture, colours[block.colour]));
    if (picture.draw_mesh) {
      outlines.append(place);
    }
  }
  painter.setBrush(Qt::NoBrush);
  painter.drawRects(outlines);
  painter.restore();
}

/// The usual marks of a logarithmic scale: 0, then 1, 2, 5 times the powers of ten.
/// @param unit  of the labels, m
std::vector<graph::PictureTick> decade_ticks(const SectionGeometry& geometry, const ZoomedPlot& plot,
                                             double unit) {
  constexpr double min_distance = 18.0;
  constexpr int decades = 7;  // to 10 000 km
  std::vector<graph::PictureTick> ticks;
  const auto add = [&](double depth) {
    const double at = plot.y(geometry.mapping.to_y(depth));
    if (at >= plot.plot().top() - 0.5 && at <= plot.plot().bottom() + 0.5) {
      ticks.push_back({at, QString::fromStdString(plain_text(depth / unit))});
    }
  };
  add(0.0);
  double decade = 1.0;
  for (int i = 0; i < decades; ++i, decade *= 10.0) {
    for (const double step : {1.0, 2.0, 5.0}) {
      add(decade * step);
    }
  }
  return graph::ticks_with_room(ticks, min_distance);
}

void paint_axes(QPainter& painter, const SectionGeometry& geometry, const ZoomedPlot& plot) {
  const QRectF& area = plot.plot();
  const SectionMapping& mapping = geometry.mapping;
  const QPointF first = plot.home(area.topLeft());
  const QPointF last = plot.home(area.bottomRight());
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(area);
  graph::draw_bottom_axis(
      painter, area,
      graph::even_ticks(painter, mapping.distance_at(first.x()), mapping.distance_at(last.x()), area.width(),
                        false, [&](double distance) { return plot.x(mapping.to_x(distance)); }),
      "Distance along the line (m)");
  constexpr double deep = 10000.0;  // metres of five digits would run into the title
  constexpr double kilometre = 1000.0;
  const bool in_kilometres = mapping.depth_at(last.y()) >= deep;
  const double unit = in_kilometres ? kilometre : 1.0;
  graph::draw_left_axis(
      painter, area,
      mapping.block_height > 0.0
          ? decade_ticks(geometry, plot, unit)
          : graph::even_ticks(painter, mapping.depth_at(first.y()) / unit, mapping.depth_at(last.y()) / unit,
                              area.height(), true,
                              [&](double depth) { return plot.y(mapping.to_y(depth * unit)); }),
      in_kilometres ? "Depth (km)" : "Depth (m)");
}

/// Marks all sites; names are in two rows as far as there is room.
void paint_sites(QPainter& painter, const SectionGeometry& geometry, const OccamData& sites,
                 const ZoomedPlot& plot) {
  constexpr double gap = 6.0;
  QStringList names;
  for (const std::string& name : sites.site_names) {
    names.append(short_site_name(name));
  }
  const QFontMetricsF metrics(painter.font());
  const double ground = plot.plot().top();
  std::array<double, 2> used = {-1e9, -1e9};  // how far the names of each row reach, the lower row first
  for (int site = 0; site < sites.site_count(); ++site) {
    const auto offset = static_cast<double>(sites.site_offsets[static_cast<std::size_t>(site)]);
    const double x = plot.x(geometry.mapping.to_x(offset));
    if (x < plot.plot().left() - 1.0 || x > plot.plot().right() + 1.0) {
      continue;
    }
    painter.setBrush(Qt::black);
    painter.drawPolygon(QPolygonF({QPointF(x, ground), QPointF(x - mark_size, ground - 2.0 * mark_size),
                                   QPointF(x + mark_size, ground - 2.0 * mark_size)}));
    const double width = metrics.horizontalAdvance(names[site]);
    for (std::size_t row = 0; row < used.size(); ++row) {
      if (x - width / 2.0 < used[row] + gap) {
        continue;
      }
      used[row] = x + width / 2.0;
      const double baseline = ground - 2.0 * mark_size - 3.0 - static_cast<double>(row) * metrics.height();
      painter.drawText(QPointF(x - width / 2.0, baseline), names[site]);
      break;
    }
  }
}

/// Beside the lower end of the colour bar: what pale colours mean.
void paint_fading_entry(QPainter& painter, const SectionPicture& picture, const QRectF& bar) {
  const QRectF patch(bar.left(), bar.bottom() + 8.0, bar.width(), end_frame - 14.0);
  const QColor full = graph::to_qt(picture.palette[graph::last_palette_entry]);
  for (int row = 0; row < static_cast<int>(patch.height()); ++row) {
    painter.fillRect(QRectF(patch.left(), patch.top() + row, patch.width(), 1.0),
                     faded(full, 1.0 - row / patch.height()));
  }
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(patch);
  painter.drawText(QRectF(patch.right() + 4.0, patch.top() - 2.0, 0.0, patch.height() + 4.0),
                   Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip, fading_entry);
}

/// Even marks; those of resistivities with log10 and, beside it, the resistivity itself.
std::vector<graph::PictureTick> bar_ticks(const QPainter& painter, const QRectF& bar,
                                          const SectionPicture& picture) {
  const double lower = picture.choices.min_res;
  const double length = picture.choices.max_res - lower;
  std::vector<graph::PictureTick> ticks =
      graph::even_ticks(painter, lower, lower + length, bar.height(), true,
                        [&](double value) { return bar.bottom() - bar.height() * (value - lower) / length; });
  if (picture.quantity.is_resistivity) {
    for (graph::PictureTick& tick : ticks) {
      constexpr int digits = 3;
      const double value = lower + length * (bar.bottom() - tick.at) / bar.height();
      const double rounded = QString::number(std::pow(10.0, value), 'g', digits).toDouble();
      tick.label += "  " + QString::fromStdString(plain_text(rounded));
    }
  }
  return ticks;
}

}  // namespace

PictureSize section_part(QSize drawing) {
  // The widest that labels of resistivities, and the title, can be; a section keeps its width whatever the
  // range of its colours.
  const double labels = graph::colour_bar_room(QFontMetricsF(graph::picture_font(QGuiApplication::font())),
                                               {"-10.00  5.62E-10", resistivity_title});
  const double beside_frame = colour_bar_width + labels - side_frame / 2.0;
  return {std::max(drawing.width() - beside_frame, 2.0 * side_frame + 1.0),
          std::max(static_cast<double>(drawing.height()), 2.0 * end_frame + 1.0)};
}

QRectF plot_area(PictureSize picture) {
  return {side_frame, end_frame, std::max(picture.width - 2.0 * side_frame, 1.0),
          std::max(picture.height - 2.0 * end_frame, 1.0)};
}

void paint_section(QPainter& painter, const SectionPicture& picture, const OccamData& sites,
                   const SectionZoom& zoom) {
  const SectionGeometry& geometry = picture.geometry;
  const ZoomedPlot plot(geometry, zoom);
  graph::use_picture_style(painter);
  if (geometry.rectangles.empty()) {
    painter.drawText(plot.plot(), Qt::AlignCenter | Qt::TextWordWrap, picture.note);
    return;
  }
  paint_blocks(painter, picture, plot);
  painter.setRenderHint(QPainter::Antialiasing);
  paint_axes(painter, geometry, plot);
  paint_sites(painter, geometry, sites, plot);
  const QRectF bar(geometry.picture.width - side_frame / 2.0, plot.plot().top(), colour_bar_width,
                   plot.plot().height());
  graph::draw_colour_bar(painter, bar, picture.palette, bar_ticks(painter, bar, picture),
                         picture.quantity.is_resistivity ? QString(resistivity_title)
                                                         : QString::fromStdString(picture.quantity.unit));
  if (!picture.visibility.empty()) {
    paint_fading_entry(painter, picture, bar);
  }
  painter.setRenderHint(QPainter::Antialiasing, false);
}

std::string section_text(const SectionPicture& picture, const OccamData& sites, const SectionZoom& zoom,
                         QPointF at) {
  constexpr double at_mark = 6.0;  // pixels
  const ZoomedPlot plot(picture.geometry, zoom);
  if (picture.geometry.rectangles.empty() || !plot.plot().contains(at)) {
    return {};
  }
  const QPointF home = plot.home(at);
  const SectionMapping& mapping = picture.geometry.mapping;
  const SectionRectangle* const block = picture.geometry.at(home.x(), home.y());
  std::string text = "Distance " + format_number(mapping.distance_at(home.x()), "0.0") + " m   Depth " +
                     format_number(mapping.depth_at(home.y()), "0.0") + " m   " + picture.quantity.name + " ";
  if (block == nullptr) {
    text += "NA";
  } else {
    const auto value = static_cast<double>(block->value);
    text += format_number(value, "0.00") + " " + picture.quantity.unit;
    if (picture.quantity.is_resistivity) {
      text += " (" + format_number(std::pow(10.0, value), "0.00") + " ohm-m)";
    }
  }
  for (int site = 0; site < sites.site_count(); ++site) {
    const auto offset = static_cast<double>(sites.site_offsets[static_cast<std::size_t>(site)]);
    if (std::abs(plot.x(mapping.to_x(offset)) - at.x()) <= at_mark) {
      return text + "   Site " + sites.site_names[static_cast<std::size_t>(site)] + " at " +
             format_number(offset, "0.0") + " m";
    }
  }
  return text;
}

}  // namespace Module_occam
