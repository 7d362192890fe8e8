#include "occam/windows/results_windows.h"

#include <algorithm>
#include <string>
#include <system_error>
#include <utility>

#include "core/trap_errors.h"
#include "core/user_interface.h"
#include "occam/inversion/run_inversion.h"
#include "occam/run_parts.h"

using namespace Module_occam;
namespace fs = std::filesystem;

ResultsWindows::~ResultsWindows() { qDeleteAll(windows_); }

void ResultsWindows::open_chosen() {
  const std::string control_file = ask_for_control_file();
  if (control_file.empty()) {
    return;
  }
  const fs::path chosen = fs::absolute(control_file);
  for (Form_occam_inversion* const window : windows_of(chosen.parent_path())) {
    if (own_start(window->control_file()) == own_start(chosen.filename().string())) {
      show_again(*window, Page::section);
      return;
    }
  }
  RunResults results;
  if (open_results(control_file, results, Iterations::may_come) != 0) {
    return;
  }
  const bool has_iterations = results.has_iterations();
  if (has_iterations ||
      user_interface().ask_yes_no(lack_of_iterations(results) +
                                  ". Open it to see its start model and run its inversion?")) {
    show_window(std::move(results), has_iterations ? Page::section : Page::inversion);
  }
}

void ResultsWindows::open_to_run(const fs::path& directory) {
  const QList<Form_occam_inversion*> windows = windows_of(directory);
  if (const auto busy = std::ranges::find_if(windows, &Form_occam_inversion::running);
      busy != windows.end()) {
    show_again(**busy, Page::inversion);
    return;
  }
  for (Form_occam_inversion* const window : windows) {
    window->stop_and_close();  // it shows what stood there before the run was created anew
  }
  RunResults results;
  const int opened = trap_errors("An error occurred while opening the run directory: ", [&] {
    return open_results(directory / find_start_file(directory), results, Iterations::may_come);
  });
  if (opened == 0) {
    show_window(std::move(results), Page::inversion);
  }
}

QList<Form_occam_inversion*> ResultsWindows::windows_of(const fs::path& folder) {
  forget_closed();
  QList<Form_occam_inversion*> found;
  for (const auto& window : windows_) {
    std::error_code gone;
    if (fs::equivalent(window->folder(), folder, gone)) {
      found.append(window.data());
    }
  }
  return found;
}

void ResultsWindows::show_again(Form_occam_inversion& window, Page page) {
  if (page == Page::inversion) {
    window.show_inversion();
  }
  window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.raise();
  window.activateWindow();
}

void ResultsWindows::show_window(RunResults results, Page page) {
  closing_ = false;  // whoever opens a run goes on working
  auto* const window = new Form_occam_inversion(std::move(results));
  window->setAttribute(Qt::WA_DeleteOnClose);
  windows_.append(window);
  connect(window, &QDialog::finished, this, [this] {
    forget_closed();
    if (windows_.isEmpty() && std::exchange(closing_, false)) {
      Q_EMIT all_closed();
    }
  });
  if (page == Page::inversion) {
    window->show_inversion();
  }
  window->show();
}

/// A window that was closed is deleted a little later.
void ResultsWindows::forget_closed() {
  windows_.removeIf([](const auto& window) { return window.isNull() || window->isHidden(); });
}

bool ResultsWindows::close_all() {
  forget_closed();
  const auto running = std::ranges::count_if(windows_, [](const auto& window) { return window->running(); });
  if (running > 0 && !closing_) {
    const bool one = running == 1;
    const auto first = std::ranges::find_if(windows_, [](const auto& window) { return window->running(); });
    const std::string what = one ? "An inversion is running in " + (*first)->folder().string() + ". Stop it"
                                 : std::to_string(running) + " inversions are running. Stop them";
    if (!user_interface().ask_yes_no(what +
                                     " and close the program? Iterations that are finished stay, and " +
                                     (one ? "it" : "they") + " can be continued.")) {
      return false;
    }
  }
  closing_ = false;
  const QList<QPointer<Form_occam_inversion>> windows = windows_;
  for (const auto& window : windows) {
    if (window) {
      window->stop_and_close();
    }
  }
  forget_closed();
  closing_ = !windows_.isEmpty();
  return windows_.isEmpty();
}
