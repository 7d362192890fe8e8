#include "app/panels/picture_site_map.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <utility>

#include "core/number_text.h"
#include "core/session_state.h"
#include "display/plan_view.h"
#include "display/site_names.h"

using namespace Module_display_data;

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
    // A frame alone: a style may fill its own with a tint, and the stations' colours mean something.
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
  }
}

void SiteMap::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Q_EMIT resized();
}

void SiteMap::mousePressEvent(QMouseEvent* event) { drag_.press(*event); }

void SiteMap::mouseMoveEvent(QMouseEvent* event) {
  const QPointF at = event->position();
  if (const auto before = drag_.move(*event)) {
    Q_EMIT dragged(*before, at);
  }
  if (session().plan_window.plan_y_scale > 0.0) {
    const PlanPoint place = to_survey({at.x(), at.y()}, height());
    Q_EMIT pointer_moved(station_text(at), place.x, place.y);
  }
}

void SiteMap::mouseReleaseEvent(QMouseEvent* event) {
  const auto clicked = drag_.release(*event);
  const std::int32_t station_index = clicked ? pick_station({clicked->x(), clicked->y()}, height()) : 0;
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
