// pointer.h: the hand on the mouse, as events of a widget.
//
// The test library moves the real pointer instead, which says nothing about a window without a screen.
#pragma once
#include <QApplication>
#include <QMouseEvent>
#include <QTest>
#include <QWheelEvent>
#include <QWidget>

inline void move_pointer(QWidget& widget, QPoint to, Qt::MouseButtons buttons = Qt::NoButton) {
  QMouseEvent event(QEvent::MouseMove, to, widget.mapToGlobal(to), Qt::NoButton, buttons, Qt::NoModifier);
  QApplication::sendEvent(&widget, &event);
}

inline void drag(QWidget& widget, QPoint from, QPoint to, Qt::MouseButton button = Qt::LeftButton,
                 Qt::KeyboardModifiers keys = {}) {
  QTest::mousePress(&widget, button, keys, from);
  move_pointer(widget, (from + to) / 2, button);
  move_pointer(widget, to, button);
  QTest::mouseRelease(&widget, button, {}, to);
}

/// Marks what is within a rectangle.
inline void drag_with_shift(QWidget& graph, QPoint from, QPoint to) {
  drag(graph, from, to, Qt::LeftButton, Qt::ShiftModifier);
}

inline void turn_wheel(QWidget& widget, QPointF at, int angle) {
  QWheelEvent event(at, widget.mapToGlobal(at), QPoint(), QPoint(0, angle), Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(&widget, &event);
}
