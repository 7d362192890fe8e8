// interruption.h: lets Ctrl+C, and what a progress function raises, end long work.
#pragma once
#include <chrono>
#include <exception>
#include <functional>

#include <pybind11/pybind11.h>

namespace Python {

/// Asked by long work that runs without the interpreter lock, in the thread that called it.
class Interruption {
 public:
  /// @param progress  None, or a function of the share done, 0 to 1, that stops the work by returning False
  explicit Interruption(pybind11::object progress = pybind11::none());

  /// True if the work is to end. Takes the lock some times a second at most.
  bool asked(double share_done = 0.0);

  /// Calls a function of the caller, with the lock. The work is to end if it returns False or raises.
  void tell(const std::function<pybind11::object()>& function);

  /// Raises KeyboardInterrupt, or what the progress function has raised. Nothing happens if the work went to
  /// its end or the function has returned False. Needs the lock.
  void rethrow() const;

 private:
  bool look(const std::function<bool()>& says_stop);

  pybind11::object progress_;  // null without one: an interface may outlive the interpreter
  std::chrono::steady_clock::time_point next_look_;
  std::exception_ptr raised_;
  bool ended_ = false;
};

}  // namespace Python
