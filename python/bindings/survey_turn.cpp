#include "python/bindings/survey_turn.h"

#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>
#include <utility>

#include "core/session_state.h"
#include "database/survey_database.h"

namespace Python {

namespace py = pybind11;

namespace {

struct Turns {
  std::timed_mutex mutex;
  std::atomic<std::thread::id> owner;
};

/// Kept to the end of the process: what is collected last may still close a survey.
Turns*& turns() {
  static auto* kept = new Turns;
  return kept;
}

bool wait_for_a_while() {
  constexpr std::chrono::milliseconds between_looks{50};
  const py::gil_scoped_release without_lock;
  return turns()->mutex.try_lock_for(between_looks);
}

}  // namespace

SurveyTurn::SurveyTurn() {
  if (turns()->owner == std::this_thread::get_id()) {
    throw SurveyError("There is work going on; call this when that has ended");
  }
  if (!turns()->mutex.try_lock()) {
    while (!wait_for_a_while()) {
      if (PyErr_CheckSignals() != 0) {
        throw py::error_already_set();
      }
    }
  }
  turns()->owner = std::this_thread::get_id();
}

SurveyTurn::~SurveyTurn() {
  turns()->owner = std::thread::id();
  turns()->mutex.unlock();
}

void require_open() {
  if (turns()->owner != std::this_thread::get_id()) {
    const SurveyTurn end_of_other_work;
  }
  if (!session().database_open) {
    throw SurveyError("The survey is closed");
  }
}

void leave_survey_to_parent() {
  turns() = new Turns;  // the parent's may be held by a thread that isn't here
  if (session().database_open) {
    // Never destroyed: that would write to the parent's file and remove its private copy.
    static auto* const left = new Module_database::OpenSurvey;
    *left = std::exchange(Module_database::open_survey(), Module_database::OpenSurvey());
    session().database_open = false;
  }
}

}  // namespace Python
