// array_arguments.h: arrays as callers give them, checked for shape, and arrays that are given back.
//
// A wrong shape is a ValueError that names the argument, the shape that was expected and the one received.
#pragma once
#include <cstddef>
#include <initializer_list>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

namespace Python {

namespace py = pybind11;

/// Numbers in C order; what isn't is copied on the way in.
using Numbers = py::array_t<double, py::array::c_style | py::array::forcecast>;
using ComplexNumbers = py::array_t<std::complex<double>, py::array::c_style | py::array::forcecast>;
using Codes = py::array_t<std::int32_t, py::array::c_style | py::array::forcecast>;

/// A length that may be anything.
inline constexpr py::ssize_t any_length = -1;

/// Throws ValueError unless the array has this shape.
void check_shape(const char* name, const py::array& array, std::initializer_list<py::ssize_t> shape);

template <class Number>
std::span<const Number> elements_of(
    const py::array_t<Number, py::array::c_style | py::array::forcecast>& array) {
  return {array.data(), static_cast<std::size_t>(array.size())};
}

/// An array that owns the vector's memory; nothing is copied.
template <class Number>
py::array_t<Number> array_of(std::vector<Number> numbers, std::vector<py::ssize_t> shape) {
  auto* const kept = new std::vector<Number>(std::move(numbers));
  const py::capsule owner(kept, [](void* vector) { delete static_cast<std::vector<Number>*>(vector); });
  return py::array_t<Number>(std::move(shape), kept->data(), owner);
}

template <class Number>
py::array_t<Number> array_of(std::vector<Number> numbers) {
  const auto length = static_cast<py::ssize_t>(numbers.size());
  return array_of(std::move(numbers), {length});
}

}  // namespace Python
