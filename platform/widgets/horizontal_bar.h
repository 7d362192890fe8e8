// horizontal_bar.h: a horizontal scroll bar on which the keys go the way of their arrows.
#pragma once
#include <QScrollBar>

/// Left goes back and Right goes on. QScrollBar takes both the other way round, as its wheel does, where it
/// is right.
class HorizontalBar : public QScrollBar {
 public:
  explicit HorizontalBar(QWidget* parent = nullptr);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
};
