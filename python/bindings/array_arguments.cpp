#include "python/bindings/array_arguments.h"

namespace Python {

namespace {

std::string shape_text(const py::ssize_t* lengths, std::size_t count) {
  std::string text = "(";
  for (std::size_t axis = 0; axis < count; ++axis) {
    text += (axis == 0 ? "" : ", ") + (lengths[axis] == any_length ? "n" : std::to_string(lengths[axis]));
  }
  return text + (count == 1 ? ",)" : ")");
}

}  // namespace

void check_shape(const char* name, const py::array& array, std::initializer_list<py::ssize_t> shape) {
  bool fits = static_cast<std::size_t>(array.ndim()) == shape.size();
  py::ssize_t axis = 0;
  for (const py::ssize_t length : shape) {
    fits = fits && (length == any_length || array.shape(axis) == length);
    ++axis;
  }
  if (!fits) {
    throw py::value_error(std::string(name) + ": expected shape " + shape_text(shape.begin(), shape.size()) +
                          ", received " + shape_text(array.shape(), static_cast<std::size_t>(array.ndim())));
  }
}

}  // namespace Python
