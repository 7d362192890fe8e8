// Run All of Rho+: the whole line inverted, each station displayed once in the main window and in that of the
// results, with its files written; 60 frequencies, 2 repeats at two scan rates. Offscreen, wall-clock time.
// The bound is the same stations loaded and inverted without windows and files. Counters: those of
// beside_bound.h; stations_per_s.
#include <QPushButton>
#include <filesystem>
#include <memory>

#include <benchmark/benchmark.h>

#include "app/Form_main.h"
#include "benchmarks/beside_bound.h"
#include "benchmarks/line_survey.h"
#include "benchmarks/offscreen.h"
#include "core/undo_stack.h"
#include "display/selection.h"
#include "output/rhoplus_settings.h"
#include "rhoplus/station_inversion.h"
#include "rhoplus/windows/Form_rhoplus_inversion.h"
#include "tests/support/recording_interface.h"
#include "tests/support/temporary_folder.h"

namespace {

void press(const QWidget& window, const char* button) {
  auto* const found = window.findChild<QPushButton*>(button);
  line_survey::require(found != nullptr ? 0 : -1);
  found->click();
}

void invert_bare() {
  const int first = Module_display_data::first_station_of_current_line();
  for (int index = first; index < first + session().stations_in_line; ++index) {
    benchmark::DoNotOptimize(Module_display_data::display_station(index, {}));
    Module_rhoplus::StationInversion inversion;
    line_survey::require(
        Module_rhoplus::invert_station_in_memory(Module_averaged_data::selected_key(), session().frequencies,
                                                 Module_output::rhoplus_settings(), inversion));
  }
}

void run_all(benchmark::State& state) {
  const RecordingInterface interface;
  const TemporaryFolder folder;
  const std::filesystem::path started_in = std::filesystem::current_path();
  std::filesystem::current_path(folder.folder());  // the preferences are kept here
  const std::string path = folder.path("survey.mdb");
  const int stations = static_cast<int>(state.range(0));
  line_survey::make(path, 0, stations);
  line_survey::require(Module_database::close_database());
  {
    Form_main window;
    window.resize(1280, 800);
    window.show();
    window.open_survey(QString::fromStdString(path));
    press(window, "Command_invert");
    const auto* const results = window.findChild<Form_rhoplus_inversion*>();
    QCoreApplication::processEvents();
    run_beside_bound(
        state, [&] { press(*results, "Command_run_all"); }, invert_bare, wall_seconds);
    state.counters["stations_per_s"] =
        benchmark::Counter(static_cast<double>(stations), benchmark::Counter::kIsIterationInvariantRate);
  }
  Module_Brenlox::clear_undo();
  Module_database::reset_module();
  std::filesystem::current_path(started_in);
}

BENCHMARK(run_all)->Arg(100)->Arg(400)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) { return run_offscreen(argc, argv); }
