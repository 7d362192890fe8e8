#include "app/panels/plan_painter.h"

#include <QFontMetricsF>
#include <QPixmap>
#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <utility>

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

constexpr double line_name_gap = 9.0;

constexpr std::size_t many_stations = 1000;  // squares look like discs then

constexpr QColor current_line_colour(175, 205, 255);
constexpr QColor current_line_name(0, 60, 190);
constexpr QColor line_name_colour(90, 90, 90);
constexpr QColor station_name_colour(60, 60, 60);
constexpr QColor current_name(150, 0, 150);
constexpr QColor backing(255, 255, 255, 225);
constexpr QColor without_value(190, 190, 190);

struct SeenStation {
  std::int32_t index = 0;  // from 1
  QPointF at;
};

/// The stations of a line that are seen.
using SeenLine = std::span<const SeenStation>;

/// Everything that the parts of the painting share.
struct Drawing {
  QPainter& painter;
  QRectF plot;
  const PlanContents& contents;
  const std::vector<SeenStation>& seen;  // in the order of their indices
  TakenRooms taken;                      // where no name may be

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

/// The stations of the current line that are seen: those of a line follow one another.
SeenLine current_line(const std::vector<SeenStation>& seen) {
  const std::int32_t current = session().current_station_index;
  if (current < 1) {
    return {};
  }
  const auto line = [](const SeenStation& each) { return line_of(each.index); };
  return {std::ranges::lower_bound(seen, line_of(current), {}, line),
          std::ranges::upper_bound(seen, line_of(current), {}, line)};
}

double line_mark_width(bool coloured) { return coloured ? coloured_width + 5.0 : line_width; }

void draw_current_line(const Drawing& drawing) {
  QList<QPointF> places;
  for (const SeenStation& station : current_line(drawing.seen)) {
    places.append(station.at);
  }
  draw_dots(drawing.painter, places, line_mark_width(drawing.contents.colouring != nullptr),
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

void take_room(Drawing& drawing, QPointF at, double half) {
  drawing.taken.take(QRectF(at - QPointF(half, half), QSizeF(2.0 * half, 2.0 * half)));
}

void take_dots(Drawing& drawing) {
  const double half = 0.5 * (drawing.contents.colouring ? coloured_width : station_width);
  for (const SeenStation& station : drawing.seen) {
    take_room(drawing, station.at, half);
  }
}

/// What of the current line and station is wider than dots.
void take_marks(Drawing& drawing) {
  const double of_line = 0.5 * line_mark_width(drawing.contents.colouring != nullptr);
  for (const SeenStation& station : current_line(drawing.seen)) {
    const bool current = station.index == session().current_station_index;
    take_room(drawing, station.at, current ? current_ring / 2.0 : of_line);
  }
}

/// Towards the next station of its line, or from the one before it; none where the line has one place only.
QPointF along_line(const Drawing& drawing, std::int32_t index) {
  const auto step_to = [&](std::int32_t other) {
    const bool same_line = other >= 1 && other <= session().station_count && line_of(other) == line_of(index);
    return same_line ? drawing.picture_of(other) - drawing.picture_of(index) : QPointF();
  };
  QPointF step = step_to(index + 1);
  if (step.isNull()) {
    step = -step_to(index - 1);
  }
  const double length = std::hypot(step.x(), step.y());
  return length > 0.0 ? step / length : QPointF();
}

bool is_upright(QPointF direction) { return std::abs(direction.y()) > std::abs(direction.x()); }

std::vector<SeenLine> seen_lines(const std::vector<SeenStation>& seen) {
  std::vector<SeenLine> lines;
  for (auto first = seen.begin(); first != seen.end();) {
    const auto end = std::find_if(first, seen.end(), [line = line_of(first->index)](const SeenStation& each) {
      return line_of(each.index) != line;
    });
    lines.emplace_back(first, end);
    first = end;
  }
  return lines;
}

/// Beyond the ends of a line, which no station's name is; else beside its ends and its middle.
std::vector<std::pair<QPointF, QPointF>> places_and_ways_out(const Drawing& drawing, SeenLine line) {
  const QPointF at_first = along_line(drawing, line.front().index);
  const QPointF at_last = along_line(drawing, line.back().index);
  if (at_first.isNull()) {
    return {{line.front().at, {0.0, -1.0}}, {line.front().at, {0.0, 1.0}}};
  }
  std::vector<std::pair<QPointF, QPointF>> ways = {{line.front().at, -at_first}, {line.back().at, at_last}};
  for (const SeenStation& station : {line.front(), line.back(), line[line.size() / 2]}) {
    const QPointF along = along_line(drawing, station.index);
    ways.emplace_back(station.at, QPointF(along.y(), -along.x()));
    ways.emplace_back(station.at, QPointF(-along.y(), along.x()));
  }
  return ways;
}

/// Each line is named where its name meets no dot and no other name, in other letters than the stations and
/// with the word before it: on lines to the north, numbers of lines and of stations look alike.
void draw_line_names(Drawing& drawing, std::vector<SeenLine> lines) {
  // The current line's name has the first choice of a place.
  std::stable_partition(lines.begin(), lines.end(),
                        [](SeenLine line) { return is_on_current_line(line.front().index); });
  QFont bold = drawing.painter.font();
  bold.setBold(true);
  drawing.painter.save();
  drawing.painter.setFont(bold);
  const QFontMetricsF metrics(bold);
  for (const SeenLine line : lines) {
    const std::int32_t index = line.front().index;
    const QString name =
        "Line " + QString::fromStdString(session().station_line[static_cast<std::size_t>(index) - 1]);
    const QSizeF text(metrics.horizontalAdvance(name), metrics.height());
    for (const auto& [place, out] : places_and_ways_out(drawing, line)) {
      const double half = 0.5 * (std::abs(out.x()) * text.width() + std::abs(out.y()) * text.height());
      const QPointF middle = place + (line_name_gap + half) * out;
      const QRectF room(middle - QPointF(text.width() / 2.0, text.height() / 2.0), text);
      if (drawing.plot.contains(room) && drawing.taken.is_free(room)) {
        drawing.painter.setPen(is_on_current_line(index) ? current_line_name : line_name_colour);
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

Module_tensor::NamedDot named_dot(const Drawing& drawing, const SeenStation& station) {
  const bool coloured = drawing.contents.colouring != nullptr;
  const double plain = coloured ? coloured_width : station_width;
  const double width = station.index == session().current_station_index ? current_ring
                       : is_on_current_line(station.index)              ? line_mark_width(coloured)
                                                                        : plain;
  const double reach = width / 2.0 + 1.0;
  return {station.at, reach, name_of(station.index), is_upright(along_line(drawing, station.index))};
}

void draw_names(const Drawing& drawing, const std::vector<Module_tensor::PlacedName>& names) {
  for (const Module_tensor::PlacedName& name : names) {
    drawing.painter.drawText(name.room, Qt::AlignCenter | Qt::TextDontClip, name.name);
  }
}

/// The name of the current station is there whatever is around it.
void draw_current_name(Drawing& drawing) {
  const auto current =
      std::ranges::lower_bound(drawing.seen, session().current_station_index, {}, &SeenStation::index);
  if (current == drawing.seen.end() || current->index != session().current_station_index) {
    return;
  }
  QPainter& painter = drawing.painter;
  const QFontMetricsF metrics(painter.font());
  const Module_tensor::NamedDot dot = named_dot(drawing, *current);
  std::vector<Module_tensor::PlacedName> placed =
      Module_tensor::placed_names({dot}, metrics, drawing.plot, drawing.taken);
  if (placed.empty()) {
    QRectF room(dot.at - QPointF(0.5 * metrics.horizontalAdvance(dot.name), dot.reach + metrics.height()),
                QSizeF(metrics.horizontalAdvance(dot.name), metrics.height()));
    room.moveLeft(std::clamp(room.left(), 0.0, std::max(drawing.plot.width() - room.width(), 0.0)));
    room.moveTop(std::max(room.top(), 0.0));
    painter.fillRect(room, backing);
    drawing.taken.take(room);
    placed.push_back({room, dot.name});
  }
  painter.setPen(current_name);
  draw_names(drawing, placed);
}

/// Beside their dots where they meet neither one another nor another dot; those of the current line first.
/// Beyond a number that no plan has room for, only those of the current line until fewer are seen.
void draw_station_names(Drawing& drawing) {
  constexpr std::size_t most_names = 2000;
  std::vector<Module_tensor::NamedDot> dots;
  const auto add = [&](SeenLine stations, bool of_current_line) {
    for (const SeenStation& station : stations) {
      if (is_on_current_line(station.index) == of_current_line &&
          station.index != session().current_station_index) {
        dots.push_back(named_dot(drawing, station));
      }
    }
  };
  add(current_line(drawing.seen), true);
  if (drawing.seen.size() <= most_names) {
    add(drawing.seen, false);
  }
  drawing.painter.setPen(station_name_colour);
  draw_names(drawing, Module_tensor::placed_names(dots, QFontMetricsF(drawing.painter.font()), drawing.plot,
                                                  drawing.taken));
}

void draw_scale_bar(Drawing& drawing) {
  constexpr double edge = 10.0;
  constexpr double kilometre = 1000.0;
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
                   QString::fromStdString(length >= kilometre ? plain_text(length / kilometre) + " km"
                                                              : plain_text(length) + " m"));
  drawing.taken.take(room.adjusted(-edge, 0.0, edge, edge));
}

/// How much of a room is in use already.
int crowd_in(const Drawing& drawing, const QRectF& room) {
  constexpr int written = 1;  // values of the graticule
  return static_cast<int>(std::ranges::count_if(
             drawing.seen, [&](const SeenStation& station) { return room.contains(station.at); })) +
         (drawing.taken.is_free(room) ? 0 : written);
}

/// In the corner with the fewest stations, and below them.
void draw_north(Drawing& drawing) {
  constexpr double least = 130.0;  // less has no room for an arrow beside the stations
  if (drawing.plot.height() < least || drawing.plot.width() < least) {
    return;
  }
  constexpr QSizeF arrow(40.0, 70.0);
  const QRectF& plot = drawing.plot;
  const std::array corners = {
      QRectF(QPointF(plot.right() - arrow.width(), plot.top()), arrow), QRectF(plot.topLeft(), arrow),
      QRectF(QPointF(plot.right() - arrow.width(), plot.bottom() - arrow.height()), arrow)};
  const QRectF& room =
      *std::ranges::min_element(corners, {}, [&](const QRectF& corner) { return crowd_in(drawing, corner); });
  Module_tensor::paint_north(drawing.painter, room);
  drawing.taken.take(room);
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

/// What the layers are of.
struct Subject {
  QSize size;
  qreal pixel_ratio = 1.0;
  std::array<double, 6> window{};  // of the plan
  std::int32_t x_column = 0;       // local or map coordinates
  PlanContents contents;

  bool operator==(const Subject&) const = default;
};

Subject subject_of(const QPainter& painter, QSize size, const PlanContents& contents) {
  const PlanWindow& window = session().plan_window;
  return {size,
          painter.device()->devicePixelRatioF(),
          {window.plan_x_min, window.plan_x_max, window.plan_y_min, window.plan_y_max, window.plan_x_scale,
           window.plan_y_scale},
          session().x_column,
          contents};
}

QPixmap empty_layer(const Subject& subject, const QColor& colour) {
  QPixmap layer(subject.size * subject.pixel_ratio);
  layer.setDevicePixelRatio(subject.pixel_ratio);
  layer.fill(colour);
  return layer;
}

/// As the painter of the picture: its font is that of the widget.
void begin_layer(QPainter& painter, const QPainter& picture) {
  painter.setFont(picture.font());
  graph::use_picture_style(painter);
}

}  // namespace

struct PlanPainter::Layers {
  Subject subject;
  QPixmap ground;  // graticule, scale and north
  QPixmap dots;    // of all stations
  std::vector<SeenStation> seen;
  std::vector<SeenLine> lines;
  TakenRooms taken;

  Layers(const QPainter& picture, Subject of);
};

PlanPainter::Layers::Layers(const QPainter& picture, Subject of)
    : subject(std::move(of)),
      ground(empty_layer(subject, Qt::white)),
      dots(empty_layer(subject, Qt::transparent)),
      seen(seen_stations(subject.size.height())),
      lines(seen_lines(seen)) {
  QPainter below(&ground);
  begin_layer(below, picture);
  Drawing drawing{below, QRectF(QPointF(), QSizeF(subject.size)), subject.contents, seen, {}};
  draw_graticule(drawing);
  below.setRenderHint(QPainter::Antialiasing);
  draw_scale_bar(drawing);
  draw_north(drawing);
  take_dots(drawing);
  taken = std::move(drawing.taken);
  QPainter above(&dots);
  begin_layer(above, picture);
  above.setRenderHint(QPainter::Antialiasing, seen.size() <= many_stations);
  const Drawing stations{above, drawing.plot, subject.contents, seen, {}};
  if (subject.contents.colouring) {
    draw_coloured_stations(stations, *subject.contents.colouring);
  } else {
    draw_black_stations(stations);
  }
}

PlanPainter::PlanPainter() = default;
PlanPainter::~PlanPainter() = default;

void PlanPainter::forget_stations() { layers_.reset(); }

void PlanPainter::paint(QPainter& painter, QSize size, const PlanContents& contents) {
  if (!(session().plan_window.plan_y_scale > 0.0) || session().station_count == 0) {
    layers_.reset();
    painter.fillRect(QRect(QPoint(), size), Qt::white);
    return;
  }
  graph::use_picture_style(painter);
  Subject subject = subject_of(painter, size, contents);
  if (!layers_ || layers_->subject != subject) {
    layers_ = std::make_unique<Layers>(painter, std::move(subject));
  }
  painter.drawPixmap(0, 0, layers_->ground);
  Drawing drawing{painter, QRectF(QPointF(), QSizeF(size)), contents, layers_->seen, layers_->taken};
  painter.setRenderHint(QPainter::Antialiasing, layers_->seen.size() <= many_stations);
  draw_current_line(drawing);
  draw_current_station(drawing);
  painter.drawPixmap(0, 0, layers_->dots);
  painter.setRenderHint(QPainter::Antialiasing);
  take_marks(drawing);
  draw_current_name(drawing);
  draw_line_names(drawing, layers_->lines);
  draw_station_names(drawing);
}
