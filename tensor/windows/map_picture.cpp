#include "tensor/windows/map_picture.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/number_text.h"
#include "platform/graph/picture_axes.h"
#include "tensor/glyphs.h"
#include "tensor/windows/glyph_painter.h"
#include "tensor/windows/graticule_painter.h"
#include "tensor/windows/map_legend.h"
#include "tensor/windows/map_names.h"

namespace Module_tensor {

namespace {

constexpr double heading_height = 22.0;
constexpr double left_room = 76.0;
constexpr double bottom_room = 36.0;
constexpr double fit_margin = 48.0;  // for the glyphs of the outermost sites and their names
constexpr int outline_points = 48;
constexpr double dot_radius = 2.0;
constexpr double current_gap = 4.0;  // between a glyph and the ring of the station that is shown

constexpr QColor outline_colour(40, 40, 40);
constexpr QColor uncertain_colour(165, 165, 165);
constexpr QColor no_value_colour(150, 150, 150);
constexpr QColor name_colour(60, 60, 60);
constexpr QColor frame_colour(120, 120, 120);

/// Everything that the parts of the painting share.
struct Drawing {
  QPainter& painter;
  const MapContents& contents;
  QRectF plot;
  PlanFrame frame;
  std::vector<QPointF> places;      // of all sites
  std::vector<std::size_t> within;  // sites whose glyphs can be seen
  double radius = 0.0;              // of ellipses
  std::vector<QRectF> taken;        // by what no name may cover

