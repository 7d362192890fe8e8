// typed_text.h: what is being typed counts before anything else begins.
//
// A text box tells its text when it loses the focus. Mnemonics, shortcuts, function keys, the wheel and the
// window's close button leave the focus where it is: without help they would work with the old text, and the
// typed one would come in the middle of their work or never.
#pragma once
#include <QObject>

class QWidget;

/// Takes over what is being typed in the text box, spin box or table cell that has the focus, as leaving it
/// does. An open cell closes; a box keeps the focus.
void take_typed_text();

/// The same before each menu item of a window does its work. Call it once all items are there, and before
/// they are connected.
void take_typed_text_before_menus(QWidget& window);

/// For its life, in all windows: shortcuts and mnemonics, the wheel and the mouse over controls that don't
/// take the focus, and the closing of a window first take over what is being typed.
class TypedTextFirst : public QObject {
 public:
  explicit TypedTextFirst(QObject* parent = nullptr);

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override;
};
