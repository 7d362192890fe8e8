#include "app/panels/plan_painter.h"

#include <QFontMetricsF>
#include <algorithm>
#include <array>
#include <cmath>

#include "core/absent_value.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "display/plan_view.h"
#include "display/site_names.h"
#include "platform/graph/picture_axes.h"
#include "tensor/windows/graticule_painter.h"
#include "tensor/windows/map_legend.h"
#include "tensor/windows/map_names.h"

using namespace Module_display_data;
using Module_tensor::TakenRooms;

namespace {

constexpr double station_width = 3.0;  // pixels
constexpr double coloured_width = 8.0;
constexpr double line_width = 9.0;  // of what marks the stations of the current line
constexpr double current_width = 9.0;
constexpr double current_ring = 13.0;  // around a coloured dot

constexpr QColor current_line_colour(175, 205, 255);
constexpr QColor current_line_name(0, 60, 190);
constexpr QColor line_name_colour(90, 90, 90);
constexpr QColor station_name_colour(60, 60, 60);
constexpr QColor without_value(190, 190, 190);

struct SeenStation {
  std::int32_t index = 0;  // from 1
  QPointF at;
};

/// Everything that the parts of the painting share.
struct Drawing {
  QPainter& painter;
  QRectF plot;
  const PlanContents& contents;
  std::vector<SeenStation> seen;  // in the order of their indices
  TakenRooms taken;               // where no name may be

  [[nodiscard]] QPointF picture_of(std::int32_t index) const {
    const PlanPoint at = to_picture(station_place(index), plot.height());
    return {at.x, at.y};
  }
};

std::int32_t line_of(std::int32_t index) {
  return session().line_of_station[static_cast<std::size_t>(index) - 1];
}

bool is_on_current_line(std::int32_t index) {
  const std::int32_t current = session().current_station_index;
  return current > 0 && line_of(index) == line_of(current);
}

std::vector<SeenStation> seen_stations(double height) {
  std::vector<SeenStation> seen;
  for (std::int32_t index = 1; index <= session().station_count; ++index) {
    const PlanPoint place = station_place(index);
    if (in_plan_window(place)) {
      const PlanPoint at = to_picture(place, height);
      seen.push_back({index, QPointF(at.x, at.y)});
    }
  }
  return seen;
}

/// All dots of a kind at once. Thousands are squares on whole pixels: they look the same and are drawn within
/// a frame.
void draw_dots(QPainter& painter, const QList<QPointF>& places, double width, const QColor& colour) {
  constexpr qsizetype many = 1000;
  if (places.size() <= many && painter.testRenderHint(QPainter::Antialiasing)) {
    painter.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap));
    painter.drawPoints(places.constData(), static_cast<int>(places.size()));
    return;
  }
  const int side = static_cast<int>(width);
  for (const QPointF& at : places) {
    painter.fillRect(static_cast<int>(at.x()) - side / 2, static_cast<int>(at.y()) - side / 2, side, side,
                     colour);
  }
}

void draw_current_line(const Drawing& drawing) {
  QList<QPointF> places;
  for (const SeenStation& station : drawing.seen) {
    if (is_on_current_line(station.index)) {
      places.append(station.at);
    }
  }
  draw_dots(drawing.painter, places, drawing.contents.colouring ? coloured_width + 5.0 : line_width,
            current_line_colour);
}

void draw_current_station(const Drawing& drawing) {
  if (session().current_station_index > 0) {
    draw_dots(drawing.painter, {drawing.picture_of(session().current_station_index)},
              drawing.contents.colouring ? current_ring : current_width, Qt::magenta);
  }
}

void draw_black_stations(const Drawing& drawing) {
  QList<QPointF> places;
  for (const SeenStation& station : drawing.seen) {
    places.append(station.at);
  }
  draw_dots(drawing.painter, places, station_width, Qt::black);
}

