#include "reduction/repeat_sums.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/absent_value.h"
#include "core/search_sort.h"

namespace Module_averaged_data {

using Module_database::Curve;
using Module_database::error_count;
using Module_database::field_count;
using Module_database::field_impedance_real;
using Module_database::mask_count;
using Module_database::StoredReading;

static_assert(std::numeric_limits<float>::is_iec559, "a sum too large for a single must become an infinity");

namespace {

// Columns of the sums for quantity 0 (resistivity) and 1 (phase).
constexpr std::size_t used_values = 0;
constexpr std::size_t used_squares = 2;
constexpr std::size_t present_values = 4;
constexpr std::size_t present_squares = 6;
constexpr std::size_t first_other = field_impedance_real - 1;

float plus_square(float squares, float value) {
  return static_cast<float>(double{squares} + double{value} * double{value});
}

/// Population standard deviation from sums over n values. The square of the sum is rounded to single as the
/// sum of squares was, so that a single value deviates by exactly 0.
float deviation(float sum, float squares, std::int32_t n) {
  const float square_of_sum = static_cast<float>(double{sum} * double{sum});
  const double variance = (double{squares} - double{square_of_sum} / n) / n;
  if (!std::isfinite(variance)) {
    return no_data;
  }
  return static_cast<float>(std::sqrt(std::max(variance, 0.0)));
}

/// Whether a value of a repeat takes part in its mean.
bool is_used(const StoredReading& repeat, std::size_t quantity, std::size_t index) {
  return (quantity == 0 ? repeat.UseResistivity : repeat.UsePhase) &&
         repeat.curve.point_counts(static_cast<int>(quantity) + 1, index);
}

}  // namespace

RepeatSums::RepeatSums(std::span<const float> frequency_list)
    : frequency_list_(frequency_list), row_of_position_(frequency_list.size(), -1) {}

std::optional<std::size_t> RepeatSums::row_at(float frequency) {
  std::size_t position = next_position_;
  // Neighbours in a repeat are mostly neighbours in the list; the search is for the rest.
  if (position >= frequency_list_.size() || frequency_list_[position] != frequency) {
    const auto found = basSearchSort::search_sorted(frequency_list_, frequency);
    if (found < 0) {
      return std::nullopt;
    }
    position = static_cast<std::size_t>(found);
  }
  next_position_ = position + 1;
  std::int32_t& row = row_of_position_[position];
  if (row < 0) {
    row = static_cast<std::int32_t>(rows_.size());
    rows_.emplace_back();
  }
  return static_cast<std::size_t>(row);
}

void RepeatSums::add(const StoredReading& repeat) {
  if (!repeat.UseReading) {
    return;
  }
  ++used_repeats_;
  next_position_ = 0;
  for (std::size_t index = 0; index < repeat.curve.count(); ++index) {
    if (!(repeat.curve.frequencies[index] > 0.0F)) {
      continue;
    }
    if (const auto row = row_at(repeat.curve.frequencies[index])) {
      add_point(rows_[*row], repeat, index);
      add_errors(*row, repeat, index);
    }
  }
}

void RepeatSums::add_point(Sums& sums, const StoredReading& repeat, std::size_t index) {
  const float* const values = &repeat.curve.data[index * field_count];
  for (std::size_t quantity = 0; quantity < mask_count; ++quantity) {
    const float value = values[quantity];
    if (!(value > no_data)) {
      continue;
    }
    if (is_used(repeat, quantity, index)) {
      sums.sum[used_values + quantity] += value;
      sums.sum[used_squares + quantity] = plus_square(sums.sum[used_squares + quantity], value);
      ++sums.used[quantity];
    }
    sums.sum[present_values + quantity] += value;
    sums.sum[present_squares + quantity] = plus_square(sums.sum[present_squares + quantity], value);
    ++sums.present[quantity];
  }
  for (std::size_t field = first_other; field < field_count; ++field) {
    const bool is_present = values[field] > no_data;
    sums.sum[field] += is_present ? values[field] : 0.0F;
    sums.present[field] += is_present ? 1 : 0;
  }
}

void RepeatSums::add_errors(std::size_t row, const StoredReading& repeat, std::size_t index) {
  if (repeat.curve.errors.empty()) {
    return;
  }
  error_rows_.resize(std::max(error_rows_.size(), row + 1));
  ErrorSums& sums = error_rows_[row];
  for (std::size_t quantity = 0; quantity < error_count; ++quantity) {
    const double error{repeat.curve.error(static_cast<int>(quantity) + 1, index)};
    if (error >= 0.0 && is_used(repeat, quantity, index)) {
      sums.squares[quantity] += error * error;
      ++sums.known[quantity];
    }
  }
}

Curve RepeatSums::average() const {
  Curve result;
  result.assign(rows_.size());
  std::size_t index = 0;
  for (std::size_t position = 0; position < row_of_position_.size(); ++position) {
    const std::int32_t row = row_of_position_[position];
    if (row >= 0) {
      result.frequencies[index] = frequency_list_[position];
      average_point(rows_[static_cast<std::size_t>(row)], result, index);
      average_errors(static_cast<std::size_t>(row), result, index);
      ++index;
    }
  }
  return result;
}

void RepeatSums::average_point(const Sums& sums, Curve& result, std::size_t index) const {
  float* const values = &result.data[index * field_count];
  for (std::size_t quantity = 0; quantity < mask_count; ++quantity) {
    const std::int32_t used = sums.used[quantity];
    const std::int32_t present = sums.present[quantity];
    result.mask[index * mask_count + quantity] = used > 0 ? 1 : 0;
    if (used > 0) {
      const float sum = sums.sum[used_values + quantity];
      values[quantity] = sum / static_cast<float>(used);
      values[used_squares + quantity] = deviation(sum, sums.sum[used_squares + quantity], used);
    } else {
      values[quantity] = no_data;
      values[used_squares + quantity] = no_data;
    }
    if (present > 0) {
      const float sum = sums.sum[present_values + quantity];
      values[present_values + quantity] = sum / static_cast<float>(used_repeats_);
      values[present_squares + quantity] = deviation(sum, sums.sum[present_squares + quantity], present);
    }
  }
  for (std::size_t field = first_other; field < field_count; ++field) {
    if (sums.present[field] > 0) {
      values[field] = sums.sum[field] / static_cast<float>(sums.present[field]);
    }
  }
}

void RepeatSums::average_errors(std::size_t row, Curve& result, std::size_t index) const {
  if (row >= error_rows_.size()) {
    return;
  }
  const ErrorSums& sums = error_rows_[row];
  for (std::size_t quantity = 0; quantity < error_count; ++quantity) {
    const std::int32_t used = rows_[row].used[quantity];
    const double error = std::sqrt(sums.squares[quantity]) / used;  // not a number where none is used
    if (sums.known[quantity] == used && std::isfinite(error)) {
      result.error_at(static_cast<int>(quantity) + 1, index) = static_cast<float>(error);
    }
  }
}

}  // namespace Module_averaged_data
