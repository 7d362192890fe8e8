// view_menu.h: what the menu of views switches: both modes, periods on the axes, the toolbar.
//
// Each is kept from one start of the program to the next.
#pragma once
#include <QObject>

class QAction;
class QMenu;
class QToolBar;
class SurveyDisplay;

class ViewMenu : public QObject {
  Q_OBJECT

 public:
  /// Adds the switches to a menu and sets the display to what was chosen last.
  ViewMenu(QMenu& menu, SurveyDisplay& display, QObject* parent);

  [[nodiscard]] QAction* both_modes() const { return both_modes_; }
  /// Hides and shows it from now on.
  void switch_toolbar(QToolBar& toolbar);

 private:
  QAction* add_switch(QMenu& menu, const QString& name, const QString& text, const QString& keys,
                      const QString& tip);
  void store() const;

  QAction* both_modes_;
  QAction* periods_;
  QAction* toolbar_;
};