void draw_coloured_stations(const Drawing& drawing, const PlanColouring& colouring) {
  std::array<QList<QPointF>, graph::last_palette_entry + 1> places;
  for (const SeenStation& station : drawing.seen) {
    const auto at = static_cast<std::size_t>(station.index) - 1;
    const double value = at < colouring.values.size() ? colouring.values[at] : no_data;
    const auto entry = is_absent(value) ? 0
                                        : static_cast<std::size_t>(graph::palette_entry(
                                              value, colouring.scale.lower, colouring.scale.upper));
    places[entry].append(station.at);
  }
  const graph::Palette palette =
      Module_tensor::scale_palette(colouring.scale.palette, colouring.scale.inverted);
  draw_dots(drawing.painter, places[0], station_width, without_value);
  for (std::size_t entry = graph::first_palette_entry; entry < places.size(); ++entry) {
    if (!places[entry].isEmpty()) {
      draw_dots(drawing.painter, places[entry], coloured_width, graph::to_qt(palette[entry]));
    }
  }
}

void take_dots(Drawing& drawing) {
  const double half = 0.5 * (drawing.contents.colouring ? coloured_width : station_width) + 1.0;
  for (const SeenStation& station : drawing.seen) {
    drawing.taken.take(QRectF(station.at - QPointF(half, half), QSizeF(2.0 * half, 2.0 * half)));
  }
}

/// The way out of a line at its first station that is seen: away from its next one where the line begins
/// there, else to the side.
QPointF way_out(const Drawing& drawing, std::int32_t index) {
  const auto first = session().first_station_of_line[static_cast<std::size_t>(line_of(index)) - 1];
  for (std::int32_t next = index + 1; next <= session().station_count && line_of(next) == line_of(index);
       ++next) {
    const QPointF step = drawing.picture_of(index) - drawing.picture_of(next);
    if (const double length = std::hypot(step.x(), step.y()); length > 0.0) {
      const QPointF along = step / length;
      return index == first ? along : QPointF(along.y(), -along.x());
    }
  }
  return {0.0, 1.0};
}

/// Each line is named beyond its first station that is seen, where its name meets no dot and no other name.
void draw_line_names(Drawing& drawing) {
  constexpr double gap = 7.0;
  std::int32_t named_line = 0;
  QFont bold = drawing.painter.font();
  bold.setBold(true);
  drawing.painter.save();
  drawing.painter.setFont(bold);
  const QFontMetricsF metrics(bold);
  for (const SeenStation& station : drawing.seen) {
    if (line_of(station.index) == named_line) {
      continue;
    }
    named_line = line_of(station.index);
    const QString name =
        QString::fromStdString(session().station_line[static_cast<std::size_t>(station.index) - 1]);
    const QSizeF text(metrics.horizontalAdvance(name), metrics.height());
    const QPointF out = way_out(drawing, station.index);
    for (const double side : {1.0, -1.0}) {
      const double half = 0.5 * (std::abs(out.x()) * text.width() + std::abs(out.y()) * text.height());
      const QPointF middle = station.at + side * (gap + half) * out;
      const QRectF room(middle - QPointF(text.width() / 2.0, text.height() / 2.0), text);
      if (drawing.plot.contains(room) && drawing.taken.is_free(room)) {
        drawing.painter.setPen(is_on_current_line(station.index) ? current_line_name : line_name_colour);
        drawing.painter.drawText(room, Qt::AlignCenter | Qt::TextDontClip, name);
        drawing.taken.take(room);
        break;
      }
    }
  }
  drawing.painter.restore();
}

QString name_of(std::int32_t index) {
  const std::string& site = site_name(index);
  return QString::fromStdString(site.empty()
                                    ? plain_text(session().station_value[static_cast<std::size_t>(index) - 1])
                                    : shortened_name(site));
}

