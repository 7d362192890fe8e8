// repeat_sums.h: the arithmetic of an average: sums over repeats, means and standard deviations from them.
//
// Sums are kept in single precision, squares are formed in double precision and rounded when they are added:
// the deviations of a survey stay the same to the last digit, whatever machine it is averaged on.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "database/reading.h"

namespace Module_averaged_data {

class RepeatSums {
 public:
  /// @param frequency_list  Hz, ascending; the frequencies that an average can have. Must outlive the sums.
  explicit RepeatSums(std::span<const float> frequency_list);

  /// Adds one repeat, unless its UseReading is off. A point whose frequency is not in the list, or not above
  /// 0, is left out.
  void add(const Module_database::StoredReading& repeat);

  /// The average, ascending in frequency, with every frequency of the used repeats.
  ///
  ///   fields 1, 2    mean over the values that are neither masked nor switched off, no_data if there is none
  ///   fields 3, 4    population standard deviation of the same values, no_data if there is none
  ///   fields 5, 6    sum over all present values divided by the number of used repeats, 0 if there is none
  ///   fields 7, 8    population standard deviation of all present values, 0 if there is none
  ///   fields 9..20   mean of the present values, 0 if there is none
  ///   masks          1 where fields 1, 2 have a value
  ///
  ///   errors         sqrt(sum e^2) / n over the n values of fields 1, 2, no_data if one of them has none;
  ///                  empty if no repeat brings errors
  ///
  /// A deviation whose squares exceed the single range is no_data.
  [[nodiscard]] Module_database::Curve average() const;

 private:
  struct Sums {
    // By field number less one: 0, 1 used values; 2, 3 their squares; 4, 5 present values; 6, 7 their
    // squares; 8 to 19 present values of these fields.
    std::array<float, Module_database::field_count> sum{};
    std::array<std::int32_t, Module_database::field_count> present{};  // at 0, 1 and 8 to 19
    std::array<std::int32_t, Module_database::mask_count> used{};
  };

  // Most surveys were read without errors and have no such rows.
  struct ErrorSums {
    std::array<double, Module_database::error_count> squares{};
    std::array<std::int32_t, Module_database::error_count> known{};  // used values that have an error
  };

  std::optional<std::size_t> row_at(float frequency);
  static void add_point(Sums& sums, const Module_database::StoredReading& repeat, std::size_t index);
  void add_errors(std::size_t row, const Module_database::StoredReading& repeat, std::size_t index);
  void average_point(const Sums& sums, Module_database::Curve& result, std::size_t index) const;
  void average_errors(std::size_t row, Module_database::Curve& result, std::size_t index) const;

  std::span<const float> frequency_list_;
  std::vector<std::int32_t> row_of_position_;  // -1: no repeat has this frequency of the list
  std::vector<Sums> rows_;                     // in the order in which frequencies turned up
  std::vector<ErrorSums> error_rows_;          // in the same order, as far as errors turned up
  std::size_t next_position_ = 0;              // where the frequency after the last one would be
  int used_repeats_ = 0;                       // added so far, those switched off not counted
};

}  // namespace Module_averaged_data
