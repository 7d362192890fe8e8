// hint_label.h: a small grey text that says something beside a control.
#pragma once
#include <QLabel>

/// Takes what room is left and no more: a text that is longer than its lines is cut with "..." and shown
/// whole as tool tip.
class HintLabel : public QLabel {
  Q_OBJECT
  Q_PROPERTY(int lines MEMBER lines_)  // that a text may take; there is room for them without one as well

 public:
  explicit HintLabel(QWidget* parent = nullptr);
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  /// Each on a line of its own.
  [[nodiscard]] QStringList shown_parts() const;
  [[nodiscard]] bool is_cut() const;

  int lines_ = 1;
};
