#include "platform/widgets/hint_label.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QTextLayout>
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
QSize HintLabel::minimumSizeHint() const { return {0, lines_ * fontMetrics().height()}; }

QStringList HintLabel::shown_parts() const {
  const int width = contentsRect().width();
  QStringList parts;
  QString rest = text();
  while (parts.size() + 1 < lines_ && fontMetrics().horizontalAdvance(rest) > width) {
    QTextLayout layout(rest, font());
    layout.beginLayout();
    QTextLine line = layout.createLine();  // breaks at a word
    line.setLineWidth(width);
    layout.endLayout();
    parts.append(rest.left(line.textLength()).trimmed());
    rest = rest.mid(line.textLength());
  }
  parts.append(fontMetrics().elidedText(rest, Qt::ElideRight, width));
  return parts;
}

bool HintLabel::is_cut() const { return !text().endsWith(shown_parts().back()); }

bool HintLabel::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip && is_cut()) {
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text(), this);
    return true;
  }
  return QLabel::event(event);
}

void HintLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  style()->drawItemText(&painter, contentsRect(), Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(),
                        shown_parts().join('\n'), foregroundRole());
}
