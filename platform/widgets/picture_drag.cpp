#include "platform/widgets/picture_drag.h"

#include <QMouseEvent>
#include <QWidget>
#include <utility>

void PictureDrag::press(const QMouseEvent& event) {
  if (held_ == Qt::NoButton && (event.button() == Qt::LeftButton || event.button() == Qt::MiddleButton)) {
    held_ = event.button();
    pressed_at_ = last_ = event.position();
    dragging_ = false;
  }
}

std::optional<QPointF> PictureDrag::move(const QMouseEvent& event) {
  constexpr double click_distance = 4.0;  // pixels; beyond it a press is a drag
  if (held_ != Qt::NoButton && !dragging_ &&
      (event.position() - pressed_at_).manhattanLength() > click_distance) {
    dragging_ = true;
    picture_.setCursor(Qt::ClosedHandCursor);
  }
  return dragging_ ? std::optional(std::exchange(last_, event.position())) : std::nullopt;
}

std::optional<QPointF> PictureDrag::release(const QMouseEvent& event) {
  if (event.button() != held_) {
    return std::nullopt;
  }
  const bool clicked = held_ == Qt::LeftButton && !dragging_;
  held_ = Qt::NoButton;
  dragging_ = false;
  picture_.unsetCursor();
  return clicked ? std::optional(pressed_at_) : std::nullopt;
}
