#include "occam/windows/picture_model.h"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <utility>

#include "formats/occam/occam_state.h"

using namespace Module_occam;

PictureModel::PictureModel(QWidget* parent) : QWidget(parent) {
  setObjectName("Picture_model");
  setMouseTracking(true);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void PictureModel::show_picture(SectionPicture picture) {
  picture_ = std::move(picture);
  update();
}

void PictureModel::reset_zoom() {
  zoom_.reset();
  update();
}

QPointF PictureModel::share_of_plot(QPointF at) const {
  const QRectF plot = plot_area(picture_.geometry.picture);
  return {std::clamp((at.x() - plot.left()) / plot.width(), 0.0, 1.0),
          std::clamp((at.y() - plot.top()) / plot.height(), 0.0, 1.0)};
}

void PictureModel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  paint_section(painter, picture_, occam_state().data, zoom_);
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
    const QPointF moved = share_of_plot(pointer_) - share_of_plot(earlier);
    zoom_.drag(moved.x(), moved.y());
    update();
  } else if (band_start_) {
    update();
  }
  Q_EMIT hovered(
      QString::fromStdString(section_text(picture_, occam_state().data, zoom_, event->position())));
}

void PictureModel::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !band_start_) {
    return;
  }
  const QPointF from = share_of_plot(*band_start_);
  const QPointF to = share_of_plot(event->position());
  band_start_.reset();
  zoom_.show(from.x(), from.y(), to.x(), to.y());
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
  const QPointF at = share_of_plot(event->position());
  zoom_.zoom_about(at.x(), at.y(), std::pow(factor_of_notch, event->angleDelta().y() / notch));
  update();
  event->accept();
}

void PictureModel::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  Q_EMIT hovered(QString());
}

void PictureModel::contextMenuEvent(QContextMenuEvent* event) { Q_EMIT menu_asked_for(event->globalPos()); }
