// input_only_to.h: limits keys and mouse to one window while it runs events during its work.
#pragma once
#include <QObject>
#include <QPointer>

class QWidget;

/// For its life, keys, clicks, the wheel and closing reach only this window, its children and modal dialogs;
/// the other windows are drawn, but don't react. Only the window that it belongs to can be closed, and closes
/// it in turn. The window may be deleted meanwhile; then no window reacts.
class InputOnlyTo : public QObject {
 public:
  explicit InputOnlyTo(QWidget& window);
  ~InputOnlyTo() override;

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  [[nodiscard]] bool is_within(const QObject* receiver) const;
  [[nodiscard]] bool belongs_to(const QObject* receiver) const;

  QPointer<QWidget> window_;
};
