#include "platform/widgets/window_order.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

WindowOrder::WindowOrder(QObject* parent) : QObject(parent) { qApp->installEventFilter(this); }

bool WindowOrder::eventFilter(QObject* receiver, QEvent* event) {
  const bool comes = event->type() == QEvent::WindowActivate;
  if ((comes || event->type() == QEvent::Hide) && receiver->isWidgetType()) {
    auto& widget = *static_cast<QWidget*>(receiver);
    const Qt::WindowType type = widget.windowType();
    if (widget.isWindow() && (type == Qt::Window || type == Qt::Dialog)) {  // no menus and tool tips
      if (comes) {
        take_keys(widget);
      } else if (!event->spontaneous()) {
        go_back_from(widget);
      }
    }
  }
  return false;
}

void WindowOrder::take_keys(QWidget& window) {
  windows_.removeAll(&window);
  windows_.removeAll(nullptr);  // those that are gone
  windows_.append(&window);
}

void WindowOrder::go_back_from(QWidget& window) {
  const bool had_the_keys = !windows_.isEmpty() && windows_.last() == &window;
  windows_.removeAll(&window);
  windows_.removeAll(nullptr);
  for (qsizetype i = windows_.size(); had_the_keys && i-- > 0;) {
    QWidget& before = *windows_[i];
    if (before.isVisible() && !before.isMinimized() && !window.isAncestorOf(&before)) {
      before.raise();
      before.activateWindow();
      return;
    }
  }
}
