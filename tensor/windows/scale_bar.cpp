#include "tensor/windows/scale_bar.h"

#include <array>
#include <cmath>

#include "core/number_text.h"
#include "platform/graph/picture_axes.h"

namespace Module_tensor {

namespace {

/// Marks at 1, 2, 5 times the powers of ten, or at the powers alone where those would be too dense.
std::vector<graph::PictureTick> power_ticks(const QRectF& bar, const ColourScale& scale) {
  constexpr double least_distance = 16.0;
  constexpr std::array<double, 3> steps{1.0, 2.0, 5.0};
  constexpr double dense = 3.0;  // decades
  const std::size_t used = scale.upper - scale.lower > dense ? 1 : steps.size();
  std::vector<graph::PictureTick> ticks;
  for (double decade = std::floor(scale.lower); decade <= scale.upper; decade += 1.0) {
    for (std::size_t i = 0; i < used; ++i) {
      const double value = steps[i] * std::pow(10.0, decade);
      const double share = (std::log10(value) - scale.lower) / (scale.upper - scale.lower);
      constexpr double rounding = 1e-9;
      if (share >= -rounding && share <= 1.0 + rounding) {
        ticks.push_back({bar.bottom() - bar.height() * share,
                         QString::fromStdString(plain_text(decimal_of_single(static_cast<float>(value))))});
      }
    }
  }
  return graph::ticks_with_room(ticks, least_distance);
}

}  // namespace

void draw_scale_bar(QPainter& painter, const QRectF& bar, const ColourScale& scale, const QString& unit,
                    ScaleNumbers numbers) {
  const graph::Palette palette = scale_palette(scale.palette, scale.inverted);
  if (numbers == ScaleNumbers::powers) {
    const auto ticks = power_ticks(bar, scale);
    if (ticks.size() > 1) {  // one number doesn't say how fast the colours change
      graph::draw_colour_bar(painter, bar, palette, ticks, unit);
      return;
    }
    graph::draw_colour_bar(painter, bar, palette, scale.lower, scale.upper, "log10 " + unit);
    return;
  }
  graph::draw_colour_bar(painter, bar, palette, scale.lower, scale.upper, unit);
}

}  // namespace Module_tensor
