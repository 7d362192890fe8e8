// child_process.h: a part of a test in a process of its own.
#pragma once
#include <functional>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/own_mounts.h"

/// Starts `body` in a child process, whose failed expectations show in its exit status.
inline pid_t start_child(const std::function<void()>& body) {
  std::fflush(stdout);  // or the child would have it to write as well
  const pid_t child = fork();
  if (child == 0) {
    body();
    _exit(::testing::Test::HasFailure() ? 1 : 0);
  }
  return child;
}

/// @return the exit status; -1 if the child was ended by a signal
inline int wait_for_child(pid_t child) {
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// Runs `body` in a child that has mounts of its own. @return false if the system doesn't allow it
[[nodiscard]] inline bool run_in_own_mounts(const std::function<void()>& body) {
  constexpr int not_possible = 77;
  const int status = wait_for_child(start_child([&] {
    if (!own_mounts::enter()) {
      _exit(not_possible);
    }
    body();
  }));
  EXPECT_TRUE(status == 0 || status == not_possible) << "see the failures above";
  return status != not_possible;
}
