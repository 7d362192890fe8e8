#include "app/panel_controls.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QLineEdit>

QLineEdit* make_text(const QString& name, int characters, bool read_only) {
  auto* const text = named(new QLineEdit, name);
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

QLabel* make_heading(const QString& name) {
  auto* const label = named(new QLabel, name);
  label->setTextFormat(Qt::PlainText);
  label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  return label;
}

void add_labelled(QBoxLayout& row, const QString& label, QWidget* control) {
  auto* const caption = new QLabel(label);
  caption->setBuddy(control);
  row.addWidget(caption);
  row.addWidget(control);
}
