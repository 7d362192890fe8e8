// python_interface.h: the user interface of a program whose user is a script.
//
// Messages are kept for the caller: those of work that fails are the words of its exception. Ctrl+C, or a
// progress function that returns False, asks the work to stop at its next safe place.
#pragma once
#include <functional>
#include <string>
#include <vector>

#include <pybind11/pybind11.h>

#include "core/user_interface.h"
#include "python/bindings/interruption.h"
#include "python/bindings/survey_turn.h"

namespace Python {

class PythonInterface final : public UserInterface {
 public:
  void show_message(const std::string& text) override { messages_.push_back(text); }
  bool ask_yes_no(const std::string& question) override;
  std::string select_file_to_open(const FileDialogRequest& /*request*/) override { return {}; }
  std::string select_file_to_create(const FileDialogRequest& /*request*/) override { return {}; }
  void set_busy_pointer(bool /*busy*/) override {}
  void process_events() override {}
  void show_progress(std::string_view what, int percent) override;
  bool stop_requested() override;

  /// Before a piece of work.
  /// @param agrees  to questions, such as whether to replace a file
  void begin(pybind11::object progress, bool agrees);
  /// After it: raises what has stopped it, if it wasn't a False.
  void end();
  [[nodiscard]] const std::vector<std::string>& messages() const { return messages_; }

 private:
  std::vector<std::string> messages_;
  Interruption interruption_;
  double share_done_ = 0.0;
  bool agrees_ = false;
};

/// The installed one.
PythonInterface& python_interface();

/// Runs work without the interpreter lock, one piece at a time: other threads wait, and what the work itself
/// calls, as its progress function, is refused. @param work gives 0, or -1 after messages, which become the
/// words of a SurveyError; one that throws does, too
void run_work(const std::function<int()>& work, pybind11::object progress = pybind11::none(),
              bool agrees = false);

}  // namespace Python
