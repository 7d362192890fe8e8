// mouse_gestures.h: distinguishes clicks, drags, double clicks and the wheel on one widget.
//
// A click is a left press and release that never left a few pixels in between; it is reported on release, at
// once. A drag is reported as soon as the pointer leaves that neighbourhood and can't become a click again.
// The second click of a double click is reported as such, on its release too, so two quick clicks at one
// place are one click and one double click. Positions are device-independent pixels in the widget.
#pragma once
#include <QObject>
#include <QPointF>

class QMouseEvent;
class QWheelEvent;
class QWidget;

namespace graph {

class MouseGestures final : public QObject {
  Q_OBJECT

 public:
  explicit MouseGestures(QWidget& widget);

  static constexpr double click_distance = 3.0;  // pixels

  /// Whether the Shift key was held where the drag began that is being reported.
  bool shift_held() const { return shift_held_; }

 Q_SIGNALS:
  void clicked(QPointF at);
  void double_clicked(QPointF at);
  void hovered(QPointF at);
  void left();
  void band_dragged(QPointF from, QPointF to);
  void band_released(QPointF from, QPointF to);
  void band_cancelled();
  void panned(QPointF from, QPointF to);  // since the last report
  void wheel_turned(QPointF at, double notches);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  enum class State { idle, pressed, pressed_again, band, pan };

  bool press(const QMouseEvent& event);
  bool move(const QMouseEvent& event);
  bool release(const QMouseEvent& event);
  void cancel();
  bool is_still(QPointF at) const;

  State state_ = State::idle;
  QPointF pressed_at_;
  QPointF last_;
  bool shift_held_ = false;
};

}  // namespace graph
