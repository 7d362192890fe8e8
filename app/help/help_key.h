// help_key.h: F1 brings up the tutorial, whichever window is being worked in.
#pragma once
#include <QObject>
#include <QPointer>

class Form_tutorial;
class QWidget;

class HelpKey : public QObject {
  Q_OBJECT

 public:
  /// @param main_window has the tutorial while no modal window is up; owns this object
  explicit HelpKey(QWidget& main_window);

  void show_tutorial();
  void show_keys();

 protected:
  /// Sees all keys of the program: a shortcut of the main window's menu doesn't work in the other windows.
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  void attach_tutorial(QWidget& window);

  QWidget& main_window_;
  QPointer<Form_tutorial> tutorial_;  // created when it is first asked for
};
