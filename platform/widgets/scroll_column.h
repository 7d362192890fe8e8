// scroll_column.h: a column of controls that scrolls where its window is too low for all of them.
#pragma once
#include <QScrollArea>

/// As wide as its contents, and wider by a scroll bar only while it has one. Tab scrolls to the control that
/// gets the focus.
class ScrollColumn : public QScrollArea {
  Q_OBJECT

 public:
  explicit ScrollColumn(QWidget* parent = nullptr);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  [[nodiscard]] int width_for(int height) const;
};
