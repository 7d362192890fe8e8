// axis_limits.h: from the limits that a caller asks for to limits that an axis can show.
#pragma once
#include <limits>

namespace graph {

enum class AxisType { linear = 0, logarithmic = 1 };

/// The value of a limit that nobody has set: the data decide.
inline constexpr float unset_limit = -99999.0F;

/// Smallest and largest plotted coordinate along one axis.
struct DataExtent {
  double minimum = std::numeric_limits<double>::infinity();
  double maximum = -std::numeric_limits<double>::infinity();
  double smallest_positive = std::numeric_limits<double>::infinity();

  void include(double value);
  bool empty() const { return !(minimum <= maximum); }
};

struct AxisRange {
  double lower = 0.0;
  double upper = 1.0;
  friend bool operator==(const AxisRange&, const AxisRange&) = default;
};

struct AxisLimits {
  double minimum = unset_limit;
  double maximum = unset_limit;
  AxisType type = AxisType::linear;
  double cutoff = 0.0;  // where a logarithmic axis starts with neither limit nor data above 0; 0: nowhere
};

/// The range shown for the asked limits. It is always finite with lower < upper, and positive on a
/// logarithmic axis.
///
/// A logarithmic axis whose minimum is not positive starts at the decade below the smallest positive data,
/// and without any at the cut-off. A limit that is unset, not finite or beyond 1e30, and limits that coincide
/// or are the wrong way round, are replaced by those of the data; without data, 0 to 1 on a linear axis and
/// 0.1 to 1000 on a logarithmic one.
AxisRange resolve_range(const AxisLimits& limits, const DataExtent& data);

}  // namespace graph
