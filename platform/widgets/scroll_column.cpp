#include "platform/widgets/scroll_column.h"

#include <QResizeEvent>
#include <QScrollBar>
#include <algorithm>

namespace {

constexpr int min_height = 80;

}  // namespace

ScrollColumn::ScrollColumn(QWidget* parent) : QScrollArea(parent) {
  setWidgetResizable(true);
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
  setFocusPolicy(Qt::NoFocus);  // the keys belong to the controls in it
}

int ScrollColumn::width_for(int height) const {
  if (widget() == nullptr) {
    return 0;
  }
  const QSize minimum = widget()->minimumSizeHint();
  const bool scrolls = height < minimum.height();
  return std::max(minimum.width(), widget()->minimumWidth()) +
         (scrolls ? verticalScrollBar()->sizeHint().width() : 0);
}

QSize ScrollColumn::sizeHint() const {
  return {width_for(height()), widget() == nullptr ? 0 : widget()->sizeHint().height()};
}

QSize ScrollColumn::minimumSizeHint() const { return {width_for(height()), min_height}; }

bool ScrollColumn::event(QEvent* event) {
  if (event->type() == QEvent::LayoutRequest) {
    updateGeometry();  // the controls want another width
  }
  return QScrollArea::event(event);
}

void ScrollColumn::resizeEvent(QResizeEvent* event) {
  QScrollArea::resizeEvent(event);
  if (width_for(height()) != width()) {
    updateGeometry();  // the bar has come or gone
  }
}
