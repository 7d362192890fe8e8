#include "platform/widgets/panel_controls.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScreen>

#include "platform/widgets/heading_label.h"

namespace {

/// A text box that leaves undo and redo to the window while nothing typed can be undone.
class ValueText final : public QLineEdit {
 protected:
  bool event(QEvent* event) override {
    if (event->type() == QEvent::ShortcutOverride) {
      const auto& key = *static_cast<QKeyEvent*>(event);
      if ((key.matches(QKeySequence::Undo) && !isUndoAvailable()) ||
          (key.matches(QKeySequence::Redo) && !isRedoAvailable())) {
        event->ignore();
        return false;
      }
    }
    return QLineEdit::event(event);
  }
};

}  // namespace

QLineEdit* make_text(const QString& name, int characters, bool read_only) {
  auto* const text = named<QLineEdit>(new ValueText, name);
  constexpr int frame_characters = 2;
  text->setFixedWidth(text->fontMetrics().horizontalAdvance('0') * (characters + frame_characters));
  text->setReadOnly(read_only);
  if (read_only) {
    text->setFocusPolicy(Qt::ClickFocus);
  }
  return text;
}

QComboBox* make_list(const QString& name) {
  auto* const list = named(new QComboBox, name);
  list->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  return list;
}

QLabel* make_heading(const QString& name) { return named(new HeadingLabel, name); }

void resize_to_fit(QWidget& window, QSize wanted) {
  constexpr double of_the_width = 0.95;
  constexpr double of_the_height = 0.9;  // the title is above
  const QSize room = window.screen()->availableSize();
  window.resize(wanted.boundedTo(
      {static_cast<int>(room.width() * of_the_width), static_cast<int>(room.height() * of_the_height)}));
}

void add_labelled(QBoxLayout& row, const QString& label, QWidget* control) {
  auto* const caption = new QLabel(label);
  caption->setBuddy(control);
  row.addWidget(caption);
  row.addWidget(control);
}
