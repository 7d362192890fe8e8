#include "platform/graph/axis_limits.h"

#include <algorithm>
#include <cmath>

namespace graph {
namespace {

constexpr double largest_limit = 1e30;
constexpr double max_decades = 15.0;  // beyond this a single stray value would flatten every curve

bool usable(double limit) {
  return std::isfinite(limit) && std::abs(limit) < largest_limit && limit != static_cast<double>(unset_limit);
}

/// The power of ten strictly below a positive value, so that the point is clear of the axis.
double decade_below(double value) {
  // The logarithms of 0.1 and 1000 may be rounded up; with the tolerance they still count as decades.
  constexpr double tolerance = 1e-9;
  return std::pow(10.0, std::ceil(std::log10(value) - tolerance) - 1.0);
}

AxisRange resolve_linear(const AxisLimits& limits, const DataExtent& data) {
  const bool asked = usable(limits.minimum) && usable(limits.maximum);
  if (asked && limits.minimum < limits.maximum) {
    return {limits.minimum, limits.maximum};
  }
  if (data.empty()) {
    if (asked && limits.minimum == limits.maximum) {
      const double margin = std::max(1.0, 0.1 * std::abs(limits.minimum));
      return {limits.minimum - margin, limits.maximum + margin};
    }
    return {0.0, 1.0};
  }
  const double spread = data.maximum - data.minimum;
  const double margin = spread > 0.0 ? 0.05 * spread : std::max(1.0, 0.1 * std::abs(data.minimum));
  AxisRange range{data.minimum - margin, data.maximum + margin};
  if (usable(limits.minimum) && limits.minimum < range.upper && !usable(limits.maximum)) {
    range.lower = limits.minimum;
  }
  if (usable(limits.maximum) && limits.maximum > range.lower && !usable(limits.minimum)) {
    range.upper = limits.maximum;
  }
  return range;
}

AxisRange resolve_logarithmic(const AxisLimits& limits, const DataExtent& data) {
  const bool has_data = std::isfinite(data.smallest_positive) && data.maximum > 0.0;
  const bool inverted = usable(limits.minimum) && usable(limits.maximum) && limits.minimum >= limits.maximum;
  AxisRange range{0.1, 1000.0};
  if (usable(limits.maximum) && limits.maximum > 0.0 && !inverted) {
    range.upper = limits.maximum;
  } else if (has_data) {
    range.upper = data.maximum * 1.2;
  }
  if (usable(limits.minimum) && limits.minimum > 0.0 && !inverted) {
    range.lower = limits.minimum;
  } else if (has_data) {
    range.lower = decade_below(data.smallest_positive);
  } else if (limits.cutoff > 0.0 && limits.cutoff < range.upper) {
    range.lower = limits.cutoff;
  }
  if (!(range.lower < range.upper)) {
    range.lower = decade_below(range.upper);
  }
  range.lower = std::max(range.lower, range.upper * std::pow(10.0, -max_decades));
  return range;
}

}  // namespace

void DataExtent::include(double value) {
  minimum = std::min(minimum, value);
  maximum = std::max(maximum, value);
  if (value > 0.0) {
    smallest_positive = std::min(smallest_positive, value);
  }
}

AxisRange resolve_range(const AxisLimits& limits, const DataExtent& data) {
  return limits.type == AxisType::logarithmic ? resolve_logarithmic(limits, data)
                                              : resolve_linear(limits, data);
}

}  // namespace graph
