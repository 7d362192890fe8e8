#include "platform/widgets/hint_label.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

namespace {

constexpr double smaller = 0.9;

}  // namespace

HintLabel::HintLabel(QWidget* parent) : QLabel(parent) {
  QFont small = font();
  small.setPointSizeF(small.pointSizeF() * smaller);
  setFont(small);
  setForegroundRole(QPalette::PlaceholderText);
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

// As high without a text: nothing below may move when one comes.
QSize HintLabel::minimumSizeHint() const { return {0, fontMetrics().height()}; }

QString HintLabel::shown_text() const {
  return fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
}

bool HintLabel::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip && shown_text() != text()) {
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text(), this);
    return true;
  }
  return QLabel::event(event);
}

void HintLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  style()->drawItemText(&painter, contentsRect(), Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(),
                        shown_text(), foregroundRole());
}
