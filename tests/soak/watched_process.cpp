#include "tests/soak/watched_process.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <iostream>

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr std::size_t kept_steps = 40;

/// Reads lines until the child has closed its end. @return false if nothing came for too long
bool follow(int end, int patience_seconds, std::deque<std::string>& steps) {
  std::string rest;
  for (;;) {
    pollfd waiting{end, POLLIN, 0};
    constexpr int milliseconds = 1000;
    if (poll(&waiting, 1, patience_seconds * milliseconds) <= 0) {
      return false;
    }
    std::array<char, 4096> chunk{};
    const ssize_t count = read(end, chunk.data(), chunk.size());
    if (count <= 0) {
      return true;
    }
    rest.append(chunk.data(), static_cast<std::size_t>(count));
    for (std::size_t line = rest.find('\n'); line != std::string::npos; line = rest.find('\n')) {
      steps.push_back(rest.substr(0, line));
      rest.erase(0, line + 1);
      if (steps.size() > kept_steps) {
        steps.pop_front();
      }
    }
  }
}

}  // namespace

int run_watched(const std::function<int(const ReportStep&)>& work, int patience_seconds) {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) {
    return 1;
  }
  const pid_t child = fork();
  if (child == 0) {
    close(ends[0]);
    const int status = work([end = ends[1]](const std::string& step) {
      const std::string line = step + '\n';
      (void)!write(end, line.data(), line.size());
    });
    std::exit(status);  // with the check for leaks
  }
  close(ends[1]);
  std::deque<std::string> steps;
  const bool ended = follow(ends[0], patience_seconds, steps);
  if (!ended) {
    kill(child, SIGABRT);
  }
  int status = 0;
  waitpid(child, &status, 0);
  close(ends[0]);
  const int exit_status = WIFEXITED(status) ? WEXITSTATUS(status) : 1;
  if (exit_status != 0) {
    std::cerr << (ended ? "" : "nothing happened any more\n");
    if (WIFSIGNALED(status)) {
      std::cerr << "ended by signal " << WTERMSIG(status) << '\n';
    }
    for (const std::string& step : steps) {
      std::cerr << step << '\n';
    }
  }
  return exit_status;
}
