#include "platform/graph/mouse_gestures.h"

#include <QMouseEvent>
#include <QWheelEvent>
#include <QWidget>

namespace graph {

MouseGestures::MouseGestures(QWidget& widget) : QObject(&widget) {
  widget.setMouseTracking(true);
  widget.installEventFilter(this);
}

bool MouseGestures::eventFilter(QObject* /*watched*/, QEvent* event) {
  switch (event->type()) {
    case QEvent::MouseButtonPress:
      return press(*static_cast<QMouseEvent*>(event));
    case QEvent::MouseMove:
      return move(*static_cast<QMouseEvent*>(event));
    case QEvent::MouseButtonRelease:
      return release(*static_cast<QMouseEvent*>(event));
    case QEvent::MouseButtonDblClick: {
      const bool began = press(*static_cast<QMouseEvent*>(event));
      if (state_ == State::pressed) {
        state_ = State::pressed_again;
      }
      return began;
    }
    case QEvent::Wheel: {
      const auto& wheel = *static_cast<QWheelEvent*>(event);
      constexpr double units_per_notch = 120.0;
      const double notches = wheel.angleDelta().y() / units_per_notch;
      if (notches != 0.0 && state_ == State::idle) {
        Q_EMIT wheel_turned(wheel.position(), notches);
      }
      return true;
    }
    case QEvent::Leave:
      Q_EMIT left();
      return false;
    case QEvent::Hide:
      cancel();
      return false;
    default:
      return false;
  }
}

bool MouseGestures::press(const QMouseEvent& event) {
  if (state_ != State::idle) {  // a second button cancels what the first one began
    cancel();
    return true;
  }
  pressed_at_ = last_ = event.position();
  shift_held_ = event.modifiers().testFlag(Qt::ShiftModifier);
  if (event.button() == Qt::LeftButton) {
    state_ = State::pressed;
    return true;
  }
  if (event.button() == Qt::MiddleButton) {
    state_ = State::pan;
    return true;
  }
  return false;
}

bool MouseGestures::move(const QMouseEvent& event) {
  const QPointF at = event.position();
  if ((state_ == State::pressed || state_ == State::pressed_again) && !is_still(at)) {
    state_ = State::band;
  }
  if (state_ == State::band) {
    Q_EMIT band_dragged(pressed_at_, at);
  } else if (state_ == State::pan) {
    Q_EMIT panned(last_, at);
  } else if (state_ == State::idle) {
    Q_EMIT hovered(at);
  }
  last_ = at;
  return true;
}

bool MouseGestures::release(const QMouseEvent& event) {
  const State ended = state_;
  if (ended == State::band && event.button() == Qt::LeftButton) {
    state_ = State::idle;
    Q_EMIT band_released(pressed_at_, event.position());
    Q_EMIT hovered(event.position());
    return true;
  }
  if ((ended == State::pressed || ended == State::pressed_again) && event.button() == Qt::LeftButton) {
    state_ = State::idle;
    if (!is_still(event.position())) {
      return true;
    }
    if (ended == State::pressed) {
      Q_EMIT clicked(pressed_at_);
    } else {
      Q_EMIT double_clicked(pressed_at_);
    }
    return true;
  }
  if (ended == State::pan && event.button() == Qt::MiddleButton) {
    state_ = State::idle;
    Q_EMIT hovered(event.position());
    return true;
  }
  return ended != State::idle;
}

bool MouseGestures::is_still(QPointF at) const {
  const QPointF offset = at - pressed_at_;
  return QPointF::dotProduct(offset, offset) <= click_distance * click_distance;
}

void MouseGestures::cancel() {
  if (state_ == State::band) {
    Q_EMIT band_cancelled();
  }
  state_ = State::idle;
}

}  // namespace graph
