#include "app/view_menu.h"

#include <QAction>
#include <QMenu>
#include <QToolBar>

#include "app/survey_display.h"
#include "app/view_settings.h"
#include "display/both_modes.h"
#include "platform/graph/frequency_axis.h"

ViewMenu::ViewMenu(QMenu& menu, SurveyDisplay& display, QObject* parent) : QObject(parent) {
  menu.addSeparator();
  both_modes_ = add_switch(menu, "menu_both_modes", "&Both Modes", "Ctrl+B",
                           "The graphs of a station show ExHy and EyHx together");
  periods_ = add_switch(menu, "menu_periods", "P&eriods", "Ctrl+T",
                        "Axes of frequency show periods, which rise to the right");
  toolbar_ = add_switch(menu, "menu_toolbar", "&Toolbar", {}, "The row of buttons below the menus");
  const Module_Brenlox::ViewSettings settings = Module_Brenlox::load_view_settings();
  both_modes_->setChecked(settings.both_modes);
  periods_->setChecked(settings.periods);
  toolbar_->setChecked(settings.toolbar);
  Module_display_data::ask_for_both_modes(settings.both_modes);
  graph::FrequencyAxis::instance().show_periods(settings.periods);
  connect(both_modes_, &QAction::toggled, &display, &SurveyDisplay::show_both_modes);
  connect(periods_, &QAction::toggled, &graph::FrequencyAxis::instance(),
          &graph::FrequencyAxis::show_periods);
  for (const QAction* const item : {both_modes_, periods_, toolbar_}) {
    connect(item, &QAction::toggled, this, &ViewMenu::store);
  }
}

QAction* ViewMenu::add_switch(QMenu& menu, const QString& name, const QString& text, const QString& keys,
                              const QString& tip) {
  QAction* const item = menu.addAction(text);
  item->setObjectName(name);
  item->setCheckable(true);
  item->setShortcut(QKeySequence(keys));
  item->setToolTip(tip);
  return item;
}

void ViewMenu::switch_toolbar(QToolBar& toolbar) {
  toolbar.setVisible(toolbar_->isChecked());
  connect(toolbar_, &QAction::toggled, &toolbar, &QToolBar::setVisible);
}

void ViewMenu::store() const {
  Module_Brenlox::store_view_settings(
      {both_modes_->isChecked(), periods_->isChecked(), toolbar_->isChecked()});
}
