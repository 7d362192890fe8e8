#include "tensor/glyphs.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <numbers>

namespace Module_tensor {

GlyphPoint turned_clockwise(GlyphPoint point, double degrees) {
  const double angle = degrees * std::numbers::pi / 180.0;
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  return {c * point[0] + s * point[1], c * point[1] - s * point[0]};
}

std::vector<GlyphPoint> ellipse_outline(const numerics::impedance::PhaseTensor& tensor, int points) {
  assert(points > 0);
  const double xx = tensor.xx.value;
  const double xy = tensor.xy.value;
  const double yx = tensor.yx.value;
  const double yy = tensor.yy.value;
  const double phi_max = 0.5 * (std::hypot(xx - yy, xy + yx) + std::hypot(xx + yy, xy - yx));
  if (!std::isfinite(phi_max) || phi_max == 0.0) {
    return {};
  }
  std::vector<GlyphPoint> outline;
  outline.reserve(static_cast<std::size_t>(points));
  for (int point = 0; point < points; ++point) {
    const double angle = 2.0 * std::numbers::pi * point / points;
    const double north = std::cos(angle) / phi_max;
    const double east = std::sin(angle) / phi_max;
    outline.push_back({yx * north + yy * east, xx * north + xy * east});
  }
  return outline;
}

LimitedTip limited_tip(GlyphPoint tip) {
  const double length = std::hypot(tip[0], tip[1]);
  if (!(length > longest_arrow) || !std::isfinite(length)) {
    return {tip, false};
  }
  return {{tip[0] / length * longest_arrow, tip[1] / length * longest_arrow}, true};
}

std::optional<ArrowShape> arrow_shape(GlyphPoint tip, double head_length) {
  const double length = std::hypot(tip[0], tip[1]);
  if (!std::isfinite(length) || length == 0.0) {
    return std::nullopt;
  }
  constexpr double half_width = 0.4;  // of the head, in units of its length
  const GlyphPoint along{tip[0] / length, tip[1] / length};
  const double head = std::min(head_length, 0.5 * length);
  const double side = half_width * head;
  const GlyphPoint base{tip[0] - head * along[0], tip[1] - head * along[1]};
  return ArrowShape{base,
                    {tip,
                     {base[0] - side * along[1], base[1] + side * along[0]},
                     {base[0] + side * along[1], base[1] - side * along[0]}}};
}

}  // namespace Module_tensor
