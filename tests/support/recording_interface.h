// recording_interface.h: a user interface that keeps what it is asked to show and gives the answers a test
// has put into it.
#pragma once
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "core/user_interface.h"

struct Recorded {
  std::vector<std::string> messages;
  std::vector<std::string> questions;
  std::vector<FileDialogRequest> file_dialogs;
  std::function<void()> file_asked = [] {};  // runs where a file dialog would be up
  std::deque<bool> yes_no_answers;           // No when empty
  std::deque<std::string> path_answers;      // cancelled when empty
  std::vector<std::string> prompts;
  std::deque<std::string> text_answers;  // cancelled when empty
  std::vector<int> progress;
  std::vector<std::string> progress_texts;  // each once in a row; the last one is empty
  bool busy = false;
  std::function<bool()> stop = [] { return false; };
  std::function<void()> events = [] {};  // runs where the logic lets events run
};

/// Installs a recording interface for the life of a test and puts the earlier one back.
class RecordingInterface {
 public:
  RecordingInterface();
  RecordingInterface(const RecordingInterface&) = delete;
  RecordingInterface& operator=(const RecordingInterface&) = delete;
  ~RecordingInterface();

  Recorded* operator->() { return &recorded_; }
  /// The messages shown since the last call.
  std::vector<std::string> take_messages();

 private:
  Recorded recorded_;
  std::unique_ptr<UserInterface> earlier_;
};
