#include "tests/soak/random_hand.h"

#include <QApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QSpinBox>
#include <QTest>
#include <QWheelEvent>
#include <algorithm>
#include <utility>

namespace {

constexpr int in_a_hundred = 100;

std::string described(const QWidget& widget) {
  std::string text = widget.metaObject()->className();
  const QWidget* named = &widget;
  while (named->objectName().isEmpty() && named->parentWidget() != nullptr) {
    named = named->parentWidget();
  }
  return text + " " + named->objectName().toStdString();
}

std::string described(QPoint at) { return std::to_string(at.x()) + "," + std::to_string(at.y()); }

void send_mouse(QWidget& widget, QEvent::Type type, QPoint at, Qt::MouseButton button,
                Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers = {}) {
  QMouseEvent event(type, at, widget.mapToGlobal(at), button, buttons, modifiers);
  QApplication::sendEvent(&widget, &event);
}

/// What gets the keys: a part that was hidden or disabled since it had the focus doesn't.
QWidget& part_with_keys(QWidget& window) {
  QWidget* const focus = window.focusWidget();
  return focus != nullptr && focus->isVisible() && focus->isEnabled() ? *focus : window;
}

void collect_items(const QList<QAction*>& actions, QList<QAction*>& items) {
  for (QAction* const action : actions) {
    if (!action->isVisible() || !action->isEnabled() || action->isSeparator()) {
      continue;
    }
    if (action->menu() != nullptr) {
      collect_items(action->menu()->actions(), items);
    } else {
      items.append(action);
    }
  }
}

}  // namespace

RandomHand::RandomHand(QMainWindow& main_window, std::uint32_t seed,
                       std::function<void(const std::string&)> report)
    : main_window_(main_window), random_(seed), report_(std::move(report)) {}

// Not the library's distributions: their numbers differ between libraries.
int RandomHand::number(int end) { return static_cast<int>(random_() % static_cast<std::uint32_t>(end)); }

QWidget& RandomHand::window_in_front(QMainWindow& main_window) {
  if (QWidget* const popup = QApplication::activePopupWidget()) {
    return *popup;
  }
  if (QWidget* const modal = QApplication::activeModalWidget()) {
    return *modal;
  }
  return main_window;
}

std::vector<QWidget*> RandomHand::windows_beside(const QMainWindow& main_window) {
  std::vector<QWidget*> beside;
  const auto add = [&](QWidget* window) {
    const Qt::WindowType type = window->windowType();
    if ((type == Qt::Window || type == Qt::Dialog) && window->isVisible() && !window->isModal()) {
      beside.push_back(window);
    }
  };
  // In the order of their making.
  std::ranges::for_each(main_window.findChildren<QWidget*>(), add);
  // Those that are nobody's children show a run each and come in an order that differs from time to time.
  QWidgetList others = QApplication::topLevelWidgets();
  others.removeIf(
      [&](const QWidget* window) { return window->parent() != nullptr || window == &main_window; });
  std::ranges::sort(others, {}, &QWidget::windowTitle);
  std::ranges::for_each(others, add);
  return beside;
}

QWidget& RandomHand::choose_window() {
  QWidget& front = window_in_front(main_window_);
  const std::vector<QWidget*> beside = windows_beside(main_window_);
  return &front == &main_window_ && !beside.empty() && number(2) == 0 ? *any(beside) : front;
}

void RandomHand::act(QWidget& window) {
  const auto* const with_menus = qobject_cast<QMainWindow*>(&window);
  const int kind = number(in_a_hundred);
  if (kind < 35) {
    click(any_part(window));
  } else if (kind < 41) {
    double_click(any_part(window));
  } else if (kind < 54) {
    drag(any_part(window));
  } else if (kind < 62) {
    turn_wheel(any_part(window));
  } else if (kind < 80) {
    press_key(window);
  } else if (kind < 91) {
    type_text(window);
  } else if (kind < 98) {
    if (with_menus != nullptr) {
      choose_menu_item(*with_menus);
    } else {
      click(any_part(window));
    }
  } else if (kind < 99) {
    change_size(window);
  } else if (&window != &main_window_) {
    close(window);
  }
}

