#include "app/plan_picture.h"

#include <QMouseEvent>
#include <QPainter>

#include "core/session_state.h"
#include "display/plan_view.h"

using Module_display_data::PlanPoint;

namespace {

constexpr qreal mark_width = 9.0;   // of the current station, picture units
constexpr qreal point_width = 3.0;  // of every station

void draw_station(QPainter& painter, PlanPoint place, int height, const QColor& colour, qreal width) {
  const PlanPoint point = Module_display_data::to_picture(place, height);
  painter.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap));
  painter.drawPoint(QPointF(point.x, point.y));
}

PlanPoint pointer_place(const QMouseEvent& event) { return {event.position().x(), event.position().y()}; }

bool is_drawn() { return Module_display_data::plan_window().plan_y_scale > 0.0; }

}  // namespace

PlanPicture::PlanPicture(QWidget* parent) : QWidget(parent) {
  setMouseTracking(true);
  setAttribute(Qt::WA_OpaquePaintEvent);
}

int PlanPicture::show_plan(int scale_value) {
  const int shown = Module_display_data::resize_plan_window(width(), height(), scale_value);
  update();
  return shown;
}

void PlanPicture::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  const SessionState& state = session();
  if (state.station_count < 1 || !is_drawn()) {
    return;
  }
  painter.setRenderHint(QPainter::Antialiasing);
  if (state.current_station_index > 0) {
    draw_station(painter, Module_display_data::station_place(state.current_station_index), height(),
                 Qt::magenta, mark_width);
  }
  for (std::int32_t index = 1; index <= state.station_count; ++index) {
    const PlanPoint place = Module_display_data::station_place(index);
    if (Module_display_data::in_plan_window(place)) {
      draw_station(painter, place, height(), Qt::black, point_width);
    }
  }
}

void PlanPicture::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    return;
  }
  const std::int32_t station = Module_display_data::pick_station(pointer_place(*event), height());
  if (station > 0 && station != session().current_station_index) {
    emit station_picked(station);
  }
}

void PlanPicture::mouseMoveEvent(QMouseEvent* event) {
  if (is_drawn()) {
    const PlanPoint place = Module_display_data::to_survey(pointer_place(*event), height());
    emit pointer_moved(place.x, place.y);
  }
}

void PlanPicture::leaveEvent(QEvent* /*event*/) { emit pointer_left(); }
