// What the main view does at a click and at a step to the next station, without the drawing: a line of 100
// stations with 60 frequencies, 12 repeats at the station that is edited, alone and beside 20 further lines.
// Wall-clock time, as the user waits for the disk too. Counter: rows (readings in the survey).
#include <chrono>
#include <functional>
#include <memory>
#include <stdexcept>

#include <benchmark/benchmark.h>

#include "benchmarks/line_survey.h"
#include "core/undo_stack.h"
#include "display/profile_plot.h"
#include "display/raw_plot.h"
#include "display/selection.h"
#include "display/station_plot.h"
#include "reduction/masks.h"
#include "reduction/profile_data_set.h"
#include "reduction/undo.h"
#include "tests/support/temporary_folder.h"

namespace {

using line_survey::edited_station;
using line_survey::require;

/// One survey, open for the benchmarks of its size.
class Survey {
 public:
  explicit Survey(int other_lines) {
    line_survey::make(folder_.path("survey.mdb"), other_lines);
    require(Module_display_data::fill_selection_lists(lists_));
    (void)Module_display_data::display_station(edited_station, {});
    rows = line_survey::row_count();
  }
  ~Survey() { Module_database::reset_module(); }
  Survey(const Survey&) = delete;
  Survey& operator=(const Survey&) = delete;

  int rows = 0;

 private:
  TemporaryFolder folder_;
  Module_display_data::SelectionLists lists_;
};

Survey& survey(int other_lines) {
  static std::unique_ptr<Survey> open;
  static int open_lines = -1;
  if (open_lines != other_lines) {
    open.reset();
    open = std::make_unique<Survey>(other_lines);
    open_lines = other_lines;
  }
  return *open;
}

void run(benchmark::State& state, const std::function<void()>& work) {
  state.counters["rows"] = survey(static_cast<int>(state.range(0))).rows;
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    work();
    state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
}

/// Masking a point of a repeat until the data sets are up to date.
void mask_click(benchmark::State& state) {
  run(state, [] {
    if (Module_averaged_data::toggle_repeat_point(3, 7, Module_averaged_data::Component::phase) !=
        Module_averaged_data::Edit::changed) {
      throw std::runtime_error("nothing was masked");
    }
  });
  Module_Brenlox::clear_undo();
}

/// From the data sets to what the charts are given, for all three pairs.
void make_plots(benchmark::State& state) {
  run(state, [] {
    benchmark::DoNotOptimize(Module_display_data::profile_plot());
    benchmark::DoNotOptimize(Module_display_data::station_plot(false));
    benchmark::DoNotOptimize(Module_display_data::raw_plot(false));
  });
}

/// To the next station and back, each a step.
void station_step(benchmark::State& state) {
  int station = edited_station;
  run(state, [&] {
    station = station == edited_station ? edited_station + 1 : edited_station;
    benchmark::DoNotOptimize(Module_display_data::display_station(station, {}));
  });
  (void)Module_display_data::display_station(edited_station, {});
}

void load_profile(benchmark::State& state) {
  run(state, [] { require(Module_averaged_data::load_profile_data(Module_averaged_data::selected_key())); });
}

[[maybe_unused]] const bool registered = line_survey::register_benchmarks({{"mask_click", mask_click},
                                                                           {"make_plots", make_plots},
                                                                           {"station_step", station_step},
                                                                           {"load_profile", load_profile}});

}  // namespace

BENCHMARK_MAIN();
