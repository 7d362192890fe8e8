// Works the main window and its dialogs at random for a number of steps, on a survey made for it, and looks
// now and then whether the survey is sound.
//
//   soak [--steps N] [--seed S] [--check-every N] [--menu-item NAME...] [--profile] [--tell]
//
// Whatever the hand does, only the soak's own folder can be written. Where the system doesn't allow that, the
// program ends with status 77. The status is 1 after a crash, a hang or a fault of the survey; then the seed
// and the last steps are on the standard error.
#include <QApplication>
#include <QLoggingCategory>
#include <QStyleFactory>
#include <cstdlib>
#include <exception>
#include <iostream>

#include <CLI/CLI.hpp>

#include "tests/soak/soak_run.h"
#include "tests/soak/watched_process.h"
#include "tests/support/own_mounts.h"
#include "tests/support/temporary_folder.h"

namespace {

constexpr int not_possible = 77;
constexpr int patience_seconds = 180;  // the slowest step with sanitizers on a busy machine stays below

int soak(const SoakChoices& choices, const TemporaryFolder& folder, const ReportStep& report) {
  if (!own_mounts::enter()) {
    std::cerr << "this system lets no process have mounts of its own\n";
    return not_possible;
  }
  own_mounts::leave_writable_only(folder.folder());
  for (const char* const variable :
       {"HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR", "TMPDIR"}) {
    setenv(variable, folder.folder().c_str(), 1);
  }
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  std::filesystem::current_path(folder.folder());

  int count = 1;
  std::string name = "soak";
  char* arguments[] = {name.data(), nullptr};
  const QApplication application(count, arguments);
  QApplication::setStyle(QStyleFactory::create("Fusion"));
  SoakRun run(choices, folder, report);
  return run.run();
}

int run(int argc, char** argv) {
  SoakChoices choices;
  CLI::App program("Random work on the windows.");
  program.add_option("--steps", choices.steps, "How many steps.")->check(CLI::PositiveNumber);
  program.add_option(
      "--seed", choices.seed,
      "Chooses the steps. Folders that are still being read, and timers, may lead a run with the same "
      "seed elsewhere.");
  program.add_option("--check-every", choices.check_every, "Steps between two looks at the survey.")
      ->check(CLI::PositiveNumber);
  program.add_option(
      "--menu-item", choices.way,
      "Come back to the dialog behind this menu item or button all the time; further names are "
      "buttons and lists there, which may lead on to another one.");
  bool reports_steps = false;
  program.add_flag("--tell", reports_steps, "Write each step to the standard error.");
  program.add_flag("--profile", choices.profile, "Report where the memory in use was allocated.");
  CLI11_PARSE(program, argc, argv);

  const TemporaryFolder folder;
  const auto work = [&](const ReportStep& report) {
    return soak(choices, folder, [&](const std::string& step) {
      report(step);
      if (reports_steps) {
        std::cerr << step << '\n';
      }
    });
  };
  const int status = run_watched(work, patience_seconds);
  if (status != 0 && status != not_possible) {
    std::cerr << "seed " << choices.seed << '\n';
  }
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
  }
}
