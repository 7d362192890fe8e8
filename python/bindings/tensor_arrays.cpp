#include "python/bindings/tensor_arrays.h"

#include <utility>

namespace Python {

using namespace numerics::impedance;

namespace {

constexpr std::size_t tipper_elements = 2;

PartCovariance covariance_at(const Numbers& covariance, std::size_t element) {
  const double* const at = covariance.data() + element * static_cast<std::size_t>(covariance_parts);
  return {at[0], at[1], at[2]};
}

}  // namespace

TensorArrays::TensorArrays(ComplexNumbers z, Numbers covariance)
    : z_(std::move(z)), covariance_(std::move(covariance)) {
  check_shape("z", z_, {any_length, 2, 2});
  check_shape("covariance", covariance_, {z_.shape(0), 2, 2, covariance_parts});
}

Tensor TensorArrays::at(std::size_t index) const {
  Tensor tensor;
  for (std::size_t element = 0; element < element_count; ++element) {
    tensor.z[element] = z_.data()[index * element_count + element];
    tensor.covariance[element] = covariance_at(covariance_, index * element_count + element);
  }
  return tensor;
}

TipperArrays::TipperArrays(ComplexNumbers t, Numbers covariance)
    : t_(std::move(t)), covariance_(std::move(covariance)) {
  check_shape("t", t_, {any_length, 2});
  check_shape("covariance", covariance_, {t_.shape(0), 2, covariance_parts});
}

Tipper TipperArrays::at(std::size_t index) const {
  const std::size_t first = index * tipper_elements;
  return {t_.data()[first], t_.data()[first + 1], covariance_at(covariance_, first),
          covariance_at(covariance_, first + 1)};
}

py::tuple ElementRows::take(std::vector<py::ssize_t> shape) {
  std::vector<py::ssize_t> of_covariance = shape;
  of_covariance.push_back(covariance_parts);
  return py::make_tuple(array_of(std::move(values_), std::move(shape)),
                        array_of(std::move(covariance_), std::move(of_covariance)));
}

}  // namespace Python
