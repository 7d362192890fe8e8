// hint_label.h: a small grey line that says something beside a control.
#pragma once
#include <QLabel>

/// Takes what room is left and no more: a text that is longer is cut with "..." and shown whole as tool tip.
class HintLabel : public QLabel {
  Q_OBJECT

 public:
  explicit HintLabel(QWidget* parent = nullptr);
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] QString shown_text() const;
};
