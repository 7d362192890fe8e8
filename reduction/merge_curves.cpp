#include "reduction/merge_curves.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

#include "core/absent_value.h"

namespace Module_averaged_data {

using Module_database::Curve;
using Module_database::field_count;
using Module_database::field_phase;
using Module_database::field_resistivity;
using Module_database::mask_count;
using Module_database::StoredReading;

namespace {

/// What an average contributes at one of its points: corrected resistivity and phase, if they count.
std::array<std::optional<float>, mask_count> contribution(const StoredReading& average, std::size_t index) {
  const Curve& curve = average.curve;
  std::array<std::optional<float>, mask_count> result;
  if (average.UseResistivity && curve.point_counts(field_resistivity, index)) {
    result[0] = curve.value(field_resistivity, index) * average.ResOffset;
  }
  if (average.UsePhase && curve.point_counts(field_phase, index)) {
    result[1] = curve.value(field_phase, index) + average.PhaseOffset;
  }
  return result;
}

void reserve(Curve& curve, std::size_t count) {
  curve.frequencies.reserve(count);
  curve.data.reserve(count * field_count);
  curve.mask.reserve(count * mask_count);
}

/// The error of what an average contributes; no_data where it has none.
float contributed_error(const StoredReading& average, std::size_t quantity, std::size_t index) {
  const float error = average.curve.error(static_cast<int>(quantity) + 1, index);
  if (!(error >= 0.0F)) {
    return no_data;
  }
  return quantity == 0 ? error * average.ResOffset : error;
}

/// Adds an error to that of the last point, which earlier contributions have unless this is the first one.
void add_error(Curve& merged, std::size_t quantity, float error, bool is_first) {
  float& sum = merged.error_at(static_cast<int>(quantity) + 1, merged.count() - 1);
  if (is_first) {
    sum = error;
  } else {
    sum = sum >= 0.0F && error >= 0.0F ? std::hypot(sum, error) : no_data;
  }
}

bool have_errors(const Curve& merged, const StoredReading& average) {
  return !merged.errors.empty() || !average.curve.errors.empty();
}

void append_contribution(Curve& merged, const StoredReading& average, std::size_t index) {
  merged.append(average.curve, index);
  const auto values = contribution(average, index);
  float* const data = &merged.data[merged.data.size() - field_count];
  std::int32_t* const contributions = &merged.mask[merged.mask.size() - mask_count];
  for (std::size_t quantity = 0; quantity < mask_count; ++quantity) {
    data[quantity] = values[quantity].value_or(no_data);
    contributions[quantity] = values[quantity] ? 1 : 0;
    if (have_errors(merged, average)) {
      const float error = values[quantity] ? contributed_error(average, quantity, index) : no_data;
      add_error(merged, quantity, error, true);
    }
  }
}

void add_to_last(Curve& merged, const StoredReading& average, std::size_t index) {
  const auto values = contribution(average, index);
  float* const data = &merged.data[merged.data.size() - field_count];
  std::int32_t* const contributions = &merged.mask[merged.mask.size() - mask_count];
  for (std::size_t quantity = 0; quantity < mask_count; ++quantity) {
    if (!values[quantity]) {
      continue;
    }
    const bool is_first = !(double{data[quantity]} > present_above);
    if (have_errors(merged, average)) {
      add_error(merged, quantity, contributed_error(average, quantity, index), is_first);
    }
    if (!is_first) {
      data[quantity] += *values[quantity];
      ++contributions[quantity];
    } else {
      data[quantity] = *values[quantity];
      contributions[quantity] = 1;
    }
  }
  const float* const source = &average.curve.data[index * field_count];
  std::copy(source + mask_count, source + field_count, data + mask_count);
}

void divide_error(Curve& merged, std::size_t quantity, std::size_t index, std::int32_t contributions) {
  if (merged.errors.empty()) {
    return;
  }
  float& error = merged.error_at(static_cast<int>(quantity) + 1, index);
  const bool is_known = error >= 0.0F && std::isfinite(error);
  error = is_known ? error / static_cast<float>(contributions) : no_data;
}

}  // namespace

void MergedCurve::add(const StoredReading& average) {
  const std::size_t added = average.curve.count();
  const auto& frequencies = average.curve.frequencies;
  // Averages that came from files may begin with frequencies that have no place on the axis.
  const auto first = static_cast<std::size_t>(
      std::ranges::find_if(frequencies, [](float f) { return f > 0.0F; }) - frequencies.begin());
  if (merged_.count() == 0) {  // the first average keeps its points as they are, also two of one frequency
    reserve(merged_, added);
    for (std::size_t index = first; index < added; ++index) {
      append_contribution(merged_, average, index);
    }
    return;
  }
  const Curve earlier = std::exchange(merged_, {});
  reserve(merged_, earlier.count() + added);
  std::size_t taken = 0;
  for (std::size_t index = first; index < added; ++index) {
    const float frequency = frequencies[index];
    for (; taken < earlier.count() && earlier.frequencies[taken] <= frequency; ++taken) {
      merged_.append(earlier, taken);
    }
    if (merged_.count() > 0 && merged_.frequencies.back() == frequency) {
      add_to_last(merged_, average, index);
    } else {
      append_contribution(merged_, average, index);
    }
  }
  for (; taken < earlier.count(); ++taken) {
    merged_.append(earlier, taken);
  }
}

Curve MergedCurve::finish() const {
  Curve result = merged_;
  for (std::size_t index = 0; index < result.count(); ++index) {
    for (std::size_t quantity = 0; quantity < mask_count; ++quantity) {
      float& value = result.data[index * field_count + quantity];
      std::int32_t& mask = result.mask[index * mask_count + quantity];
      if (mask > 0) {
        value /= static_cast<float>(mask);
        divide_error(result, quantity, index, mask);
      }
      mask = double{value} > present_above ? 1 : 0;
    }
  }
  return result;
}

}  // namespace Module_averaged_data