  /// Pixels around a site that its glyph takes.
  [[nodiscard]] double reach(std::size_t index) const {
    return contents.look.ellipses && contents.values[index].phase_tensor ? radius : dot_radius;
  }
};

std::vector<QPointF> places_of(const MapContents& contents, const PlanFrame& frame, const QRectF& plot) {
  const FrameSize size{plot.width(), plot.height()};
  std::vector<QPointF> places;
  places.reserve(contents.map.sites.size());
  for (const MapSite& site : contents.map.sites) {
    const PicturePlace place = to_picture(frame, size, site.east, site.north);
    places.emplace_back(plot.left() + place.x, plot.top() + place.y);
  }
  return places;
}

void paint_ellipses(const Drawing& drawing) {
  const MapContents& contents = drawing.contents;
  for (const std::size_t index : drawing.within) {
    const auto& tensor = contents.values[index].phase_tensor;
    if (!tensor) {
      continue;
    }
    std::vector<GlyphPoint> outline = ellipse_outline(*tensor, outline_points);
    for (GlyphPoint& point : outline) {
      point = turned_clockwise(point, contents.map.sites[index].true_north);
    }
    const auto filled = fill_value(*tensor, contents.look.fill);
    const QBrush brush = filled.has_value()
                             ? QBrush(graph::to_qt(contents.look.scale.colour_of(filled.value)))
                             : QBrush(Qt::NoBrush);
    drawing.painter.setPen(QPen(is_uncertain(*tensor) ? uncertain_colour : outline_colour, 1.0));
    paint_ellipse(drawing.painter, outline, drawing.places[index], drawing.radius, brush);
  }
}

void paint_arrows(const Drawing& drawing) {
  const MapLook& look = drawing.contents.look;
  const double pixels = arrow_pixels(look);
  drawing.painter.setPen(QPen(Qt::black, arrow_width));
  for (const std::size_t index : drawing.within) {
    const SiteValues& values = drawing.contents.values[index];
    const double north = drawing.contents.map.sites[index].true_north;
    const auto paint = [&](const numerics::impedance::Arrow& arrow, const QColor& colour) {
      const auto [tip, is_cut] = limited_tip({arrow.east, arrow.north});
      paint_arrow(drawing.painter, drawing.places[index],
                  turned_clockwise({pixels * tip[0], pixels * tip[1]}, north), colour,
                  is_cut ? Qt::DotLine : Qt::SolidLine);
    };
    if (look.imaginary_arrows && values.imaginary_arrow) {
      paint(*values.imaginary_arrow, imaginary_colour);
    }
    if (look.real_arrows && values.real_arrow) {
      paint(*values.real_arrow, real_colour);
    }
  }
}

void paint_dots(const Drawing& drawing) {
  for (const std::size_t index : drawing.within) {
    const bool has_values = drawing.contents.values[index].any();
    drawing.painter.setPen(has_values ? QPen(Qt::NoPen) : QPen(no_value_colour, 1.0));
    drawing.painter.setBrush(has_values ? QBrush(Qt::black) : QBrush(Qt::white));
    drawing.painter.drawEllipse(drawing.places[index], dot_radius, dot_radius);
  }
}

void paint_current(const Drawing& drawing) {
  const auto& sites = drawing.contents.map.sites;
  for (const std::size_t index : drawing.within) {
    if (drawing.contents.current == sites[index].station.StationID) {
      const double radius = current_gap + drawing.reach(index);
      drawing.painter.setBrush(Qt::NoBrush);
      drawing.painter.setPen(QPen(Qt::magenta, 2.0));
      drawing.painter.drawEllipse(drawing.places[index], radius, radius);
    }
  }
}

QString name_of(const StationTensor& station) {
  return QString::fromStdString(station.name.empty() ? plain_text(station.station) : station.name);
}

void paint_names(const Drawing& drawing) {
  constexpr double share = 0.8;  // of a glyph's box: its corners are mostly free
  constexpr double gap = 2.0;
  TakenRooms taken;
  std::ranges::for_each(drawing.taken, [&](const QRectF& room) { taken.take(room); });
  std::vector<NamedDot> dots;
  for (const std::size_t index : drawing.within) {
    const QPointF at = drawing.places[index];
    const bool is_current = drawing.contents.current == drawing.contents.map.sites[index].station.StationID;
    const double reach = drawing.reach(index) + (is_current ? current_gap : 0.0);
    const double half = share * reach;
    taken.take(QRectF(at.x() - half, at.y() - half, 2.0 * half, 2.0 * half));
    dots.push_back({at, reach + gap, name_of(drawing.contents.map.sites[index].station)});
  }
  drawing.painter.setPen(name_colour);
  for (const PlacedName& name :
       placed_names(dots, QFontMetricsF(drawing.painter.font()), drawing.plot, taken)) {
    drawing.painter.drawText(name.room, Qt::AlignCenter | Qt::TextDontClip, name.name);
  }
}

/// Of an axis: even marks in m, or in km where the plan is large.
void paint_axes(const Drawing& drawing) {
  const QRectF& plot = drawing.plot;
  const PlanFrame& frame = drawing.frame;
  constexpr double large = 20000.0;  // m
  const bool local = drawing.contents.map.source == Module_projections::PlaceSource::local;
  const double unit = plot.width() / frame.scale > large ? 1000.0 : 1.0;
  const QString unit_text = unit > 1.0 ? " (km)" : " (m)";
  const double half_width = 0.5 * plot.width() / frame.scale;
  const double half_height = 0.5 * plot.height() / frame.scale;
  drawing.painter.setPen(Qt::black);
  graph::draw_bottom_axis(
      drawing.painter, plot,
      graph::even_ticks(
          drawing.painter, (frame.east - half_width) / unit, (frame.east + half_width) / unit, plot.width(),
          false, [&](double value) { return plot.center().x() + (value * unit - frame.east) * frame.scale; }),
      (local ? "Local x" : "Easting") + unit_text);
  graph::draw_left_axis(
      drawing.painter, plot,
      graph::even_ticks(
          drawing.painter, (frame.north - half_height) / unit, (frame.north + half_height) / unit,
          plot.height(), true,
          [&](double value) { return plot.center().y() - (value * unit - frame.north) * frame.scale; }),
      (local ? "Local y" : "Northing") + unit_text);
  drawing.painter.setPen(frame_colour);
  drawing.painter.setBrush(Qt::NoBrush);
  drawing.painter.drawRect(plot);
}

void paint_heading(const Drawing& drawing, const QRectF& area) {
  const QString period = drawing.contents.frequency > 0.0
                             ? ": " + QString::fromStdString(period_text(drawing.contents.frequency))
                             : QString();
  const QRectF room(drawing.plot.left(), area.top(), drawing.plot.width(), heading_height);
  const QFontMetricsF metrics(drawing.painter.font());
  drawing.painter.setPen(Qt::black);
  drawing.painter.drawText(room, Qt::AlignCenter,
                           metrics.elidedText(QString::fromStdString(drawing.contents.heading) + period,
                                              Qt::ElideMiddle, room.width()));
}

/// Only the places of sites are known to be of a map system. @return what its numbers cover
std::vector<QRectF> paint_latitudes(const Drawing& drawing) {
  const SiteMap& map = drawing.contents.map;
  if (map.source != Module_projections::PlaceSource::sites) {
    return {};
  }
  const PlanFrame& frame = drawing.frame;
  const FrameSize size{drawing.plot.width(), drawing.plot.height()};
  const double half_width = 0.5 * size.width / frame.scale;
  const double half_height = 0.5 * size.height / frame.scale;
  const auto lines =
      Module_projections::graticule(map.parameters, {frame.east - half_width, frame.east + half_width,
                                                     frame.north - half_height, frame.north + half_height});
  return paint_graticule(drawing.painter, drawing.plot, lines, [&](const numerics::geodesy::MapPlace& place) {
    const PicturePlace at = to_picture(frame, size, place.easting, place.northing);
    return drawing.plot.topLeft() + QPointF(at.x, at.y);
  });
}

void paint_sites(const Drawing& drawing) {
  drawing.painter.setClipRect(drawing.plot);
  drawing.painter.setRenderHint(QPainter::Antialiasing);
  if (drawing.contents.look.ellipses) {
    paint_ellipses(drawing);
  }
  paint_dots(drawing);
  paint_arrows(drawing);
  paint_current(drawing);
  if (drawing.contents.look.names) {
    paint_names(drawing);
  }
}

}  // namespace

QRectF map_area(const QRectF& picture) {
  constexpr double least = 1.0;
  return {picture.left() + left_room, picture.top() + heading_height,
          std::max(picture.width() - left_room - legend_room, least),
          std::max(picture.height() - heading_height - bottom_room, least)};
}

FrameSize frame_size(const QRectF& picture) {
  const QRectF plot = map_area(picture);
  return {plot.width(), plot.height()};
}

PlanFrame shown_frame(const MapContents& contents, const QRectF& area) {
  return contents.frame.value_or(fitted_frame(contents.map.sites, frame_size(area), fit_margin));
}

double ellipse_radius(const MapContents& contents, const PlanFrame& frame) {
  constexpr double share = 0.48;  // of the spacing: neighbours don't touch
  constexpr double least = 6.0;
  constexpr double largest = 26.0;
  const double spacing = contents.map.spacing * frame.scale;
  return contents.look.ellipse_size * (spacing > 0.0 ? std::clamp(share * spacing, least, largest) : largest);
}

std::optional<std::size_t> site_at(const MapContents& contents, const QRectF& area, QPointF at) {
  const QRectF plot = map_area(area);
  if (!plot.contains(at)) {
    return std::nullopt;
  }
  const PlanFrame frame = shown_frame(contents, area);
  constexpr double least_reach = 10.0;
  double nearest = std::max(least_reach, contents.look.ellipses ? ellipse_radius(contents, frame) : 0.0);
  std::optional<std::size_t> found;
  const std::vector<QPointF> places = places_of(contents, frame, plot);
  for (std::size_t i = 0; i < places.size(); ++i) {
    const double distance = std::hypot(places[i].x() - at.x(), places[i].y() - at.y());
    if (distance < nearest) {
      nearest = distance;
      found = i;
    }
  }
  return found;
}

void paint_map(QPainter& painter, const QRectF& area, const MapContents& contents) {
  painter.save();
  graph::use_picture_style(painter);
  if (contents.map.sites.empty()) {
    painter.drawText(area.adjusted(8.0, 0.0, -8.0, 0.0), Qt::AlignCenter | Qt::TextWordWrap,
                     QString::fromStdString(contents.note));
    painter.restore();
    return;
  }
  Drawing drawing{painter, contents, map_area(area), shown_frame(contents, area), {}, {}, 0.0, {}};
  drawing.places = places_of(contents, drawing.frame, drawing.plot);
  drawing.radius = ellipse_radius(contents, drawing.frame);
  const double reach = std::max(drawing.radius, arrow_pixels(contents.look));
  const QRectF seen = drawing.plot.adjusted(-reach, -reach, reach, reach);
  for (std::size_t i = 0; i < drawing.places.size(); ++i) {
    if (seen.contains(drawing.places[i])) {
      drawing.within.push_back(i);
    }
  }
  paint_heading(drawing, area);
  drawing.taken = paint_latitudes(drawing);
  painter.save();
  paint_sites(drawing);
  paint_scale_and_north(painter, drawing.plot, drawing.frame);
  painter.restore();
  paint_axes(drawing);
  paint_legend(painter,
               QRectF(drawing.plot.right(), area.top(), area.right() - drawing.plot.right(), area.height()),
               contents);
  painter.restore();
}

}  // namespace Module_tensor
