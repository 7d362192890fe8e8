#include "app/panels/plan_axes.h"

#include <QHBoxLayout>
#include <QPainter>
#include <utility>

#include "core/session_state.h"
#include "platform/graph/picture_axes.h"
#include "tensor/windows/scale_bar.h"

namespace {

constexpr int left_room = 90;
constexpr int bottom_room = 36;
constexpr int top_room = 8;
constexpr int right_room = 10;
constexpr int colour_bar_room = 84;

QMargins room_for(bool colour_bar) {
  return {left_room, top_room, colour_bar ? colour_bar_room : right_room, bottom_room};
}

}  // namespace

PlanAxes::PlanAxes(QWidget* plan, QWidget* parent) : QWidget(parent), plan_(plan) {
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(room_for(false));
  row->addWidget(plan);
}

void PlanAxes::show_colouring(std::shared_ptr<const PlanColouring> colouring) {
  colouring_ = std::move(colouring);
  layout()->setContentsMargins(room_for(colouring_ != nullptr));
  update();
}

void PlanAxes::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  graph::use_picture_style(painter);
  const QRectF plot = QRectF(plan_->geometry()).adjusted(-0.5, -0.5, 0.5, 0.5);
  const PlanWindow& window = session().plan_window;
  if (window.plan_y_scale > 0.0 && session().station_count > 0) {
    constexpr double large = 20000.0;  // m; numbers of six digits say less than those of km
    constexpr double kilometre = 1000.0;
    const double unit = window.plan_x_extent > large ? kilometre : 1.0;
    const QString unit_text = unit > 1.0 ? " (km)" : " (m)";
    const bool map = session().x_column == 3;
    graph::draw_bottom_axis(
        painter, plot,
        graph::even_ticks(painter, window.plan_x_min / unit, window.plan_x_max / unit, plot.width(), false,
                          [&](double value) {
                            return plot.left() + (value * unit - window.plan_x_min) * window.plan_x_scale;
                          }),
        (map ? "Map x, east" : "Local x") + unit_text);
    graph::draw_left_axis(
        painter, plot,
        graph::even_ticks(painter, window.plan_y_min / unit, window.plan_y_max / unit, plot.height(), true,
                          [&](double value) {
                            return plot.bottom() - (value * unit - window.plan_y_min) * window.plan_y_scale;
                          }),
        (map ? "Map y, north" : "Local y") + unit_text);
    paint_colour_bar(painter);
  }
  painter.setPen(QColor(120, 120, 120));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(plot);
}

void PlanAxes::paint_colour_bar(QPainter& painter) const {
  if (!colouring_) {
    return;
  }
  const QRectF plot(plan_->geometry());
  const double line = QFontMetricsF(painter.font()).height();
  const double left = plot.right() + 10.0;
  painter.drawText(QRectF(left - 4.0, plot.top() - 4.0, colour_bar_room - 8.0, 2.0 * line),
                   Qt::AlignLeft | Qt::AlignTop, colouring_->title);
  const QRectF bar(left, plot.top() + 4.0 * line, Module_tensor::scale_bar_width, plot.height() - 4.5 * line);
  if (bar.height() > 2.0 * line) {
    Module_tensor::draw_scale_bar(
        painter, bar, colouring_->scale, colouring_->unit,
        colouring_->powers ? Module_tensor::ScaleNumbers::powers : Module_tensor::ScaleNumbers::plain);
  }
}
