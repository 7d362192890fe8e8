#include "tensor/station_tipper.h"

#include <algorithm>
#include <complex>
#include <cstddef>
#include <optional>

namespace Module_tensor {

using Module_database::Curve;

namespace {

// The tipper has its parts where other curves have resistivity and phase.
constexpr int real_part = Module_database::field_resistivity;
constexpr int imaginary_part = Module_database::field_phase;

std::optional<std::size_t> counting_point(const Curve& curve, float frequency) {
  const auto found = std::ranges::lower_bound(curve.frequencies, frequency);
  if (found == curve.frequencies.end() || *found != frequency) {
    return std::nullopt;
  }
  const auto index = static_cast<std::size_t>(found - curve.frequencies.begin());
  const bool counts = curve.point_counts(real_part, index) && curve.point_counts(imaginary_part, index);
  return counts ? std::optional(index) : std::nullopt;
}

std::complex<double> value_at(const Curve& curve, std::size_t index) {
  return {curve.value(real_part, index), curve.value(imaginary_part, index)};
}

numerics::impedance::PartCovariance covariance_at(const StationCurves& curves, CurveType type,
                                                  std::size_t index) {
  const CurveSource& source = curves.source(type);
  const double real = curve_error(curves.of(type), source, 0, index);
  const double imaginary = curve_error(curves.of(type), source, 1, index);
  return real >= 0.0 && imaginary >= 0.0
             ? numerics::impedance::PartCovariance{real * real, imaginary * imaginary}
             : numerics::impedance::PartCovariance{};
}

bool is_in_use(const Module_database::StoredReading& merged) {
  return merged.UseReading && merged.UseResistivity && merged.UsePhase;
}

}  // namespace

std::vector<TipperPoint> station_tipper(const StationCurves& curves) {
  if (!is_in_use(curves.of(CurveType::HzHx)) || !is_in_use(curves.of(CurveType::HzHy))) {
    return {};
  }
  const Curve& x = curves.of(CurveType::HzHx).curve;
  const Curve& y = curves.of(CurveType::HzHy).curve;
  std::vector<TipperPoint> points;
  for (const float frequency : x.frequencies) {
    const auto at_x = counting_point(x, frequency);
    const auto at_y = counting_point(y, frequency);
    const bool is_repeated = !points.empty() && points.back().frequency == double{frequency};
    if (at_x && at_y && !is_repeated) {
      points.push_back(
          {frequency,
           {value_at(x, *at_x), value_at(y, *at_y), covariance_at(curves, CurveType::HzHx, *at_x),
            covariance_at(curves, CurveType::HzHy, *at_y)}});
    }
  }
  return points;
}

}  // namespace Module_tensor
