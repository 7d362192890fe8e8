// input_only_to.h: one window takes keys and mouse while events run in the midst of its work.
#pragma once
#include <QObject>
#include <QPointer>

class QWidget;

/// While it stands, keys, clicks, the wheel and closing reach only this window, what it has brought up, and
/// modal dialogs; the other windows are drawn, but can't be worked. The window may go meanwhile; then no
/// window is worked.
class InputOnlyTo : public QObject {
 public:
  explicit InputOnlyTo(QWidget& window);
  ~InputOnlyTo() override;

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  [[nodiscard]] bool is_within(const QObject* receiver) const;

  QPointer<QWidget> window_;
};
