#include "platform/widgets/typed_text.h"

#include <QAbstractButton>
#include <QAbstractItemDelegate>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QLineEdit>
#include <QTabBar>

namespace {

/// The view whose cell a widget edits; null for any other widget.
QAbstractItemView* view_of_editor(const QWidget& editor) {
  const QWidget* const viewport = editor.parentWidget();
  auto* const view =
      viewport != nullptr ? qobject_cast<QAbstractItemView*>(viewport->parentWidget()) : nullptr;
  return view != nullptr && view->viewport() == viewport ? view : nullptr;
}

/// @return false if the widget, or one that it is a part of, is no open cell
bool close_cell(QWidget* typed) {
  for (QWidget* editor = typed; editor != nullptr && !editor->isWindow(); editor = editor->parentWidget()) {
    if (const QAbstractItemView* const view = view_of_editor(*editor)) {
      QAbstractItemDelegate* const delegate = view->itemDelegate();
      Q_EMIT delegate->commitData(editor);
      Q_EMIT delegate->closeEditor(editor);
      return true;
    }
  }
  return false;
}

void finish_typing(QLineEdit& box) {
  if (!box.isReadOnly() && box.isModified() && box.hasAcceptableInput()) {
    Q_EMIT box.editingFinished();
    box.setModified(false);  // taken once; a text that was refused stays to be corrected
  }
}

/// Controls that begin something when they are clicked or the wheel turns over them.
bool works(const QWidget& control) {
  return qobject_cast<const QAbstractButton*>(&control) != nullptr ||
         qobject_cast<const QAbstractSlider*>(&control) != nullptr ||
         qobject_cast<const QAbstractSpinBox*>(&control) != nullptr ||
         qobject_cast<const QComboBox*>(&control) != nullptr ||
         qobject_cast<const QTabBar*>(&control) != nullptr;
}

/// Whether an event begins something elsewhere than where the focus is, and leaves it there.
bool begins_work(const QObject& receiver, QEvent::Type type) {
  if (type == QEvent::Shortcut) {
    return true;
  }
  const auto* const control = qobject_cast<const QWidget*>(&receiver);
  if (control == nullptr || control->hasFocus()) {
    return false;
  }
  switch (type) {
    case QEvent::Close:  // not of the box's own menu
      return control->windowType() == Qt::Window || control->windowType() == Qt::Dialog;
    case QEvent::Wheel:
      return works(*control);
    case QEvent::MouseButtonPress:
      return works(*control) && (control->focusPolicy() & Qt::ClickFocus) == 0;
    default:
      return false;
  }
}

}  // namespace

void take_typed_text() {
  QWidget* const typed = QApplication::focusWidget();
  if (typed == nullptr || close_cell(typed)) {
    return;
  }
  if (auto* const spin_box = qobject_cast<QAbstractSpinBox*>(typed)) {
    spin_box->interpretText();
  } else if (const auto* const list = qobject_cast<QComboBox*>(typed);
             list != nullptr && list->isEditable()) {
    finish_typing(*list->lineEdit());
  } else if (auto* const box = qobject_cast<QLineEdit*>(typed)) {
    finish_typing(*box);
  }
}

void take_typed_text_before_menus(QWidget& window) {
  for (const QAction* const item : window.findChildren<QAction*>()) {
    QObject::connect(item, &QAction::triggered, &window, [] { take_typed_text(); });
  }
}

TypedTextFirst::TypedTextFirst(QObject* parent) : QObject(parent) { qApp->installEventFilter(this); }

bool TypedTextFirst::eventFilter(QObject* receiver, QEvent* event) {
  if (begins_work(*receiver, event->type())) {
    take_typed_text();
  }
  return false;
}
