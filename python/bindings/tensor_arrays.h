// tensor_arrays.h: tensors and tippers of n frequencies, looked at where the caller has them.
#pragma once
#include <cstddef>
#include <span>
#include <vector>

#include "numerics/impedance/tensor.h"
#include "numerics/impedance/tipper.h"
#include "python/bindings/array_arguments.h"

namespace Python {

inline constexpr py::ssize_t covariance_parts = 3;  // real, imaginary, cross

/// z of shape (n, 2, 2), covariance of shape (n, 2, 2, 3). Keeps the arrays.
class TensorArrays {
 public:
  TensorArrays(ComplexNumbers z, Numbers covariance);
  [[nodiscard]] std::size_t count() const { return static_cast<std::size_t>(z_.shape(0)); }
  [[nodiscard]] numerics::impedance::Tensor at(std::size_t index) const;

 private:
  ComplexNumbers z_;
  Numbers covariance_;
};

/// t of shape (n, 2), covariance of shape (n, 2, 3).
class TipperArrays {
 public:
  TipperArrays(ComplexNumbers t, Numbers covariance);
  [[nodiscard]] std::size_t count() const { return static_cast<std::size_t>(t_.shape(0)); }
  [[nodiscard]] numerics::impedance::Tipper at(std::size_t index) const;

 private:
  ComplexNumbers t_;
  Numbers covariance_;
};

/// Values and covariances of elements, one frequency after the other, as arrays.
class ElementRows {
 public:
  explicit ElementRows(std::size_t count) {
    values_.reserve(count);
    covariance_.reserve(count * static_cast<std::size_t>(covariance_parts));
  }
  void append(std::complex<double> value, const numerics::impedance::PartCovariance& known) {
    values_.push_back(value);
    covariance_.insert(covariance_.end(), {known.real, known.imaginary, known.cross});
  }
  /// (values, covariance). @param shape  of the values
  [[nodiscard]] py::tuple take(std::vector<py::ssize_t> shape);

 private:
  std::vector<std::complex<double>> values_;
  std::vector<double> covariance_;
};

}  // namespace Python
