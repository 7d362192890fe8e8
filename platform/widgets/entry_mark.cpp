#include "platform/widgets/entry_mark.h"

#include <QAction>
#include <QLineEdit>
#include <QStyle>
#include <QVariant>

namespace {

constexpr const char* mark_name = "Mark_of_entry";
constexpr const char* usual_tool_tip = "usual_tool_tip";

QAction* mark_of(const QLineEdit& box) {
  return box.findChild<QAction*>(mark_name, Qt::FindDirectChildrenOnly);
}

}  // namespace

bool is_marked(const QLineEdit& box) { return mark_of(box) != nullptr; }

void mark_entry(QLineEdit& box, const QString& fault) {
  QAction* mark = mark_of(box);
  if (fault.isEmpty()) {
    if (mark != nullptr) {
      box.setToolTip(box.property(usual_tool_tip).toString());
      box.setAccessibleDescription({});
      delete mark;
    }
    return;
  }
  if (mark == nullptr) {
    box.setProperty(usual_tool_tip, box.toolTip());
    mark =
        box.addAction(box.style()->standardIcon(QStyle::SP_MessageBoxWarning), QLineEdit::TrailingPosition);
    mark->setParent(&box);
    mark->setObjectName(mark_name);
  }
  mark->setToolTip(fault);
  box.setToolTip(fault);
  box.setAccessibleDescription(fault);
}
