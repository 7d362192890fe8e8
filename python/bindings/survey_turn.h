// survey_turn.h: one thread at a time works on the open survey.
#pragma once
#include <exception>
#include <stdexcept>

#include <pybind11/pybind11.h>

#include "core/trap_errors.h"

namespace Python {

/// What work on a survey reports: brenlox.Error.
class SurveyError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Held while a thread works on the survey or has messages of it; others wait without the interpreter lock.
class SurveyTurn {
 public:
  /// Needs the lock. Throws SurveyError to a progress function that wants to use the survey while it is
  /// worked on, and KeyboardInterrupt if Ctrl+C ends the wait.
  SurveyTurn();
  SurveyTurn(const SurveyTurn&) = delete;
  SurveyTurn& operator=(const SurveyTurn&) = delete;
  ~SurveyTurn();
};

/// Throws SurveyError if no survey is open. Waits for other threads; may be called within a turn.
void require_open();

/// In a process that was forked: leaves the open survey to the parent, whose connection must not be used
/// here.
void leave_survey_to_parent();

/// Reads the open survey without the interpreter lock. @param work  handles no objects of Python; what it
/// throws becomes a SurveyError, but for std::invalid_argument
template <class Work>
auto at_survey(const Work& work) {
  const SurveyTurn turn;
  require_open();
  const pybind11::gil_scoped_release without_lock;
  try {
    return work();
  } catch (const std::invalid_argument&) {
    throw;
  } catch (const std::exception& failure) {
    throw SurveyError(failure_text(failure));
  }
}

}  // namespace Python
