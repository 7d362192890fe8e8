#include "python/bindings/python_interface.h"

#include <exception>
#include <memory>
#include <utility>

#include "core/trap_errors.h"

namespace Python {

namespace py = pybind11;

namespace {

std::string joined(const std::vector<std::string>& messages) {
  std::string text;
  for (const std::string& message : messages) {
    text += (text.empty() ? "" : "\n") + message;
  }
  return text.empty() ? "The work has failed" : text;
}

}  // namespace

bool PythonInterface::ask_yes_no(const std::string& question) {
  if (!agrees_) {
    messages_.push_back(question);
  }
  return agrees_;
}

void PythonInterface::show_progress(std::string_view /*what*/, int percent) {
  constexpr double percents = 100.0;
  share_done_ = percent < 0 ? share_done_ : percent / percents;
}

bool PythonInterface::stop_requested() { return interruption_.asked(share_done_); }

void PythonInterface::begin(py::object progress, bool agrees) {
  messages_.clear();
  interruption_ = Interruption(std::move(progress));
  share_done_ = 0.0;
  agrees_ = agrees;
}

void PythonInterface::end() {
  const Interruption interruption = std::exchange(interruption_, Interruption());
  interruption.rethrow();
}

PythonInterface& python_interface() {
  static PythonInterface* const installed = [] {
    auto interface = std::make_unique<PythonInterface>();
    PythonInterface* const kept = interface.get();
    (void)install_user_interface(std::move(interface));
    return kept;
  }();
  return *installed;
}

void run_work(const std::function<int()>& work, py::object progress, bool agrees) {
  const SurveyTurn turn;
  PythonInterface& interface = python_interface();
  interface.begin(std::move(progress), agrees);
  int status = -1;
  {
    const py::gil_scoped_release without_lock;
    status = trap_errors("", work);
  }
  interface.end();
  if (status != 0) {
    throw SurveyError(joined(interface.messages()));
  }
}

}  // namespace Python
