// random_hand.h: a hand that works windows at random: clicks, double clicks, drags, wheel, keys, text, menus.
//
// The same seed does the same things to the same windows.
#pragma once
#include <QPointer>
#include <QWidget>
#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <vector>

class QMainWindow;

class RandomHand {
 public:
  /// `report` gets each step's description before it is done, so that it is known after a crash.
  RandomHand(QMainWindow& main_window, std::uint32_t seed, std::function<void(const std::string&)> report);

  /// What holds the others: an open menu or list, a dialog; else the main window.
  [[nodiscard]] static QWidget& window_in_front(QMainWindow& main_window);

  /// The modeless windows beside the main window.
  [[nodiscard]] static std::vector<QWidget*> windows_beside(const QMainWindow& main_window);

  /// The window in front, or one of those beside the main window if it is that one.
  [[nodiscard]] QWidget& choose_window();

  /// Does one step on a window.
  void act(QWidget& window);

  /// A whole number from 0 to `end` - 1.
  int number(int end);

  template <class T>
  const T& any(const std::vector<T>& choices) {
    return choices[static_cast<std::size_t>(number(static_cast<int>(choices.size())))];
  }

 private:
  void click(QWidget& widget);
  void double_click(QWidget& widget);
  void drag(QWidget& widget);
  void turn_wheel(QWidget& widget);
  void press_key(QWidget& window);
  void type_text(QWidget& window);
  void choose_menu_item(const QMainWindow& window);
  void change_size(QWidget& window);
  void close(QWidget& window);

  [[nodiscard]] QWidget& any_part(QWidget& window);
  [[nodiscard]] QPoint any_point(const QWidget& widget);
  [[nodiscard]] Qt::KeyboardModifiers any_modifiers();

  QMainWindow& main_window_;
  std::mt19937 random_;
  std::function<void(const std::string&)> report_;
};
