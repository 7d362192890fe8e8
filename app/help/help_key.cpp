#include "app/help/help_key.h"

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>

#include "app/help/Form_tutorial.h"

namespace {

bool stands_over(const QWidget& window, const QWidget& other) {
  const QWidget* each = window.parentWidget();
  while (each != nullptr && each != &other) {
    each = each->parentWidget();
  }
  return each != nullptr;
}

}  // namespace

HelpKey::HelpKey(QWidget& main_window) : QObject(&main_window), main_window_(main_window) {
  qApp->installEventFilter(this);
}

void HelpKey::show_tutorial() {
  QWidget* const modal = QApplication::activeModalWidget();
  if (modal != nullptr && tutorial_ && stands_over(*modal, *tutorial_)) {
    return;  // it came up while the tutorial was being read, and can't have its own parent as a child
  }
  attach_tutorial(modal != nullptr && modal != tutorial_ ? *modal : main_window_);
  tutorial_->show();
  tutorial_->raise();
  tutorial_->activateWindow();
}

void HelpKey::show_keys() {
  show_tutorial();
  tutorial_->show_page("keys.md");
}

// While a modal window is up only its own child windows take input, so the tutorial is one of them for as
// long as the modal window is there.
void HelpKey::attach_tutorial(QWidget& window) {
  if (!tutorial_) {
    tutorial_ = new Form_tutorial(&window);
  } else if (tutorial_->parentWidget() != &window) {
    const bool is_read = tutorial_->isVisible();
    tutorial_->setParent(&window, tutorial_->windowFlags());
    tutorial_->setVisible(is_read);
  }
  if (auto* const dialog = qobject_cast<QDialog*>(&window)) {
    const auto pass_on = [this, dialog] {
      if (tutorial_ && tutorial_->parentWidget() == dialog) {
        QWidget* const behind = dialog->parentWidget();
        attach_tutorial(behind != nullptr ? *behind->window() : main_window_);
      }
    };
    connect(dialog, &QDialog::finished, this, pass_on, Qt::SingleShotConnection);
  }
}

bool HelpKey::eventFilter(QObject* receiver, QEvent* event) {
  if (event->type() == QEvent::KeyPress && receiver->isWidgetType()) {
    const auto& key = static_cast<const QKeyEvent&>(*event);
    if (key.key() == Qt::Key_F1 && key.modifiers() == Qt::NoModifier) {
      show_tutorial();
      return true;
    }
  }
  return QObject::eventFilter(receiver, event);
}
