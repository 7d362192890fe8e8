// Averages and merged curves: the arithmetic alone, beside the sums of all values and their squares with no
// look at a mask or a frequency, and beside a copy of the curves that are merged; and the recalculation of a
// whole survey, beside reading and writing the same bytes with bare SQLite in the same commits. All figures
// are CPU time. Items are the repeats or averages taken in.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/bare_rows.h"
#include "benchmarks/beside_bound.h"
#include "core/session_state.h"
#include "reduction/averages.h"
#include "reduction/merge_curves.h"
#include "reduction/repeat_sums.h"
#include "tests/reduction/made_readings.h"
#include "tests/support/temporary_folder.h"

namespace {

namespace fs = std::filesystem;
using Module_averaged_data::MergedCurve;
using Module_averaged_data::RepeatSums;
using Module_database::Curve;
using Module_database::StoredReading;

constexpr int repeats_per_group = 3;
constexpr int scan_rates = 2;
constexpr int groups_per_commit = 500;

/// A decade in ten steps from 0.001 Hz, from step `first` on.
std::vector<float> frequencies(int first, int count) {
  std::vector<float> result;
  for (int i = first; i < first + count; ++i) {
    result.push_back(static_cast<float>(1e-3 * std::pow(10.0, 0.1 * i)));
  }
  return result;
}

StoredReading noisy_reading(const std::vector<float>& at, std::mt19937& random) {
  std::lognormal_distribution<float> resistivity(4.0F, 0.5F);
  std::normal_distribution<float> phase(45.0F, 5.0F);
  std::vector<made::Point> points;
  points.reserve(at.size());
  for (const float frequency : at) {
    points.push_back({frequency, resistivity(random), phase(random)});
  }
  return made::reading(points);
}

/// The arithmetic of one curve is over within a tick of the clock.
constexpr int kernel_rounds = 200;

void many_times(const std::function<void()>& work) {
  for (int round = 0; round < kernel_rounds; ++round) {
    work();
  }
}

void average_kernel(benchmark::State& state) {
  std::mt19937 random(1);
  const std::vector<float> list = frequencies(0, static_cast<int>(state.range(0)));
  std::vector<StoredReading> repeats;
  repeats.reserve(100);
  for (int i = 0; i < 100; ++i) {
    repeats.push_back(noisy_reading(list, random));
  }
  const auto average = [&] {
    RepeatSums sums(list);
    for (const StoredReading& repeat : repeats) {
      sums.add(repeat);
    }
    benchmark::DoNotOptimize(sums.average());
  };
  std::vector<float> sums(repeats.front().curve.data.size());
  std::vector<float> squares(sums.size());
  const auto sum_up = [&] {
    for (const StoredReading& repeat : repeats) {
      for (std::size_t i = 0; i < sums.size(); ++i) {
        const float value = repeat.curve.data[i];
        sums[i] += value;
        squares[i] += value * value;
      }
      benchmark::ClobberMemory();
    }
  };
  run_beside_bound(
      state, [&] { many_times(average); }, [&] { many_times(sum_up); });
  state.SetItemsProcessed(state.iterations() * 100 * kernel_rounds);
}

void merge_kernel(benchmark::State& state) {
  std::mt19937 random(2);
  const int count = static_cast<int>(state.range(0));
  std::vector<StoredReading> averages;
  averages.reserve(4);
  for (int rate = 0; rate < 4; ++rate) {  // each shares half of its frequencies with the next
    averages.push_back(noisy_reading(frequencies(rate * count / 2, count), random));
  }
  const auto merge = [&] {
    MergedCurve merged;
    for (const StoredReading& average : averages) {
      merged.add(average);
    }
    benchmark::DoNotOptimize(merged.finish());
  };
  const auto copy = [&] {
    for (const StoredReading& average : averages) {
      benchmark::DoNotOptimize(Curve(average.curve));
    }
  };
  run_beside_bound(
      state, [&] { many_times(merge); }, [&] { many_times(copy); });
  state.SetItemsProcessed(state.iterations() * 4 * kernel_rounds);
}

/// The rows that recalculation reads and writes, in its order.
struct Group {
  std::vector<std::int64_t> sources;
  std::int64_t derived = 0;
};

struct MadeSurvey {
  TemporaryFolder folder;
  std::string bare_path;
  std::vector<Group> groups;
  std::int64_t raw_readings = 0;
};

void require(bool done) {
  if (!done) {
    throw std::runtime_error("the benchmark's survey can't be made");
  }
}

void store_stations(int stations) {
  std::mt19937 random(3);
  dao::Transaction transaction(Module_database::open_survey().database);
  for (int station = 0; station < stations; ++station) {
    for (int rate = 0; rate < scan_rates; ++rate) {
      const auto at = frequencies(30 * rate, 60);
      for (int event = 0; event < repeats_per_group; ++event) {
        made::store(made::key(rate == 0 ? 256.0F : 4096.0F, 50.0 * station), event,
                    noisy_reading(at, random));
      }
    }
  }
  transaction.commit();
}

/// Groups of derived rows with the rows they are made of: averages first, merged curves after them.
std::vector<Group> read_groups() {
  std::vector<Group> groups;
  for (const char* const statement :
       {"SELECT ID,StationID,SampleRate FROM ReadingsDataTable WHERE ReductionType=1",
        "SELECT ID,StationID,SampleRate FROM ReadingsDataTable WHERE ReductionType=2"}) {
    dao::Recordset derived = Module_database::open_survey().database.open_recordset(statement);
    for (; !derived.eof(); derived.move_next()) {
      Group& group = groups.emplace_back();
      group.derived = derived.get_long("ID");
      const float rate = derived.get_single("SampleRate");
      dao::Recordset sources = Module_database::open_survey().database.open_recordset(
          "SELECT ID FROM ReadingsDataTable WHERE StationID = " +
          std::to_string(derived.get_long("StationID")) +
          (rate > 0.0F ? " AND ReductionType=0 AND SampleRate = " + std::to_string(rate)
                       : std::string(" AND ReductionType=1")));
      for (; !sources.eof(); sources.move_next()) {
        group.sources.push_back(sources.get_long("ID"));
      }
    }
  }
  return groups;
}

void make_survey(MadeSurvey& survey, int stations) {
  reset_session_state();
  Module_database::reset_module();
  session().database_file = survey.folder.path("survey.mdb");
  survey.bare_path = survey.folder.path("bare.db");
  require(Module_database::create_database() == 0 && Module_database::open_database() == 0);
  store_stations(stations);
  require(Module_averaged_data::recalculate_merged() == 0);
  survey.groups = read_groups();
  survey.raw_readings = std::int64_t{repeats_per_group} * scan_rates * stations;
  require(Module_database::close_database() == 0);
  fs::copy_file(session().database_file, survey.bare_path);
  require(Module_database::open_database() == 0);
}

void run_bare(BareRows& rows, const std::vector<Group>& groups) {
  for (std::size_t first = 0; first < groups.size(); first += groups_per_commit) {
    rows.execute("BEGIN IMMEDIATE");
    const std::size_t end = std::min(groups.size(), first + groups_per_commit);
    for (std::size_t index = first; index < end; ++index) {
      for (const std::int64_t source : groups[index].sources) {
        rows.read(source);
      }
      rows.read(groups[index].derived);
      rows.write(groups[index].derived);
    }
    rows.execute("COMMIT");
  }
}

void recalculate_survey(benchmark::State& state) {
  MadeSurvey survey;
  make_survey(survey, static_cast<int>(state.range(0)));
  BareRows bare(survey.bare_path);
  run_beside_bound(
      state, [] { require(Module_averaged_data::recalculate_merged() == 0); },
      [&] { run_bare(bare, survey.groups); });
  state.SetItemsProcessed(state.iterations() * survey.raw_readings);
  Module_database::reset_module();
}

}  // namespace

BENCHMARK(average_kernel)->Arg(10)->Arg(60)->Arg(100)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(merge_kernel)->Arg(10)->Arg(60)->Arg(100)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(recalculate_survey)->Arg(50)->Arg(500)->Arg(3000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
