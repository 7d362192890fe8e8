// console_interface.h: the user interface of a program without windows.
//
// Messages are lines on standard error; an option of the command line answers the questions; progress is
// shown only if standard error is a terminal. Ctrl+C asks the work to stop at its next safe place, a second
// Ctrl+C ends the program at once.
#pragma once
#include "core/user_interface.h"

namespace Batch {

enum class Answer { no, yes };

class ConsoleInterface final : public UserInterface {
 public:
  explicit ConsoleInterface(Answer answer);

  void show_message(const std::string& text) override;
  bool ask_yes_no(const std::string& question) override;
  std::string select_file_to_open(const FileDialogRequest& request) override;
  std::string select_file_to_create(const FileDialogRequest& request) override;
  void set_busy_pointer(bool busy) override;
  void process_events() override;
  void show_progress(std::string_view what, int percent) override;
  bool stop_requested() override;

 private:
  void clear_progress();

  Answer answer_;
  bool on_terminal_;
  int shown_percent_ = -1;  // -1: no progress on the screen
};

/// Makes a console interface the installed one.
void install_console(Answer answer);

/// Lets Ctrl+C ask for a stop instead of ending the program.
void catch_interrupts();

}  // namespace Batch
