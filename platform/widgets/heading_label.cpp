#include "platform/widgets/heading_label.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

HeadingLabel::HeadingLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void HeadingLabel::set_texts(const QString& text, const QStringList& shorter) {
  whole_ = text;
  shorter_ = shorter;
  setText(text);
  update();
}

QString HeadingLabel::shown_text() const {
  const int room = contentsRect().width();
  const auto fits = [&](const QString& text) { return fontMetrics().horizontalAdvance(text) <= room; };
  if (wordWrap() || fits(text())) {
    return text();
  }
  const QStringList shorter = text() == whole_ ? shorter_ : QStringList();
  for (const QString& each : shorter) {
    if (fits(each)) {
      return each;
    }
  }
  return fontMetrics().elidedText(shorter.isEmpty() ? text() : shorter.last(), Qt::ElideRight, room);
}

QSize HeadingLabel::minimumSizeHint() const {
  return wordWrap() ? QLabel::minimumSizeHint() : QSize(0, QLabel::minimumSizeHint().height());
}

bool HeadingLabel::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip && shown_text() != text()) {
    const QString whole = text().toHtmlEscaped();
    const bool says_more = !toolTip().isEmpty() && !toolTip().contains(whole) && toolTip() != text();
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(),
                       "<span>" + whole + "</span>" + (says_more ? "<br>" + toolTip() : QString()), this);
    return true;
  }
  return QLabel::event(event);
}

void HeadingLabel::paintEvent(QPaintEvent* event) {
  if (shown_text() == text()) {
    QLabel::paintEvent(event);
    return;
  }
  QPainter painter(this);
  style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()), palette(), isEnabled(),
                        shown_text(), foregroundRole());
}
