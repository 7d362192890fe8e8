// panel_controls.h: small controls that panels and windows create in the same way.
#pragma once
#include <QLabel>
#include <QSize>
#include <QString>
#include <string>

class QBoxLayout;
class QComboBox;
class QLineEdit;

template <class Widget>
Widget* named(Widget* widget, const QString& name) {
  widget->setObjectName(name);
  return widget;
}

inline QString qt_text(const std::string& text) { return QString::fromStdString(text); }
/// For a tool tip, which takes what looks like tags for such.
inline QString plain_tool_tip(const QString& text) {
  return text.isEmpty() ? text : "<span>" + text.toHtmlEscaped() + "</span>";
}

/// A line of text that is as wide as `characters` digits.
QLineEdit* make_text(const QString& name, int characters, bool read_only = false);

/// A list that is as wide as its longest item.
QComboBox* make_list(const QString& name);

/// A heading that may be cut off where its panel is narrow.
QLabel* make_heading(const QString& name);

/// Gives a window a size, or less where its screen has no room for it with its frame.
void resize_to_fit(QWidget& window, QSize wanted);

/// Adds a control after its label, whose shortcut moves the focus to it.
void add_labelled(QBoxLayout& row, const QString& label, QWidget* control);
