#include "app/panels/picture_site_map.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <utility>
#include <vector>

#include "core/number_text.h"
#include "core/session_state.h"
#include "display/plan_view.h"
#include "display/site_names.h"

using namespace Module_display_data;

namespace {

constexpr double station_width = 3.0;  // pixels
constexpr double current_width = 9.0;
constexpr double click_distance = 4.0;  // pixels; beyond it a press is a drag

void draw_dot(QPainter& painter, PlanPoint at, double width, const QColor& colour) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  painter.drawEllipse(QPointF(at.x, at.y), width / 2.0, width / 2.0);
}

/// Each line is named at its first station that is seen, if its name meets none that is there already.
/// @return what the names cover
QRegion draw_line_names(QPainter& painter, double height) {
  painter.setPen(QColor(90, 90, 90));
  std::int32_t named_line = 0;
  QRegion taken;
  for (std::int32_t index = 1; index <= session().station_count; ++index) {
    const auto at = static_cast<std::size_t>(index) - 1;
    const PlanPoint place = station_place(index);
    if (session().line_of_station[at] == named_line || !in_plan_window(place)) {
      continue;
    }
    named_line = session().line_of_station[at];
    const PlanPoint picture = to_picture(place, height);
    const QString name = QString::fromStdString(session().station_line[at]);
    const QPoint corner(static_cast<int>(picture.x) + 7, static_cast<int>(picture.y) - 4);
    const QRect room = painter.fontMetrics().boundingRect(name).translated(corner);
    if (!taken.intersects(room)) {
      painter.drawText(corner, name);
      taken += room;
    }
  }
  return taken;
}

/// The places of the stations that are seen and have named sites.
std::vector<std::pair<std::int32_t, QPointF>> named_stations(double height) {
  std::vector<std::pair<std::int32_t, QPointF>> stations;
  for (std::int32_t index = 1; index <= session().station_count; ++index) {
    const PlanPoint place = station_place(index);
    if (!site_name(index).empty() && in_plan_window(place)) {
      const PlanPoint picture = to_picture(place, height);
      stations.emplace_back(index, QPointF(picture.x, picture.y));
    }
  }
  return stations;
}

/// The sites' names beside their dots, where they meet neither one another nor another dot: beyond a number
/// that no plan has room for, not at all until fewer are seen.
void draw_site_names(QPainter& painter, QSize size, QRegion taken) {
  constexpr std::size_t most_names = 1000;
  const auto stations = named_stations(size.height());
  if (stations.size() > most_names) {
    return;
  }
  const int dot = static_cast<int>(current_width);
  for (const auto& [index, at] : stations) {
    taken += QRect(at.toPoint() - QPoint(dot / 2, dot / 2), QSize(dot, dot));
  }
  painter.setPen(QColor(60, 60, 60));
  const QFontMetrics metrics = painter.fontMetrics();
  for (const auto& [index, at] : stations) {
    const QString name = QString::fromStdString(shortened_name(site_name(index)));
    const QSize text(metrics.horizontalAdvance(name), metrics.height());
    const QPoint dot_at = at.toPoint();
    // Right of the dot, left of it, above, below.
    for (const QPoint corner :
         {QPoint(dot, -text.height() / 2), QPoint(-dot - text.width(), -text.height() / 2),
          QPoint(-text.width() / 2, -dot - text.height()), QPoint(-text.width() / 2, dot)}) {
      const QRect room(dot_at + corner, text);
      if (QRect(QPoint(), size).contains(room) && !taken.intersects(room)) {
        painter.drawText(room, Qt::AlignCenter | Qt::TextDontClip, name);
        taken += room;
        break;
      }
    }
  }
}

