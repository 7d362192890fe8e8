// Averages and merged curves: the arithmetic alone, beside a loop that only reads the same values; and the
// recalculation of a whole survey, beside reading and writing the same bytes with bare SQLite in the same
// commits. All figures are CPU time. Counters: readings/s (repeats or averages taken in), times_bare (cost
// over the bare bound).
#include <algorithm>
#include <cmath>
#include <ctime>
#include <filesystem>
#include <functional>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <sqlite3.h>

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

/// CPU time, which other work on the machine doesn't change.
double seconds_of(const std::function<void()>& work) {
  const std::clock_t start = std::clock();
  work();
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

double fastest_of(int rounds, const std::function<void()>& work) {
  double fastest = std::numeric_limits<double>::max();
  for (int round = 0; round < rounds; ++round) {
    fastest = std::min(fastest, seconds_of(work));
  }
  return fastest;
}

/// The arithmetic of one curve is over within a tick of the clock.
constexpr int kernel_rounds = 200;

void many_times(const std::function<void()>& work) {
  for (int round = 0; round < kernel_rounds; ++round) {
    work();
  }
}

/// Runs the benchmark's loop and reports rate and cost over the bound.
void measure(benchmark::State& state, double readings, double bare_seconds,
             const std::function<void()>& work) {
  double total = 0.0;
  for (auto _ : state) {
    const double seconds = seconds_of(work);
    total += seconds;
    state.SetIterationTime(seconds);
  }
  const double mean = total / static_cast<double>(state.iterations());
  state.counters["readings/s"] = readings / mean;
  state.counters["times_bare"] = mean / bare_seconds;
}

double sum_of_values(const std::vector<StoredReading>& readings) {
  float sum = 0.0F;
  for (const StoredReading& reading : readings) {
    for (const float value : reading.curve.data) {
      sum += value;
    }
  }
  return double{sum};
}

void average_kernel(benchmark::State& state) {
  std::mt19937 random(1);
  const std::vector<float> list = frequencies(0, static_cast<int>(state.range(0)));
  std::vector<StoredReading> repeats;
  repeats.reserve(100);
  for (int i = 0; i < 100; ++i) {
    repeats.push_back(noisy_reading(list, random));
  }
  const double bare =
      fastest_of(5, [&] { many_times([&] { benchmark::DoNotOptimize(sum_of_values(repeats)); }); });
  const auto average = [&] {
    RepeatSums sums(list);
    for (const StoredReading& repeat : repeats) {
      sums.add(repeat);
    }
    benchmark::DoNotOptimize(sums.average());
  };
  measure(state, 100.0 * kernel_rounds, bare, [&] { many_times(average); });
}

void merge_kernel(benchmark::State& state) {
  std::mt19937 random(2);
  const int count = static_cast<int>(state.range(0));
  std::vector<StoredReading> averages;
  averages.reserve(4);
  for (int rate = 0; rate < 4; ++rate) {  // each shares half of its frequencies with the next
    averages.push_back(noisy_reading(frequencies(rate * count / 2, count), random));
  }
  const double bare =
      fastest_of(5, [&] { many_times([&] { benchmark::DoNotOptimize(sum_of_values(averages)); }); });
  const auto merge = [&] {
    MergedCurve merged;
    for (const StoredReading& average : averages) {
      merged.add(average);
    }
    benchmark::DoNotOptimize(merged.finish());
  };
  measure(state, 4.0 * kernel_rounds, bare, [&] { many_times(merge); });
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
  double raw_readings = 0.0;
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
  survey.raw_readings = double{repeats_per_group * scan_rates} * stations;
  require(Module_database::close_database() == 0);
  fs::copy_file(session().database_file, survey.bare_path);
  require(Module_database::open_database() == 0);
}

/// Bare SQLite: for each group the bytes of its sources are read and those of its derived row written.
class BareRun {
 public:
  explicit BareRun(const std::string& path) {
    require(sqlite3_open(path.c_str(), &database_) == SQLITE_OK);
    select_ = prepare("SELECT FreqBinary,DataBinary,MaskBinary FROM ReadingsDataTable WHERE ID=?1");
    update_ = prepare("UPDATE ReadingsDataTable SET FreqBinary=?2,DataBinary=?3,MaskBinary=?4 WHERE ID=?1");
  }
  BareRun(const BareRun&) = delete;
  BareRun& operator=(const BareRun&) = delete;
  ~BareRun() {
    sqlite3_finalize(select_);
    sqlite3_finalize(update_);
    sqlite3_close(database_);
  }

  void run(const std::vector<Group>& groups) {
    for (std::size_t first = 0; first < groups.size(); first += groups_per_commit) {
      execute("BEGIN IMMEDIATE");
      const std::size_t end = std::min(groups.size(), first + groups_per_commit);
      for (std::size_t index = first; index < end; ++index) {
        for (const std::int64_t source : groups[index].sources) {
          read(source);
        }
        read(groups[index].derived);
        write(groups[index].derived);
      }
      execute("COMMIT");
    }
  }

 private:
  sqlite3_stmt* prepare(const char* text) {
    sqlite3_stmt* statement = nullptr;
    require(sqlite3_prepare_v2(database_, text, -1, &statement, nullptr) == SQLITE_OK);
    return statement;
  }
  void execute(const char* text) {
    require(sqlite3_exec(database_, text, nullptr, nullptr, nullptr) == SQLITE_OK);
  }
  void read(std::int64_t ID) {
    sqlite3_bind_int64(select_, 1, ID);
    require(sqlite3_step(select_) == SQLITE_ROW);
    for (int column = 0; column < 3; ++column) {
      const auto* const bytes = static_cast<const char*>(sqlite3_column_blob(select_, column));
      columns_[static_cast<std::size_t>(column)].assign(
          bytes, static_cast<std::size_t>(sqlite3_column_bytes(select_, column)));
    }
    sqlite3_reset(select_);
  }
  void write(std::int64_t ID) {
    sqlite3_bind_int64(update_, 1, ID);
    for (int column = 0; column < 3; ++column) {
      const std::string& bytes = columns_[static_cast<std::size_t>(column)];
      sqlite3_bind_blob(update_, column + 2, bytes.data(), static_cast<int>(bytes.size()), SQLITE_STATIC);
    }
    require(sqlite3_step(update_) == SQLITE_DONE);
    sqlite3_reset(update_);
  }

  sqlite3* database_ = nullptr;
  sqlite3_stmt* select_ = nullptr;
  sqlite3_stmt* update_ = nullptr;
  std::string columns_[3];
};

void recalculate_survey(benchmark::State& state) {
  MadeSurvey survey;
  make_survey(survey, static_cast<int>(state.range(0)));
  double bare = 0.0;
  {
    BareRun run(survey.bare_path);
    bare = fastest_of(3, [&] { run.run(survey.groups); });
  }
  measure(state, survey.raw_readings, bare, [] { require(Module_averaged_data::recalculate_merged() == 0); });
  Module_database::reset_module();
}

}  // namespace

BENCHMARK(average_kernel)->Arg(10)->Arg(60)->Arg(100)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(merge_kernel)->Arg(10)->Arg(60)->Arg(100)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(recalculate_survey)->Arg(50)->Arg(500)->Arg(3000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
