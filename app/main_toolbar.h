// main_toolbar.h: the row of buttons below the menus: what people do most.
#pragma once
#include <QList>
#include <QToolBar>

#include "app/toolbar_icons.h"

class MainToolbar : public QToolBar {
  Q_OBJECT

 public:
  explicit MainToolbar(QWidget* parent);

  /// A button for a menu item that is there already. Its key is part of the tip.
  void add_item(QAction& item, ToolbarIcon icon, const QString& tip);
  /// A button of the toolbar's own.
  QAction* add_button(const QString& name, ToolbarIcon icon, const QString& text, const QString& tip);

  /// Which items do nothing without an open survey, and which nothing without readings in it.
  void set_needs(const QList<QAction*>& survey, const QList<QAction*>& readings);
  void enable_items(bool survey, bool readings);

 private:
  QList<QAction*> need_survey_;
  QList<QAction*> need_readings_;
};
