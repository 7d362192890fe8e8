#include "python/bindings/interruption.h"

#include <utility>

namespace Python {

namespace py = pybind11;

namespace {

constexpr std::chrono::milliseconds between_looks{50};

}  // namespace

Interruption::Interruption(py::object progress)
    : progress_(progress.is_none() ? py::object() : std::move(progress)),
      next_look_(std::chrono::steady_clock::now()) {}  // short work can be stopped, too

bool Interruption::asked(double share_done) {
  const auto now = std::chrono::steady_clock::now();
  if (ended_ || now < next_look_) {
    return ended_;
  }
  next_look_ = now + between_looks;
  const py::gil_scoped_acquire lock;
  ended_ = look([&] { return progress_ && progress_(share_done).is(py::bool_(false)); });
  return ended_;
}

void Interruption::tell(const std::function<py::object()>& function) {
  const py::gil_scoped_acquire lock;
  ended_ = look([&] { return function().is(py::bool_(false)); }) || ended_;
}

bool Interruption::look(const std::function<bool()>& says_stop) {
  try {
    if (PyErr_CheckSignals() != 0) {
      throw py::error_already_set();
    }
    return says_stop();
  } catch (const py::error_already_set&) {
    raised_ = std::current_exception();
    return true;
  }
}

void Interruption::rethrow() const {
  if (raised_) {
    std::rethrow_exception(raised_);
  }
}

}  // namespace Python
