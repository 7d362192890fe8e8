#include "occam/windows/picture_model.h"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <utility>

using namespace Module_occam;

PictureModel::PictureModel(const OccamData& sites, QWidget* parent) : QWidget(parent), sites_(sites) {
  setObjectName("Picture_model");
  setMouseTracking(true);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void PictureModel::show_picture(SectionPicture picture) {
  picture_ = std::move(picture);
  update();
}

void PictureModel::reset_zoom() {
  zoom_.across.reset();
  zoom_.down.reset();
  update();
}

QPointF PictureModel::share_of_plot(QPointF at) const {
  const QRectF plot = plot_area(picture_.geometry.picture);
  return {std::clamp((at.x() - plot.left()) / plot.width(), 0.0, 1.0),
          std::clamp((at.y() - plot.top()) / plot.height(), 0.0, 1.0)};
}

QPointF PictureModel::place_in_section(QPointF at) const {
  const QPointF share = share_of_plot(at);
  return {zoom_.across.from_view(share.x()), zoom_.down.from_view(share.y())};
}

void PictureModel::zoom_to_band(QPointF from, QPointF to) {
  constexpr double min_share = 0.01;  // of the view; a smaller rectangle is a click with an unsteady hand
  const QRectF band = QRectF(share_of_plot(from), share_of_plot(to)).normalized();
  if (band.width() < min_share || band.height() < min_share) {
    return;
  }
  zoom_.across.show({zoom_.across.from_view(band.left()), zoom_.across.from_view(band.right())});
  zoom_.down.show({zoom_.down.from_view(band.top()), zoom_.down.from_view(band.bottom())});
}

void PictureModel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  paint_section(painter, picture_, sites_, zoom_);
  if (band_start_) {
    painter.setPen(QPen(Qt::blue, 1.0, Qt::DashLine));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(*band_start_, pointer_).normalized());
  }
}

void PictureModel::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Q_EMIT resized();
}

void PictureModel::mousePressEvent(QMouseEvent* event) {
  pointer_ = event->position();
  if (event->button() == Qt::LeftButton && !picture_.geometry.rectangles.empty()) {
    band_start_ = pointer_;
  }
}

void PictureModel::mouseMoveEvent(QMouseEvent* event) {
  const QPointF earlier = std::exchange(pointer_, event->position());
  if ((event->buttons() & Qt::MiddleButton) != 0) {
    const QPointF from = place_in_section(earlier);
    const QPointF to = place_in_section(pointer_);
    zoom_.across.drag(from.x(), to.x());
    zoom_.down.drag(from.y(), to.y());
    update();
  } else if (band_start_) {
    update();
  }
  Q_EMIT hovered(QString::fromStdString(section_text(picture_, sites_, zoom_, event->position())));
}

void PictureModel::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !band_start_) {
    return;
  }
  zoom_to_band(*band_start_, event->position());
  band_start_.reset();
  update();
}

void PictureModel::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    band_start_.reset();
    reset_zoom();
  }
}

void PictureModel::wheelEvent(QWheelEvent* event) {
  constexpr double notch = 120.0;
  constexpr double factor_of_notch = 0.8;
  const double factor = std::pow(factor_of_notch, event->angleDelta().y() / notch);
  const QPointF at = place_in_section(event->position());
  zoom_.across.zoom_about(at.x(), factor);
  zoom_.down.zoom_about(at.y(), factor);
  update();
  event->accept();
}

void PictureModel::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  Q_EMIT hovered(QString());
}

void PictureModel::contextMenuEvent(QContextMenuEvent* event) { Q_EMIT menu_asked_for(event->globalPos()); }
