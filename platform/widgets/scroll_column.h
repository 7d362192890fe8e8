// scroll_column.h: a column of controls that scrolls where its window is too low for all of them.
#pragma once
#include <QScrollArea>

/// As wide as its contents, and by a scroll bar wider only while it has one. Tab brings the control it comes
/// to into view.
class ScrollColumn : public QScrollArea {
  Q_OBJECT

 public:
  explicit ScrollColumn(QWidget* parent = nullptr);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  [[nodiscard]] int width_for(int height) const;
};
