#include "tensor/windows/pseudo_section_pane.h"

#include <QGuiApplication>
#include <QHelpEvent>
#include <QToolTip>
#include <algorithm>
#include <cmath>

#include "platform/graph/mouse_gestures.h"
#include "platform/widgets/panel_controls.h"
#include "tensor/section_texts.h"

using namespace Module_tensor;

PseudoSectionPane::PseudoSectionPane(const QString& name, QWidget* parent) : QWidget(parent) {
  setObjectName(name);
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  auto* const gestures = new graph::MouseGestures(*this);
  connect(gestures, &graph::MouseGestures::clicked, this, &PseudoSectionPane::click);
  connect(gestures, &graph::MouseGestures::double_clicked, this, &PseudoSectionPane::reset_zoom);
  connect(gestures, &graph::MouseGestures::hovered, this,
          [this](QPointF at) { Q_EMIT hovered(text_at(at, "   ")); });
  connect(gestures, &graph::MouseGestures::left, this, [this] { Q_EMIT hovered({}); });
  connect(gestures, &graph::MouseGestures::band_dragged, this, [this](QPointF from, QPointF to) {
    band_.emplace(from, to);
    update();
  });
  connect(gestures, &graph::MouseGestures::band_cancelled, this, [this] {
    band_.reset();
    update();
  });
  connect(gestures, &graph::MouseGestures::band_released, this, [this](QPointF from, QPointF to) {
    constexpr double least_share = 0.01;  // of the view: a smaller one is a slip
    band_.reset();
    const QRectF band = QRectF(share_of_plot(from), share_of_plot(to)).normalized();
    if (band.width() >= least_share && band.height() >= least_share) {
      view_.across.show({view_.across.from_view(band.left()), view_.across.from_view(band.right())});
      view_.down.show({view_.down.from_view(band.top()), view_.down.from_view(band.bottom())});
    }
    change_view();
  });
  connect(gestures, &graph::MouseGestures::panned, this, [this](QPointF from, QPointF to) {
    const QPointF start = place_in_section(from);
    const QPointF end = place_in_section(to);
    view_.across.drag(start.x(), end.x());
    view_.down.drag(start.y(), end.y());
    change_view();
  });
  connect(gestures, &graph::MouseGestures::wheel_turned, this, [this](QPointF at, double notches) {
    constexpr double factor_of_notch = 0.8;
    const double factor = std::pow(factor_of_notch, notches);
    const QPointF centre = place_in_section(at);
    view_.across.zoom_about(centre.x(), factor);
    view_.down.zoom_about(centre.y(), factor);
    change_view();
  });
}

void PseudoSectionPane::show_picture(PseudoSectionPicture picture) {
  picture_ = std::move(picture);
  redraw();
}

void PseudoSectionPane::frame(std::optional<std::size_t> station_index) {
  if (picture_.framed != station_index) {
    picture_.framed = station_index;
    redraw();
  }
}

void PseudoSectionPane::set_view(const PseudoSectionView& view) {
  view_ = view;
  redraw();
}

void PseudoSectionPane::reset_zoom() {
  view_.across.reset();
  view_.down.reset();
  change_view();
}

void PseudoSectionPane::change_view() {
  redraw();
  Q_EMIT view_changed();
}

void PseudoSectionPane::redraw() {
  drawn_ = QPixmap();
  update();
}

QPointF PseudoSectionPane::share_of_plot(QPointF at) const {
  const QRectF plot = pseudo_section_plot(size());
  return {std::clamp((at.x() - plot.left()) / plot.width(), 0.0, 1.0),
          std::clamp((at.y() - plot.top()) / plot.height(), 0.0, 1.0)};
}

QPointF PseudoSectionPane::place_in_section(QPointF at) const {
  const QPointF share = share_of_plot(at);
  return {view_.across.from_view(share.x()), view_.down.from_view(share.y())};
}

void PseudoSectionPane::click(QPointF at) {
  const PseudoSectionPlace place = pseudo_section_place(size(), picture_, view_, at);
  if (place.column == nullptr) {
    return;
  }
  if (QGuiApplication::keyboardModifiers().testFlag(Qt::ShiftModifier)) {
    if (place.point != nullptr) {
      Q_EMIT mask_wanted(*place.column, *place.point);
    }
  } else {
    Q_EMIT clicked(place.column->station, place.point != nullptr ? place.point->frequency : 0.0);
  }
}

QString PseudoSectionPane::text_at(QPointF at, const std::string& separator) const {
  const PseudoSectionPlace place = pseudo_section_place(size(), picture_, view_, at);
  if (place.column == nullptr) {
    return {};
  }
  return qt_text(place.point != nullptr
                     ? point_text(picture_.section, *place.column, *place.point, separator)
                     : "Station " + station_text(place.column->station, place.column->name));
}

void PseudoSectionPane::paintEvent(QPaintEvent* /*event*/) {
  const QSize dots = size() * devicePixelRatioF();
  if (drawn_.size() != dots) {
    drawn_ = QPixmap(dots);
    drawn_.setDevicePixelRatio(devicePixelRatioF());
    QPainter painter(&drawn_);
    paint_pseudo_section(painter, size(), picture_, view_);
  }
  QPainter painter(this);
  painter.drawPixmap(0, 0, drawn_);
  if (band_) {
    painter.setPen(QPen(Qt::blue, 1.0, Qt::DashLine));
    painter.drawRect(QRectF(band_->first, band_->second).normalized());
  }
}

bool PseudoSectionPane::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) {
    return QWidget::event(event);
  }
  const auto& help = *static_cast<QHelpEvent*>(event);
  const QString text = text_at(help.pos(), "\n");
  QToolTip::showText(help.globalPos(),
                     text.isEmpty()
                         ? QString("Click a point to show it in the main window, Shift+click masks "
                                   "it or lets it count again")
                         : text,
                     this);
  return true;
}
