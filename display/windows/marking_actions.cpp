#include "display/windows/marking_actions.h"

#include <QAbstractSpinBox>
#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>

#include "display/chosen_points.h"

namespace {

bool holds_text(const QObject& control) {
  return qobject_cast<const QLineEdit*>(&control) != nullptr ||
         qobject_cast<const QPlainTextEdit*>(&control) != nullptr ||
         qobject_cast<const QTextEdit*>(&control) != nullptr ||
         qobject_cast<const QAbstractSpinBox*>(&control) != nullptr;
}

}  // namespace

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
  qApp->installEventFilter(this);
}

bool MarkingActions::eventFilter(QObject* receiver, QEvent* event) {
  if (event->type() != QEvent::ShortcutOverride ||
      static_cast<const QKeyEvent*>(event)->key() != Qt::Key_Delete || !holds_text(*receiver)) {
    return false;
  }
  event->accept();  // the box gets the key, and no shortcut does
  return true;
}

void MarkingActions::show_count() {
  for (QAction* const action : actions_) {
    action->setEnabled(Module_display_data::chosen_count() > 0);
  }
}

void MarkingActions::mask(bool counts) {
  const Module_averaged_data::Edit edit = Module_display_data::mask_chosen_points(counts);
  if (edit == Module_averaged_data::Edit::changed) {
    Q_EMIT edited();
  } else if (edit == Module_averaged_data::Edit::nothing && Module_display_data::chosen_points_are(counts)) {
    Q_EMIT told(counts ? "Nothing to unmask: no point that is marked is masked"
                       : "Nothing to mask: all points that are marked are masked already");
  }
}
