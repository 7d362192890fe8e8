// estimate_columns.h: values and errors of named quantities, an array of shape (n,) each.
#pragma once
#include <cstddef>
#include <string>
#include <vector>

#include "numerics/impedance/estimate.h"
#include "python/bindings/array_arguments.h"

namespace Python {

/// All NaN at first. Filled without the interpreter lock; made and taken with it.
class EstimateColumns {
 public:
  /// @param names  of the quantities; that of an error ends with "_error"
  EstimateColumns(std::size_t count, std::vector<std::string> names);
  /// @param quantity  its place among the names
  void put(std::size_t quantity, std::size_t row, const numerics::impedance::Estimate& estimate) {
    values_[quantity][row] = estimate.value;
    errors_[quantity][row] = estimate.error;
  }
  /// The arrays by name, which own what was collected.
  [[nodiscard]] py::dict take();

 private:
  std::vector<std::string> names_;
  std::vector<std::vector<double>> values_;
  std::vector<std::vector<double>> errors_;
};

}  // namespace Python
