#include "platform/widgets/input_only_to.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

namespace {

bool is_input(QEvent::Type type) {
  switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::TouchBegin:
    case QEvent::Close:
      return true;
    default:
      return false;
  }
}

}  // namespace

InputOnlyTo::InputOnlyTo(QWidget& window) : window_(&window) { qApp->installEventFilter(this); }

InputOnlyTo::~InputOnlyTo() { qApp->removeEventFilter(this); }

bool InputOnlyTo::eventFilter(QObject* receiver, QEvent* event) {
  // Native windows pass their events on to widgets, and only those are filtered.
  if (receiver->isWindowType() || !is_input(event->type()) || is_within(receiver)) {
    return false;
  }
  if (event->type() == QEvent::Close && belongs_to(receiver)) {
    return false;
  }
  if (QApplication::activeModalWidget() != nullptr) {
    return false;  // it blocks the other windows itself
  }
  event->ignore();  // otherwise a close would go on
  return true;
}

bool InputOnlyTo::is_within(const QObject* receiver) const {
  while (receiver != nullptr && receiver != window_) {
    receiver = receiver->parent();
  }
  return receiver != nullptr;
}

bool InputOnlyTo::belongs_to(const QObject* receiver) const {
  const QWidget* const owner = window_ ? window_->parentWidget() : nullptr;
  return owner != nullptr && owner->window() == receiver;
}
