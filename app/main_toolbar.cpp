#include "app/main_toolbar.h"

#include <QAction>
#include <QLayout>

namespace {

constexpr int icon_size = 20;  // low windows need the height for their graphs

}  // namespace

MainToolbar::MainToolbar(QWidget* parent) : QToolBar("Toolbar", parent) {
  setObjectName("Toolbar_main");
  setAccessibleName("Toolbar");
  setMovable(false);
  setFloatable(false);
  setIconSize({icon_size, icon_size});
  layout()->setContentsMargins(2, 0, 2, 0);
  setContextMenuPolicy(Qt::PreventContextMenu);  // the menu View hides it, and remembers that
}

void MainToolbar::add_item(QAction& item, ToolbarIcon icon, const QString& tip) {
  const QString keys = item.shortcut().toString(QKeySequence::NativeText);
  item.setIcon(toolbar_icon(icon));
  item.setIconVisibleInMenu(false);
  item.setToolTip(keys.isEmpty() ? tip : tip + " (" + keys + ")");
  addAction(&item);
}

QAction* MainToolbar::add_button(const QString& name, ToolbarIcon icon, const QString& text,
                                 const QString& tip) {
  QAction* const action = addAction(toolbar_icon(icon), text);
  action->setObjectName(name);
  action->setToolTip(tip);
  return action;
}

void MainToolbar::set_needs(const QList<QAction*>& survey, const QList<QAction*>& readings) {
  need_survey_ = survey;
  need_readings_ = readings;
}

void MainToolbar::enable_items(bool survey, bool readings) {
  for (QAction* const item : need_survey_) {
    item->setEnabled(survey);
  }
  for (QAction* const item : need_readings_) {
    item->setEnabled(survey && readings);
  }
}
