// outlined_style.h: the style of all windows: Fusion, with boxes to check that are seen on dark colours, too.
#pragma once
#include <QProxyStyle>

class OutlinedStyle : public QProxyStyle {
  Q_OBJECT

 public:
  OutlinedStyle();
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
};
