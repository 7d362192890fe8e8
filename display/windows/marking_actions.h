// marking_actions.h: the keys of a window for the points that are marked in its graphs.
#pragma once
#include <QObject>
#include <array>

#include "reduction/edits/masks.h"

class QAction;
class QWidget;

/// Delete masks, Shift+Delete unmasks, Esc leaves what display/chosen_points holds. The actions have these
/// keys only while points are marked; else they are left to the window. In a text box, one that is only read
/// as well, Delete is about the text.
class MarkingActions : public QObject {
  Q_OBJECT

 public:
  explicit MarkingActions(QWidget& window);

  /// Has to be called after each change of what is marked.
  void show_count();
  /// For a menu.
  [[nodiscard]] const std::array<QAction*, 3>& actions() const { return actions_; }

 Q_SIGNALS:
  void edited();
  /// Nothing is marked any more, and nothing was edited.
  void left();
  /// Why an action has changed nothing.
  void told(const QString& text);

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  void mask(bool counts);

  std::array<QAction*, 3> actions_{};
};
