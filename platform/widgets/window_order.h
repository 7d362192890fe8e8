// window_order.h: closing a window goes back to the one before it.
#pragma once
#include <QList>
#include <QObject>
#include <QPointer>

class QWidget;

/// For its life, in all windows: when the window that has the keys goes, the one that had them before gets
/// them again. Some desktops give them to the window's owner instead, over windows that were opened since.
class WindowOrder : public QObject {
 public:
  explicit WindowOrder(QObject* parent = nullptr);

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  void take_keys(QWidget& window);
  void go_back_from(QWidget& window);

  QList<QPointer<QWidget>> windows_;  // the one that had the keys last at the end
};
