// picture_drag.h: a picture that the left or the middle button drags, and the left one clicks.
//
// Positions are device-independent pixels in the picture.
#pragma once
#include <QPointF>
#include <Qt>
#include <optional>

class QMouseEvent;
class QWidget;

/// Takes the mouse events of the picture. A press that leaves its place is a drag up to its release.
class PictureDrag {
 public:
  explicit PictureDrag(QWidget& picture) : picture_(picture) {}

  void press(const QMouseEvent& event);
  /// @return where the pointer was before, while the picture is dragged
  std::optional<QPointF> move(const QMouseEvent& event);
  /// @return where the left button was pressed, if this is the end of a click
  std::optional<QPointF> release(const QMouseEvent& event);

 private:
  QWidget& picture_;
  Qt::MouseButton held_ = Qt::NoButton;
  QPointF pressed_at_;
  QPointF last_;
  bool dragging_ = false;
};
