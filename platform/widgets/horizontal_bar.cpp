#include "platform/widgets/horizontal_bar.h"

#include <QKeyEvent>

HorizontalBar::HorizontalBar(QWidget* parent) : QScrollBar(Qt::Horizontal, parent) {}

void HorizontalBar::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Left) {
    triggerAction(SliderSingleStepSub);
  } else if (event->key() == Qt::Key_Right) {
    triggerAction(SliderSingleStepAdd);
  } else {
    QScrollBar::keyPressEvent(event);
  }
}
