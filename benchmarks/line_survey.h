// line_survey.h: surveys for benchmarks: lines of 100 stations with 60 frequencies at two scan rates,
// reduced; 12 repeats at the station that is edited, 2 elsewhere.
#pragma once
#include <array>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/bare_rows.h"
#include "core/session_state.h"
#include "database/survey_database.h"
#include "reduction/averages.h"
#include "tests/reduction/made_readings.h"

namespace line_survey {

inline constexpr int stations = 100;
inline constexpr int frequencies = 60;
inline constexpr int edited_station = 50;

inline void require(int status) {
  if (status != 0) {
    throw std::runtime_error("the survey could not be made");
  }
}

inline made::StoredReading curve(int seed) {
  std::vector<made::Point> points;
  for (int i = 0; i < frequencies; ++i) {
    const double wave = std::sin(0.1 * i + seed);
    points.push_back({static_cast<float>(1e-2 * std::pow(10.0, 0.1 * i)),
                      static_cast<float>(100.0 + 50.0 * wave), static_cast<float>(45.0 + 10.0 * wave)});
  }
  return made::reading(points);
}

inline void store_line(int line, int station_count) {
  dao::Transaction transaction(Module_database::open_survey().database);
  for (int station = 1; station <= station_count; ++station) {
    for (const float rate : {256.0F, 4096.0F}) {
      made::ReadingKey key = made::key(rate, 100.0 * station);
      key.line = std::to_string(200 * (line + 1)) + "E";
      const int repeats = line == 0 && station == edited_station ? 12 : 2;
      for (int event = 1; event <= repeats; ++event) {
        made::store(key, event, curve(event + station));
      }
    }
  }
  transaction.commit();
}

/// Where the copy lies that bare SQLite works on.
inline std::string bare_path(const std::string& path) { return path + ".bare"; }

/// Makes a survey of 1 + other_lines lines at a path, and a copy beside it, and leaves it open.
inline void make(const std::string& path, int other_lines, int station_count = stations) {
  reset_session_state();
  Module_database::reset_module();
  session().database_file = path;
  require(Module_database::create_database());
  require(Module_database::open_database());
  for (int line = 0; line <= other_lines; ++line) {
    store_line(line, station_count);
  }
  require(Module_averaged_data::recalculate_merged());
  dao::Recordset& files = Module_database::open_survey().files;
  files.add_new();
  files.set_long("ReferenceType", 0);
  files.update();
  require(Module_database::close_database());
  std::filesystem::copy_file(path, bare_path(path), std::filesystem::copy_options::overwrite_existing);
  require(Module_database::open_database());
}

/// IDs of the readings of the open survey's first line that fulfil a condition.
inline std::vector<std::int64_t> rows_with(const std::string& condition) {
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT ID FROM ReadingsDataTable WHERE LineNumber = '200E' AND " + condition);
  std::vector<std::int64_t> ids;
  for (; !rows.eof(); rows.move_next()) {
    ids.push_back(rows.get_long("ID"));
  }
  return ids;
}

/// The least that an edit and a step to a station do with the survey, on its copy.
class BareWork {
 public:
  /// The survey must be open.
  explicit BareWork(const std::string& path) : rows_(bare_path(path)) {
    for (std::size_t i = 0; i < 2; ++i) {
      const std::string station = "Station = " + std::to_string(100 * (edited_station + static_cast<int>(i)));
      shown_[i] = rows_with(station + " AND SampleRate < 4096");
    }
    written_ = rows_with("Station = " + std::to_string(100 * edited_station) +
                         " AND SampleRate < 4096 AND (ReductionType > 0 OR EventNumber = 1)");
    merged_ = rows_with("ReductionType = 2");
    require(shown_[0].size() == 14 && written_.size() == 3 && merged_.size() == stations ? 0 : -1);
  }
  /// Reads the station's repeats, average and merged curve and writes the three rows that change.
  void edit() {
    rows_.execute("BEGIN IMMEDIATE");
    read_all(shown_[0]);
    for (const std::int64_t ID : written_) {
      rows_.read(ID);
      rows_.write(ID);
    }
    rows_.execute("COMMIT");
  }
  /// Reads the repeats, average and merged curve of the edited station and the next one in turn.
  void step() { read_all(shown_[++steps_ % 2]); }
  /// Reads the merged curves of the line and writes them back.
  void edit_line() {
    rows_.execute("BEGIN IMMEDIATE");
    for (const std::int64_t ID : merged_) {
      rows_.read(ID);
      rows_.write(ID);
    }
    rows_.execute("COMMIT");
  }
  /// Reads the merged curves of the line.
  void read_line() { read_all(merged_); }

 private:
  void read_all(const std::vector<std::int64_t>& ids) {
    for (const std::int64_t ID : ids) {
      rows_.read(ID);
    }
  }

  BareRows rows_;
  std::array<std::vector<std::int64_t>, 2> shown_;
  std::vector<std::int64_t> written_;
  std::vector<std::int64_t> merged_;
  std::size_t steps_ = 0;
};

/// Readings in the open survey.
inline int row_count() {
  const dao::Recordset rows =
      Module_database::open_survey().database.open_recordset("SELECT * FROM ReadingsDataTable");
  return rows.record_count();
}

struct Benchmark {
  const char* name;
  void (*measure)(benchmark::State&);
};

/// Registers the benchmarks for surveys without and with twenty other lines, all of one survey before the
/// next one is made.
inline bool register_benchmarks(std::initializer_list<Benchmark> benchmarks) {
  for (const int other_lines : {0, 20}) {
    for (const Benchmark& each : benchmarks) {
      benchmark::RegisterBenchmark(each.name, each.measure)
          ->Arg(other_lines)
          ->UseManualTime()
          ->Unit(benchmark::kMillisecond);
    }
  }
  return true;
}

}  // namespace line_survey
