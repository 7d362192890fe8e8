// watched_process.h: work in a process of its own whose last steps are known however it ends.
#pragma once
#include <functional>
#include <string>

/// Reports what comes next; kept by the process that watches.
using ReportStep = std::function<void(const std::string&)>;

/// Runs `work` in a child process. If that crashes, fails or reports nothing for `patience_seconds`, its last
/// steps are written to the standard error. @return the exit status of `work`; 1 after a crash or a hang
int run_watched(const std::function<int(const ReportStep&)>& work, int patience_seconds);
