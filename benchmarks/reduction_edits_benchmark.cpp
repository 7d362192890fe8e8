// What the main view does at a click and at a step to the next station, without the drawing: a line of 100
// stations with 60 frequencies, 12 repeats at the station that is edited, alone and beside 20 further lines.
// Wall-clock time, as the user waits. The bound is the same rows read and written with bare
// SQLite; of the plots, a copy of the finished ones. Counters: those of beside_bound.h, rows (readings in the
// survey).
#include <array>
#include <functional>
#include <memory>
#include <stdexcept>

#include <benchmark/benchmark.h>

#include "benchmarks/beside_bound.h"
#include "benchmarks/line_survey.h"
#include "core/undo_stack.h"
#include "display/profile_plot.h"
#include "display/raw_plot.h"
#include "display/selection.h"
#include "display/station_plot.h"
#include "reduction/data_sets/data_sets.h"
#include "reduction/edits/masks.h"
#include "reduction/edits/set_points.h"
#include "reduction/edits/undo.h"
#include "tests/support/temporary_folder.h"

namespace {

using line_survey::edited_station;
using line_survey::require;

/// One survey, open for the benchmarks of its size.
class Survey {
 public:
  explicit Survey(int other_lines) {
    const std::string path = folder_.path("survey.mdb");
    line_survey::make(path, other_lines);
    bare = std::make_unique<line_survey::BareWork>(path);
    require(Module_display_data::fill_selection_lists(lists_));
    (void)Module_display_data::display_station(edited_station, {});
    rows = line_survey::row_count();
  }
  ~Survey() {
    bare.reset();
    Module_database::reset_module();
  }
  Survey(const Survey&) = delete;
  Survey& operator=(const Survey&) = delete;

  int rows = 0;
  std::unique_ptr<line_survey::BareWork> bare;

 private:
  TemporaryFolder folder_;
  Module_display_data::SelectionLists lists_;
};

struct OpenSurvey {
  std::unique_ptr<Survey> survey;
  int other_lines = -1;
};

OpenSurvey& open_survey() {
  static OpenSurvey open;
  return open;
}

Survey& survey(int other_lines) {
  OpenSurvey& open = open_survey();
  if (open.other_lines != other_lines) {
    open.survey.reset();
    open.survey = std::make_unique<Survey>(other_lines);
    open.other_lines = other_lines;
  }
  return *open.survey;
}

void run(benchmark::State& state, const std::function<void()>& work,
         const std::function<void(line_survey::BareWork&)>& bound) {
  Survey& open = survey(static_cast<int>(state.range(0)));
  state.counters["rows"] = open.rows;
  run_beside_bound(
      state, work, [&] { bound(*open.bare); }, wall_seconds);
}

/// Masking a point of a repeat until the data sets are up to date.
void mask_click(benchmark::State& state) {
  run(
      state,
      [] {
        if (Module_averaged_data::toggle_repeat_point(3, 7, Module_averaged_data::Component::phase) !=
            Module_averaged_data::Edit::changed) {
          throw std::runtime_error("nothing was masked");
        }
      },
      [](line_survey::BareWork& bare) { bare.edit(); });
  Module_Brenlox::clear_undo();
}

/// Masking a point of all merged curves of the line as one command, and unmasking it in the next turn.
void mask_line(benchmark::State& state) {
  using namespace Module_averaged_data;
  bool counts = true;
  std::vector<CurvePoints> curves;
  const auto switch_points = [&] {
    counts = !counts;
    curves.clear();
    for (const ProfileColumn& column : data_sets().profile.columns) {
      curves.push_back({column.ID, {{data_sets().profile.frequencies[7], Component::phase, counts}}});
    }
    if (set_points(curves) != Edit::changed) {
      throw std::runtime_error("nothing was masked");
    }
  };
  run(state, switch_points, [](line_survey::BareWork& bare) { bare.edit_line(); });
  if (!counts) {
    switch_points();  // the next run begins with all points again
  }
  Module_Brenlox::clear_undo();
}

/// Undoing that command, and doing it again in the next turn.
void undo_line(benchmark::State& state) {
  using namespace Module_averaged_data;
  (void)survey(static_cast<int>(state.range(0)));
  std::vector<CurvePoints> curves;
  for (const ProfileColumn& column : data_sets().profile.columns) {
    curves.push_back({column.ID, {{data_sets().profile.frequencies[9], Component::phase, false}}});
  }
  (void)set_points(curves);
  bool undone = false;
  run(
      state,
      [&] {
        undone = !undone;
        if ((undone ? undo_last_change() : redo_last_change()).edit != Edit::changed) {
          throw std::runtime_error("nothing was undone");
        }
      },
      [](line_survey::BareWork& bare) { bare.edit_line(); });
  if (!undone) {
    (void)undo_last_change();
  }
  Module_Brenlox::clear_undo();
  (void)Module_display_data::display_station(edited_station, {});
}

/// From the data sets to what the charts are given, for all three pairs.
void make_plots(benchmark::State& state) {
  (void)survey(static_cast<int>(state.range(0)));
  using namespace Module_display_data;
  const auto plots = [] { return std::array{profile_plot(), station_plot(false), raw_plot(false)}; };
  const auto finished = plots();
  run(
      state, [&] { benchmark::DoNotOptimize(plots()); },
      [&](line_survey::BareWork& /*bare*/) { benchmark::DoNotOptimize(std::array(finished)); });
}

/// To the next station and back, each a step.
void station_step(benchmark::State& state) {
  int station = edited_station;
  run(
      state,
      [&] {
        station = station == edited_station ? edited_station + 1 : edited_station;
        benchmark::DoNotOptimize(Module_display_data::display_station(station, {}));
      },
      [](line_survey::BareWork& bare) { bare.step(); });
  (void)Module_display_data::display_station(edited_station, {});
}

void load_profile(benchmark::State& state) {
  run(
      state, [] { require(Module_averaged_data::load_selected_profile()); },
      [](line_survey::BareWork& bare) { bare.read_line(); });
}

[[maybe_unused]] const bool registered = line_survey::register_benchmarks({{"mask_click", mask_click},
                                                                           {"mask_line", mask_line},
                                                                           {"undo_line", undo_line},
                                                                           {"make_plots", make_plots},
                                                                           {"station_step", station_step},
                                                                           {"load_profile", load_profile}});

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  open_survey() = {};
}