/// Beside their dots where they meet neither one another nor another dot; those of the current line first.
/// Beyond a number that no plan has room for, only those of the current line until fewer are seen.
void draw_station_names(Drawing& drawing) {
  constexpr std::size_t most_names = 2000;
  const double dot_reach = (drawing.contents.colouring ? coloured_width : station_width) / 2.0 + 1.0;
  std::vector<Module_tensor::NamedDot> dots;
  const auto add = [&](bool of_current_line) {
    for (const SeenStation& station : drawing.seen) {
      if (is_on_current_line(station.index) == of_current_line) {
        const bool current = station.index == session().current_station_index;
        dots.push_back({station.at, current ? current_ring / 2.0 + 1.0 : dot_reach, name_of(station.index)});
        if (current) {
          std::swap(dots.front(), dots.back());
        }
      }
    }
  };
  add(true);
  if (drawing.seen.size() <= most_names) {
    add(false);
  }
  drawing.painter.setPen(station_name_colour);
  for (const Module_tensor::PlacedName& name : Module_tensor::placed_names(
           dots, QFontMetricsF(drawing.painter.font()), drawing.plot, drawing.taken)) {
    drawing.painter.drawText(name.room, Qt::AlignCenter | Qt::TextDontClip, name.name);
  }
}

void draw_scale_bar(Drawing& drawing) {
  constexpr double edge = 10.0;
  const double length = scale_bar_length(drawing.plot.width());
  const double pixels = length * session().plan_window.plan_x_scale;
  const QPointF left(edge, drawing.plot.bottom() - edge);
  const QPointF right(edge + pixels, left.y());
  const QPointF cap(0.0, 4.0);
  QPainter& painter = drawing.painter;
  painter.setPen(line_name_colour);
  painter.drawLine(left, right);
  painter.drawLine(left - cap, left);
  painter.drawLine(right - cap, right);
  const double high = QFontMetricsF(painter.font()).height();
  const QRectF room(left.x(), left.y() - 2.0 - high, pixels, high);
  painter.drawText(room, Qt::AlignHCenter | Qt::AlignBottom | Qt::TextDontClip,
                   QString::fromStdString(plain_text(length) + " m"));
  drawing.taken.take(room.adjusted(-edge, 0.0, edge, edge));
}

void draw_north(Drawing& drawing) {
  constexpr double room = 130.0;  // less has no room for an arrow beside the stations
  if (drawing.plot.height() >= room && drawing.plot.width() >= room) {
    Module_tensor::paint_north(drawing.painter, drawing.plot);
    constexpr QSizeF arrow(32.0, 66.0);
    drawing.taken.take(QRectF(QPointF(drawing.plot.right() - arrow.width(), drawing.plot.top()), arrow));
  }
}

void draw_graticule(Drawing& drawing) {
  if (!drawing.contents.system) {
    return;
  }
  const PlanWindow& window = session().plan_window;
  const auto lines = Module_projections::graticule(
      *drawing.contents.system, {window.plan_x_min, window.plan_x_max, window.plan_y_min, window.plan_y_max});
  const auto rooms = Module_tensor::paint_graticule(
      drawing.painter, drawing.plot, lines, [&](const numerics::geodesy::MapPlace& place) {
        const PlanPoint at = to_picture({place.easting, place.northing}, drawing.plot.height());
        return QPointF(at.x, at.y);
      });
  for (const QRectF& room : rooms) {
    drawing.taken.take(room);
  }
}

}  // namespace

void paint_plan(QPainter& painter, QSize size, const PlanContents& contents) {
  painter.fillRect(QRect(QPoint(), size), Qt::white);
  if (!(session().plan_window.plan_y_scale > 0.0) || session().station_count == 0) {
    return;
  }
  graph::use_picture_style(painter);
  Drawing drawing{painter, QRectF(QPointF(), QSizeF(size)), contents, seen_stations(size.height()), {}};
  constexpr std::size_t many = 1000;
  painter.setRenderHint(QPainter::Antialiasing, drawing.seen.size() <= many);
  draw_graticule(drawing);
  draw_current_line(drawing);
  draw_current_station(drawing);
  if (contents.colouring) {
    draw_coloured_stations(drawing, *contents.colouring);
  } else {
    draw_black_stations(drawing);
  }
  painter.setRenderHint(QPainter::Antialiasing);
  take_dots(drawing);
  draw_scale_bar(drawing);
  draw_north(drawing);
  draw_line_names(drawing);
  draw_station_names(drawing);
}