void draw_scale_bar(QPainter& painter, QSize size) {
  const double length = scale_bar_length(size.width());
  const double pixels = length * session().plan_window.plan_x_scale;
  constexpr double edge = 10.0;
  const QPointF left(edge, size.height() - edge);
  const QPointF right(edge + pixels, left.y());
  const QPointF cap(0.0, 4.0);
  painter.setPen(QColor(90, 90, 90));
  painter.drawLine(left, right);
  painter.drawLine(left - cap, left);
  painter.drawLine(right - cap, right);
  painter.drawText(QRectF(left.x(), 0.0, pixels, left.y() - 2.0),
                   Qt::AlignHCenter | Qt::AlignBottom | Qt::TextDontClip,
                   QString::fromStdString(plain_text(length) + " m"));
}

}  // namespace

SiteMap::SiteMap(QWidget* parent) : QWidget(parent) {
  setMouseTracking(true);
  setFocusPolicy(Qt::ClickFocus);  // a click ends the typing in a text box
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void SiteMap::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  painter.setPen(QColor(160, 160, 160));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
  if (!(session().plan_window.plan_y_scale > 0.0)) {
    return;
  }
  painter.setRenderHint(QPainter::Antialiasing);
  if (session().current_station_index > 0) {
    draw_dot(painter, to_picture(station_place(session().current_station_index), height()), current_width,
             Qt::magenta);
  }
  for (std::int32_t index = 1; index <= session().station_count; ++index) {
    const PlanPoint place = station_place(index);
    if (in_plan_window(place)) {
      draw_dot(painter, to_picture(place, height()), station_width, Qt::black);
    }
  }
  draw_site_names(painter, size(), draw_line_names(painter, height()));
  draw_scale_bar(painter, size());
}

void SiteMap::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Q_EMIT resized();
}

void SiteMap::mousePressEvent(QMouseEvent* event) {
  if (held_ == Qt::NoButton && (event->button() == Qt::LeftButton || event->button() == Qt::MiddleButton)) {
    held_ = event->button();
    pressed_at_ = last_ = event->position();
    dragging_ = false;
  }
}

void SiteMap::mouseMoveEvent(QMouseEvent* event) {
  const QPointF at = event->position();
  if (held_ != Qt::NoButton && (at - pressed_at_).manhattanLength() > click_distance && !dragging_) {
    dragging_ = true;
    setCursor(Qt::ClosedHandCursor);
  }
  if (dragging_) {
    Q_EMIT dragged(last_, at);
    last_ = at;
  }
  if (session().plan_window.plan_y_scale > 0.0) {
    const PlanPoint place = to_survey({at.x(), at.y()}, height());
    Q_EMIT pointer_moved(place.x, place.y);
  }
}

void SiteMap::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != held_) {
    return;
  }
  const bool clicked = held_ == Qt::LeftButton && !dragging_;
  held_ = Qt::NoButton;
  dragging_ = false;
  unsetCursor();
  if (!clicked) {
    return;
  }
  const std::int32_t station_index = pick_station({pressed_at_.x(), pressed_at_.y()}, height());
  if (station_index > 0) {
    Q_EMIT station_picked(station_index);
  }
}

bool SiteMap::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) {
    return QWidget::event(event);
  }
  const auto& help = *static_cast<QHelpEvent*>(event);
  constexpr double reach = 8.0;  // pixels
  const std::int32_t station_index = station_under({1.0 * help.x(), 1.0 * help.y()}, height(), reach);
  if (station_index > 0) {
    const auto at = static_cast<std::size_t>(station_index) - 1;
    QToolTip::showText(
        help.globalPos(),
        QString::fromStdString(with_site_name(
            "Line " + session().station_line[at] + ", station " + plain_text(session().station_value[at]),
            station_index)),
        this);
  } else {
    QToolTip::showText(help.globalPos(),
                       "Click a station to select it; drag to move the plan, turn the wheel to zoom", this);
  }
  return true;
}

void SiteMap::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  Q_EMIT pointer_left();
}

void SiteMap::wheelEvent(QWheelEvent* event) {
  constexpr int notch = 120;
  wheel_turned_ += event->angleDelta().y();
  if (const int steps = wheel_turned_ / notch; steps != 0) {
    wheel_turned_ -= steps * notch;
    Q_EMIT zoom_wanted(steps, event->position());
  }
  event->accept();
}