QWidget& RandomHand::any_part(QWidget& window) {
  std::vector<QWidget*> parts{&window};
  for (QWidget* const part : window.findChildren<QWidget*>()) {
    if (part->isVisible() && part->isEnabled() && part->window() == &window && !part->size().isEmpty()) {
      parts.push_back(part);
    }
  }
  return *any(parts);
}

QPoint RandomHand::any_point(const QWidget& widget) {
  return {number(std::max(widget.width(), 1)), number(std::max(widget.height(), 1))};
}

Qt::KeyboardModifiers RandomHand::any_modifiers() {
  const int kind = number(in_a_hundred);
  return kind < 5    ? Qt::ControlModifier
         : kind < 10 ? Qt::ShiftModifier
         : kind < 12 ? Qt::AltModifier
                     : Qt::NoModifier;
}

void RandomHand::click(QWidget& widget) {
  const int kind = number(in_a_hundred);
  const Qt::MouseButton button = kind < 85 ? Qt::LeftButton : kind < 95 ? Qt::RightButton : Qt::MiddleButton;
  const Qt::KeyboardModifiers modifiers = any_modifiers();
  const QPoint at = any_point(widget);
  report_("click " + std::to_string(button) + " on " + described(widget) + " at " + described(at));
  const QPointer<QWidget> alive(&widget);
  send_mouse(widget, QEvent::MouseMove, at, Qt::NoButton, Qt::NoButton, modifiers);
  if (alive) {
    send_mouse(widget, QEvent::MouseButtonPress, at, button, button, modifiers);
  }
  if (alive) {
    send_mouse(widget, QEvent::MouseButtonRelease, at, button, Qt::NoButton, modifiers);
  }
  if (alive && button == Qt::RightButton) {
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, widget.mapToGlobal(at), modifiers);
    QApplication::sendEvent(&widget, &event);
  }
}

