#include "tensor/curve_source.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <optional>

#include "numerics/impedance/apparent_resistivity.h"
#include "reduction/data_sets/point_error.h"

namespace Module_tensor {

using Module_database::Curve;
using Module_database::StoredReading;

namespace {

std::optional<std::size_t> position_of(float frequency, std::span<const float> frequencies) {
  const auto found = std::ranges::lower_bound(frequencies, frequency);
  return found != frequencies.end() && *found == frequency
             ? std::optional(static_cast<std::size_t>(found - frequencies.begin()))
             : std::nullopt;
}

int field_of(std::size_t quantity) { return static_cast<int>(quantity) + 1; }

bool is_switched_on(const StoredReading& repeat, std::size_t quantity) {
  return quantity == 0 ? repeat.UseResistivity : repeat.UsePhase;
}

/// Resistivity over that of the impedance in fields 9, 10; nothing where one of them is missing.
std::optional<double> impedance_ratio(const Curve& curve, std::size_t index) {
  const std::complex<double> impedance(curve.value(Module_database::field_impedance_real, index),
                                       curve.value(Module_database::field_impedance_imaginary, index));
  const double of_impedance =
      numerics::impedance::apparent_resistivity(impedance, double{curve.frequencies[index]});
  const double ratio = double{curve.value(Module_database::field_resistivity, index)} / of_impedance;
  const bool is_there = curve.is_present(Module_database::field_resistivity, index) &&
                        curve.is_present(Module_database::field_impedance_real, index) &&
                        curve.is_present(Module_database::field_impedance_imaginary, index);
  return is_there && std::isfinite(ratio) && ratio > 0.0 ? std::optional(ratio) : std::nullopt;
}

}  // namespace

void SourceSums::Mean::add(double value, double error) {
  ++count;
  const double difference = value - mean;
  mean += difference / count;
  squares += difference * (value - mean);
  if (error > 0.0) {
    error_squares += error * error;
    ++errors;
  }
}

// Phases of diagonal elements go all the way round: 179 and -179 degrees are 2 apart.
void SourceSums::Mean::add_on_circle(double phase, double error) {
  add(count > 0 ? mean + std::remainder(phase - mean, 360.0) : phase, error);
}

float SourceSums::Mean::error_by_spread() const {
  const double variance = squares / count;
  return count > 1 && variance > 0.0 ? static_cast<float>(std::sqrt(variance / count)) : no_data;
}

float SourceSums::Mean::error_by_values() const {
  return count > 0 && errors == count ? static_cast<float>(std::sqrt(error_squares) / count) : no_data;
}

float SourceSums::Mean::error() const {
  const float by_spread = error_by_spread();
  return by_spread > 0.0F ? by_spread : error_by_values();
}

void SourceSums::add_point(const StoredReading& repeat, std::size_t index, PointSums& sums) {
  for (std::size_t quantity = 0; quantity < quantity_count; ++quantity) {
    const int field = field_of(quantity);
    if (!repeat.curve.is_present(field, index) || !is_switched_on(repeat, quantity)) {
      continue;
    }
    const double value{repeat.curve.value(field, index)};
    const double error{repeat.curve.error(field, index)};
    if (quantity == 0) {
      sums.all[quantity].add(value, error);
    } else {
      sums.all[quantity].add_on_circle(value, error);
    }
    if (repeat.curve.point_counts(field, index)) {
      sums.used[quantity].add(value, error);
    }
  }
}

void SourceSums::add(float scan_rate, const StoredReading& repeat, std::span<const float> frequencies) {
  RateSums& sums = rates_[scan_rate];
  sums.points.resize(frequencies.size());
  sums.axes.push_back(repeat.axes);
  for (std::size_t index = 0; index < repeat.curve.count(); ++index) {
    const auto position = position_of(repeat.curve.frequencies[index], frequencies);
    if (!position) {
      continue;
    }
    add_point(repeat, index, sums.points[*position]);
    if (const auto ratio = impedance_ratio(repeat.curve, index)) {
      sums.impedance_ratios.push_back(*ratio);
    }
  }
}

void SourceSums::give(const RateSums& sums, const AverageSettings& settings, std::vector<PointMeans>& means) {
  for (std::size_t index = 0; index < sums.points.size(); ++index) {
    for (std::size_t quantity = 0; quantity < quantity_count; ++quantity) {
      const bool is_resistivity = quantity == 0;
      if (!(is_resistivity ? settings.UseResistivity : settings.UsePhase)) {
        continue;
      }
      const double factor = is_resistivity ? settings.ResOffset : 1.0;
      RateMeans& of_rates = means[index][quantity];
      const Mean& all = sums.points[index].all[quantity];
      const Mean& used = sums.points[index].used[quantity];
      if (all.count > 0 && is_resistivity) {
        of_rates.all.add(factor * all.mean, factor * double{all.error()});
      } else if (all.count > 0) {
        of_rates.all.add_on_circle(all.mean + double{settings.PhaseOffset}, double{all.error()});
      }
      if (used.count > 0) {
        of_rates.used.add(factor * used.mean, factor * double{used.error()});
        of_rates.used_have_spread = of_rates.used_have_spread || used.error_by_spread() > 0.0F;
      }
      of_rates.some_masked = of_rates.some_masked || used.count < all.count;
    }
  }
}

void SourceSums::take(const std::vector<PointMeans>& means, CurveSource& source) {
  for (std::size_t index = 0; index < means.size(); ++index) {
    for (std::size_t quantity = 0; quantity < quantity_count; ++quantity) {
      const RateMeans& of_rates = means[index][quantity];
      source.some_masked[index][quantity] = of_rates.some_masked;
      if (of_rates.all.count > 0) {
        source.regardless_of_masks[index][quantity] = {static_cast<float>(of_rates.all.mean),
                                                       of_rates.all.error_by_values()};
      }
      if (of_rates.used_have_spread) {
        source.repeat_errors[index][quantity] = of_rates.used.error_by_values();
      }
    }
  }
}

CurveSource SourceSums::finish(const std::map<float, AverageSettings>& settings,
                               std::span<const float> frequencies) const {
  CurveSource source;
  source.regardless_of_masks.resize(frequencies.size());
  source.some_masked.resize(frequencies.size());
  source.repeat_errors.resize(frequencies.size(), {no_data, no_data});
  std::vector<PointMeans> means(frequencies.size());
  for (const auto& [scan_rate, sums] : rates_) {
    const auto found = settings.find(scan_rate);
    const AverageSettings of_average = found == settings.end() ? AverageSettings{} : found->second;
    if (!of_average.UseReading || !(of_average.UseResistivity || of_average.UsePhase)) {
      continue;
    }
    give(sums, of_average, means);
    source.impedance_ratios.insert(source.impedance_ratios.end(), sums.impedance_ratios.begin(),
                                   sums.impedance_ratios.end());
    for (const Module_database::ReadingAxes& axes : sums.axes) {
      if (std::ranges::find(source.axes, axes) == source.axes.end()) {
        source.axes.push_back(axes);
      }
    }
  }
  take(means, source);
  return source;
}

float curve_error(const Module_database::StoredReading& merged, const CurveSource& source,
                  std::size_t quantity, std::size_t point) {
  const auto field = quantity == 0 ? Module_database::field_resistivity : Module_database::field_phase;
  if (source.repeat_errors.empty()) {  // of how many values it is the mean nobody knows
    return Module_averaged_data::point_error(merged, field, point).value;
  }
  const float by_repeats = source.repeat_errors[point][quantity];
  return by_repeats > 0.0F ? by_repeats : merged.curve.error(field, point);
}

}  // namespace Module_tensor
