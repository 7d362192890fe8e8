// finished_work.h: what finished work has written, and where, for the line that a window has for it.
#pragma once
#include <functional>
#include <string>

namespace Module_Brenlox {

struct FinishedWork {
  std::string text;  // one line: what was written where
  std::string path;  // the file or folder, where people go next
};

/// Passes the news on to the listener; without one nothing happens.
void tell_finished(const std::string& text, const std::string& path);

/// Replaces the listener; an empty one for none.
void set_finished_listener(std::function<void(const FinishedWork&)> listener);

}  // namespace Module_Brenlox
