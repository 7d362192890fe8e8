#include "display/windows/marking_actions.h"

#include <QAction>
#include <QWidget>

#include "display/chosen_points.h"

MarkingActions::MarkingActions(QWidget& window) : QObject(&window) {
  struct Item {
    const char* name;
    const char* text;
    const char* keys;
    const char* tip;
  };
  constexpr std::array<Item, 3> items{{
      {"menu_mask_marked", "&Mask marked points", "Del",
       "Masks the points that Shift and a drag have marked"},
      {"menu_unmask_marked", "U&nmask marked points", "Shift+Del",
       "Takes the masks of the marked points away"},
      {"menu_leave_marked", "&Leave marked points", "Esc", "Marks nothing any more; the data stay"},
  }};
  for (std::size_t i = 0; i < items.size(); ++i) {
    actions_.at(i) = new QAction(items.at(i).text, &window);
    actions_.at(i)->setObjectName(items.at(i).name);
    actions_.at(i)->setShortcut(QKeySequence(items.at(i).keys));
    actions_.at(i)->setToolTip(items.at(i).tip);
    actions_.at(i)->setStatusTip(items.at(i).tip);
    window.addAction(actions_.at(i));
  }
  connect(actions_[0], &QAction::triggered, this, [this] { mask(false); });
  connect(actions_[1], &QAction::triggered, this, [this] { mask(true); });
  connect(actions_[2], &QAction::triggered, this, [this] {
    Module_display_data::forget_chosen_points();
    Q_EMIT left();
  });
  show_count();
}

void MarkingActions::show_count() {
  for (QAction* const action : actions_) {
    action->setEnabled(Module_display_data::chosen_count() > 0);
  }
}

void MarkingActions::mask(bool counts) {
  if (Module_display_data::mask_chosen_points(counts) == Module_averaged_data::Edit::changed) {
    Q_EMIT edited();
  }
}
