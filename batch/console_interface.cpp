#include "batch/console_interface.h"

#include <csignal>
#include <iostream>
#include <memory>

#include "platform/console/terminal.h"

namespace Batch {
namespace {

volatile std::sig_atomic_t interrupted = 0;

extern "C" void note_interrupt(int /*signal*/) {
  interrupted = 1;
  std::signal(SIGINT, SIG_DFL);
}

}  // namespace

ConsoleInterface::ConsoleInterface(Answer answer)
    : answer_(answer), on_terminal_(console::standard_error_is_terminal()) {}

void ConsoleInterface::show_message(const std::string& text) {
  clear_progress();
  std::cerr << text << std::endl;  // flushed, so that it is there even if the process is killed next
}

bool ConsoleInterface::ask_yes_no(const std::string& question) {
  show_message(question + (answer_ == Answer::yes ? " Yes" : " No"));
  return answer_ == Answer::yes;
}

// Every path is an argument, so the logic has none to ask for here.
std::string ConsoleInterface::select_file_to_open(const FileDialogRequest& /*request*/) { return {}; }
std::string ConsoleInterface::select_file_to_create(const FileDialogRequest& /*request*/) { return {}; }
void ConsoleInterface::set_busy_pointer(bool /*busy*/) {}
void ConsoleInterface::process_events() {}

void ConsoleInterface::show_progress(std::string_view what, int percent) {
  if (!on_terminal_ || percent == shown_percent_) {
    return;
  }
  if (percent < 0) {
    clear_progress();
    return;
  }
  clear_progress();
  std::cerr << what << ' ' << percent << " %" << std::flush;
  shown_percent_ = percent;
}

bool ConsoleInterface::stop_requested() { return interrupted != 0; }

void ConsoleInterface::clear_progress() {
  if (shown_percent_ >= 0) {
    std::cerr << "\r\x1b[K";
    shown_percent_ = -1;
  }
}

void install_console(Answer answer) { install_user_interface(std::make_unique<ConsoleInterface>(answer)); }

void catch_interrupts() { std::signal(SIGINT, note_interrupt); }

}  // namespace Batch
