// drawn_texts.h: a paint device that keeps the texts that are drawn on it, in their order, and nothing else.
#pragma once
#include <QPaintDevice>
#include <QPaintEngine>
#include <QStringList>

class DrawnTexts final : public QPaintDevice {
 public:
  [[nodiscard]] QPaintEngine* paintEngine() const override { return &engine_; }
  [[nodiscard]] const QStringList& texts() const { return engine_.texts; }

 protected:
  [[nodiscard]] int metric(PaintDeviceMetric metric) const override {
    constexpr int side = 1000;
    constexpr int dots_per_inch = 96;
    switch (metric) {
      case PdmWidth:
      case PdmHeight:
        return side;
      case PdmDpiX:
      case PdmDpiY:
      case PdmPhysicalDpiX:
      case PdmPhysicalDpiY:
        return dots_per_inch;
      default:
        return metric == PdmDevicePixelRatioScaled ? static_cast<int>(devicePixelRatioFScale()) : 1;
    }
  }

 private:
  struct Engine final : QPaintEngine {
    Engine() : QPaintEngine(AllFeatures) {}
    bool begin(QPaintDevice* /*device*/) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState& /*state*/) override {}
    void drawPixmap(const QRectF& /*place*/, const QPixmap& /*pixmap*/, const QRectF& /*part*/) override {}
    void drawPath(const QPainterPath& /*path*/) override {}
    void drawPolygon(const QPointF* /*points*/, int /*count*/, PolygonDrawMode /*mode*/) override {}
    void drawTextItem(const QPointF& /*place*/, const QTextItem& item) override { texts.append(item.text()); }
    [[nodiscard]] Type type() const override { return User; }
    QStringList texts;
  };
  mutable Engine engine_;
};
