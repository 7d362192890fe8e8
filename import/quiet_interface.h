// quiet_interface.h: for a look at files whose faults the user is told of when they are imported.
#pragma once
#include "core/user_interface.h"

namespace Module_data_file {

/// For the life of a scope, messages are not shown and questions get the answer No. The window lives, the
/// user can stop the work, and its progress is told in words: the bar is that of the work to come.
class QuietInterface {
 public:
  QuietInterface();
  QuietInterface(const QuietInterface&) = delete;
  QuietInterface& operator=(const QuietInterface&) = delete;
  ~QuietInterface();

 private:
  std::unique_ptr<UserInterface>* earlier_;  // held by the interface that this installed
};

}  // namespace Module_data_file