void RandomHand::double_click(QWidget& widget) {
  const QPoint at = any_point(widget);
  report_("double click on " + described(widget) + " at " + described(at));
  const QPointer<QWidget> alive(&widget);
  for (const QEvent::Type press : {QEvent::MouseButtonPress, QEvent::MouseButtonDblClick}) {
    if (alive) {
      send_mouse(widget, press, at, Qt::LeftButton, Qt::LeftButton);
    }
    if (alive) {
      send_mouse(widget, QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
    }
  }
}

void RandomHand::drag(QWidget& widget) {
  const Qt::MouseButton button = number(in_a_hundred) < 80 ? Qt::LeftButton : Qt::MiddleButton;
  const Qt::KeyboardModifiers modifiers = any_modifiers();
  const QPoint from = any_point(widget);
  const QPoint to = any_point(widget) + QPoint(number(81) - 40, number(81) - 40);  // may end outside
  report_("drag " + std::to_string(button) + " on " + described(widget) + " from " + described(from) +
          " to " + described(to));
  const QPointer<QWidget> alive(&widget);
  send_mouse(widget, QEvent::MouseButtonPress, from, button, button, modifiers);
  for (const QPoint at : {from + (to - from) / 3, from + (to - from) * 2 / 3, to}) {
    if (alive) {
      send_mouse(widget, QEvent::MouseMove, at, Qt::NoButton, button, modifiers);
    }
  }
  if (alive) {
    send_mouse(widget, QEvent::MouseButtonRelease, to, button, Qt::NoButton, modifiers);
  }
}

void RandomHand::turn_wheel(QWidget& widget) {
  const QPoint at = any_point(widget);
  const int angle = any(std::vector<int>{-1200, -120, -60, -15, 15, 60, 120, 1200});
  const Qt::KeyboardModifiers modifiers = any_modifiers();
  report_("wheel " + std::to_string(angle) + " on " + described(widget) + " at " + described(at));
  QWheelEvent event(at, widget.mapToGlobal(at), QPoint(), QPoint(0, angle), Qt::NoButton, modifiers,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(&widget, &event);
}

void RandomHand::press_key(QWidget& window) {
  static const std::vector<Qt::Key> keys{
      Qt::Key_Tab,  Qt::Key_Backtab, Qt::Key_Up,     Qt::Key_Down,   Qt::Key_Left,   Qt::Key_Right,
      Qt::Key_Home, Qt::Key_End,     Qt::Key_PageUp, Qt::Key_Delete, Qt::Key_Return, Qt::Key_PageDown,
      Qt::Key_F1,   Qt::Key_F2,      Qt::Key_F10,    Qt::Key_Escape, Qt::Key_Space,  Qt::Key_Backspace};
  const bool is_command = number(in_a_hundred) < 25;  // a letter with Alt or Ctrl
  const Qt::Key key = is_command ? static_cast<Qt::Key>(Qt::Key_A + number(26)) : any(keys);
  const Qt::KeyboardModifiers modifiers =
      is_command ? (number(2) == 0 ? Qt::AltModifier : Qt::ControlModifier) : any_modifiers();
  QWidget& target = part_with_keys(window);
  report_("key " + std::to_string(key) + " with " + std::to_string(modifiers) + " to " + described(target));
  const QString letter = is_command ? QString(QChar(key)).toLower() : QString();
  const QPointer<QWidget> alive(&target);
  QTest::sendKeyEvent(QTest::Press, &target, key, letter, modifiers);
  if (alive) {
    QTest::sendKeyEvent(QTest::Release, &target, key, letter, modifiers);
  }
}

void RandomHand::type_text(QWidget& window) {
  static const std::vector<QString> texts{
      "0", "1",   "2.5",   "-1", "1e400", "nan",    "99999999999", "1,5", "200E",           "abc", "", "%s%n",
      " ", "*.*", "0.001", "Ω",  "a'b;c", "../../", "survey",      "edi", QString(300, '7')};
  QList<QLineEdit*> boxes = window.findChildren<QLineEdit*>();
  boxes.removeIf([](const QLineEdit* box) { return !box->isVisible() || !box->isEnabled(); });
  QWidget* target = &part_with_keys(window);
  if (!boxes.empty() && number(in_a_hundred) < 80) {
    target = boxes[number(static_cast<int>(boxes.size()))];
    target->setFocus();
  }
  const QString& text = any(texts);
  const bool replaces = number(2) == 0;
  const bool enters = number(3) == 0;
  report_("text \"" + text.left(20).toStdString() + "\" to " + described(*target) +
          (enters ? " and Enter" : ""));
  const QPointer<QWidget> alive(target);
  if (auto* const box = qobject_cast<QLineEdit*>(target); box != nullptr && replaces) {
    box->selectAll();
  }
  for (const QChar letter : text) {
    if (alive) {
      QTest::sendKeyEvent(QTest::Press, alive, Qt::Key_unknown, QString(letter), Qt::NoModifier);
    }
  }
  if (alive && enters) {
    QTest::sendKeyEvent(QTest::Press, alive, Qt::Key_Return, "\r", Qt::NoModifier);
  }
}

void RandomHand::choose_menu_item(const QMainWindow& window) {
  QList<QAction*> items;
  collect_items(window.menuBar()->actions(), items);
  if (items.empty()) {
    return;
  }
  QAction* const item = items[number(static_cast<int>(items.size()))];
  report_("menu " + item->objectName().toStdString());
  item->trigger();
}

void RandomHand::change_size(QWidget& window) {
  const QSize size(200 + number(1400), 150 + number(900));
  report_("size " + described(window) + " " + described(QPoint(size.width(), size.height())));
  window.resize(size);
}

void RandomHand::close(QWidget& window) {
  report_("close " + described(window));
  window.close();
}
