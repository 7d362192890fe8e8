#include "app/panels/picture_site_map.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <QToolTip>
#include <utility>

#include "core/number_text.h"
#include "core/session_state.h"
#include "display/plan_view.h"
#include "display/site_names.h"

using namespace Module_display_data;

namespace {

constexpr double click_distance = 4.0;  // pixels; beyond it a press is a drag

}  // namespace

SiteMap::SiteMap(QWidget* parent) : QWidget(parent) {
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);  // a click ends the typing in a text box; keys zoom
  setAccessibleName("Plan of the stations");
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void SiteMap::show_contents(PlanContents contents) {
  contents_ = std::move(contents);
  update();
}

void SiteMap::forget_stations() {
  plan_.forget_stations();
  update();
}

void SiteMap::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  plan_.paint(painter, size(), contents_);
  if (hasFocus()) {
    QStyleOptionFocusRect focus;
    focus.initFrom(this);
    focus.backgroundColor = Qt::white;
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
  }
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
    Q_EMIT pointer_moved(station_text(at), place.x, place.y);
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

/// "Line 200E, station 100 (ET001)" of the one at a place; empty where there is none.
QString SiteMap::station_text(QPointF place) const {
  constexpr double reach = 8.0;  // pixels
  const std::int32_t station_index = station_under({place.x(), place.y()}, height(), reach);
  if (station_index < 1) {
    return {};
  }
  const auto at = static_cast<std::size_t>(station_index) - 1;
  return QString::fromStdString(with_site_name(
      "Line " + session().station_line[at] + ", station " + plain_text(session().station_value[at]),
      station_index));
}

bool SiteMap::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) {
    return QWidget::event(event);
  }
  const auto& help = *static_cast<QHelpEvent*>(event);
  const QString station = station_text(help.pos());
  QToolTip::showText(
      help.globalPos(),
      station.isEmpty()
          ? "Click a station to select it; drag to move the plan, turn the wheel to zoom (+, -, Home)"
          : station,
      this);
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
