#include "platform/widgets/outlined_style.h"

#include <QPainter>
#include <QStyleFactory>
#include <QStyleOption>

namespace {

/// The style makes an outline darker than the window, which is no outline where the window is dark.
bool hides_outlines(const QPalette& palette) {
  constexpr int middle = 128;
  return palette.color(QPalette::Window).lightness() < middle;
}

}  // namespace

OutlinedStyle::OutlinedStyle() : QProxyStyle(QStyleFactory::create("Fusion")) {}

void OutlinedStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                  const QWidget* widget) const {
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  const bool box = element == PE_IndicatorCheckBox || element == PE_IndicatorItemViewItemCheck;
  if ((!box && element != PE_IndicatorRadioButton) || !hides_outlines(option->palette)) {
    return;
  }
  QColor outline = option->palette.color(QPalette::Text);
  constexpr int half = 128;
  outline.setAlpha(half);
  const QRectF edge = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing, !box);
  painter->setPen(outline);
  painter->setBrush(Qt::NoBrush);
  if (box) {
    painter->drawRect(edge);
  } else {
    painter->drawEllipse(edge);
  }
  painter->restore();
}
