#include "tensor/windows/map_view.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <cmath>
#include <utility>

#include "core/number_text.h"
#include "platform/widgets/panel_controls.h"
#include "tensor/windows/map_picture.h"

using namespace Module_tensor;

namespace {

constexpr double key_zoom = 1.5;

/// What a tool tip says of a site.
QString site_text(const MapSite& site, const SiteValues& values, double frequency) {
  QString text = "Line " + qt_text(site.line) + ", station " +
                 qt_text(station_text(site.station.station, site.station.name));
  for (const std::string& line : value_texts(values, frequency)) {
    text += "\n" + qt_text(line);
  }
  for (const std::string& remark : site.station.remarks) {
    text += "\n" + qt_text(remark);
  }
  if (!site.station.refusal.empty()) {
    text += "\n" + qt_text(site.station.refusal);
  }
  return text;
}

}  // namespace

MapView::MapView(QWidget* parent) : QWidget(parent) {
  setObjectName("Picture_tensor_map");
  setAccessibleName("Map of phase tensors and induction arrows");
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void MapView::show_contents(MapContents contents) {
  contents_ = std::move(contents);
  update();
}

void MapView::show_period(double frequency) {
  contents_.show_frequency(frequency);
  update();
}

void MapView::show_look(const MapLook& look) {
  const bool other_arrows = !(look.arrows == contents_.look.arrows);
  contents_.look = look;
  if (other_arrows) {
    contents_.show_frequency(contents_.frequency);
  }
  update();
}

void MapView::mark(std::optional<std::int32_t> StationID) {
  contents_.current = StationID;
  update();
}

void MapView::show_all() {
  contents_.frame.reset();
  update();
}

void MapView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  paint_map(painter, rect(), contents_);
}

void MapView::mousePressEvent(QMouseEvent* event) { drag_.press(*event); }

QString MapView::place_text(QPointF at) const {
  const QRectF plot = map_area(rect());
  if (contents_.map.sites.empty() || !plot.contains(at)) {
    return {};
  }
  const PlanFrame frame = shown_frame(contents_, rect());
  const double east = frame.east + (at.x() - plot.center().x()) / frame.scale;
  const double north = frame.north - (at.y() - plot.center().y()) / frame.scale;
  const bool local = contents_.map.source == Module_projections::PlaceSource::local;
  return qt_text((local ? "Local x " : "Easting ") + format_number(east, "0") +
                 (local ? " m, y " : " m, northing ") + format_number(north, "0") + " m");
}

void MapView::mouseMoveEvent(QMouseEvent* event) {
  const QPointF at = event->position();
  const auto before = drag_.move(*event);
  if (before && !contents_.map.sites.empty()) {
    contents_.frame = dragged(shown_frame(contents_, rect()), at.x() - before->x(), at.y() - before->y());
    update();
  }
  Q_EMIT hovered(place_text(at));
}

void MapView::mouseReleaseEvent(QMouseEvent* event) {
  const auto clicked = drag_.release(*event);
  if (const auto site = clicked ? site_at(contents_, rect(), *clicked) : std::nullopt) {
    Q_EMIT site_chosen(static_cast<int>(*site));
  }
}

void MapView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    show_all();
  }
}

void MapView::zoom(double factor, QPointF about) {
  const QRectF plot = map_area(rect());
  if (!contents_.map.sites.empty()) {
    contents_.frame = zoomed(shown_frame(contents_, rect()), {plot.width(), plot.height()}, factor,
                             {about.x() - plot.left(), about.y() - plot.top()});
    update();
  }
}

void MapView::wheelEvent(QWheelEvent* event) {
  constexpr double notch = 120.0;
  constexpr double zoom_of_notch = 1.25;
  zoom(std::pow(zoom_of_notch, event->angleDelta().y() / notch), event->position());
  event->accept();
}

void MapView::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
      return zoom(key_zoom, map_area(rect()).center());
    case Qt::Key_Minus:
      return zoom(1.0 / key_zoom, map_area(rect()).center());
    case Qt::Key_Home:
      return show_all();
    case Qt::Key_Left:
      Q_EMIT period_wanted(-1);
      return;
    case Qt::Key_Right:
      Q_EMIT period_wanted(1);
      return;
    default:
      QWidget::keyPressEvent(event);
  }
}

void MapView::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  Q_EMIT hovered(QString());
}

bool MapView::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) {
    return QWidget::event(event);
  }
  const auto& help = *static_cast<QHelpEvent*>(event);
  const auto site = site_at(contents_, rect(), help.pos());
  QToolTip::showText(help.globalPos(),
                     site
                         ? site_text(contents_.map.sites[*site], contents_.values[*site], contents_.frequency)
                         : "Click a station to show it in the main window; drag to move the plan, turn the "
                           "wheel to zoom, double-click to show all",
                     this);
  return true;
}
