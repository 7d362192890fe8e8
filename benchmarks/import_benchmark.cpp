// Whole surveys: opening one, and importing field files end to end (parse, store, average, merge) beside the
// least any program has to do: parse the same floats and write the same bytes with bare SQLite in the same
// commits; for opening, compact and copy.
//
// Figures are CPU time of the process. Counters: those of beside_bound.h, files/s, readings/s, peak memory.
#include <charconv>
#include <chrono>
#include <cmath>
#include <complex>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <sys/resource.h>

#include "benchmarks/beside_bound.h"
#include "core/session_state.h"
#include "database/survey_database.h"
#include "import/import_run.h"
#include "import/sample_choices.h"
#include "samples/edi_text.h"
#include "tests/support/temporary_folder.h"

namespace fs = std::filesystem;
using namespace Module_data_file;

namespace {

constexpr int stations_per_commit = 100;  // of the averages and merged curves that an import makes

void require(bool holds, const char* what) {
  if (!holds) {
    throw std::runtime_error(what);
  }
}

double peak_megabytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

constexpr int frequency_count = 60;

// A field file as processing programs write it: 60 frequencies, four elements with errors, resistivities and
// phases.
std::string field_file_text(int station, int event) {
  Module_samples::EdiSection section;
  section.data_id = section.section_id = std::to_string(station);
  section.date = "05/14/11";
  for (int index = 0; index < frequency_count; ++index) {
    section.frequencies.push_back(1000.0 * std::pow(10.0, -0.08 * index));
  }
  for (std::size_t element = 0; element < section.elements.size(); ++element) {
    for (const double frequency : section.frequencies) {
      const double size =
          std::sqrt(500.0 * frequency) * (1.0 + 0.01 * event + 0.1 * static_cast<double>(element));
      section.elements[element].impedance.push_back(std::polar(size, 0.7 + 0.001 * station));
      section.elements[element].deviation.push_back(0.02 * size);
    }
  }
  return Module_samples::edi_text(section);
}

// Six files a station, as in the field: two scan rates, three repeats each; twenty stations a line.
std::vector<std::string> write_field_files(const TemporaryFolder& folder, std::size_t count) {
  std::vector<std::string> paths;
  for (int number = 0; paths.size() < count; ++number) {
    const int station = 100 * (number / 6 % 20 + 1);
    const int line = 100 + number / 120;
    const int event = number % 3 + 1;
    const char* const rate = number / 3 % 2 == 0 ? "4096" : "0256";
    char name[64];
    std::snprintf(name, sizeof name, "L%03dE_S%04d_E%d_R%s.edi", line, station, event, rate);
    paths.push_back(folder.write(name, field_file_text(station, event)));
  }
  return paths;
}

void make_survey(const std::string& path) {
  session().database_file = path;
  require(Module_database::create_database() == 0, "no survey");
  require(Module_database::open_database() == 0, "the survey doesn't open");
}

struct Row {
  sqlite3_int64 file = 0;  // below 0 for a derived row
  std::string frequencies;
  std::string data;
  std::string mask;
};

// All rows of a closed survey in the order in which they were written.
std::vector<Row> rows_of(const std::string& survey) {
  sqlite3* database = nullptr;
  sqlite3_stmt* select = nullptr;
  require(sqlite3_open(survey.c_str(), &database) == SQLITE_OK, "open");
  require(sqlite3_prepare_v2(
              database, "SELECT FileID,FreqBinary,DataBinary,MaskBinary FROM ReadingsDataTable ORDER BY ID",
              -1, &select, nullptr) == SQLITE_OK,
          "select");
  std::vector<Row> rows;
  const auto blob = [&](int column) {
    return std::string(static_cast<const char*>(sqlite3_column_blob(select, column)),
                       static_cast<std::size_t>(sqlite3_column_bytes(select, column)));
  };
  while (sqlite3_step(select) == SQLITE_ROW) {
    rows.push_back({sqlite3_column_int64(select, 0), blob(1), blob(2), blob(3)});
  }
  sqlite3_finalize(select);
  sqlite3_close(database);
  return rows;
}

// Finds the blocks of a file and parses their floats.
double parse_floats(const std::string& path) {
  const std::string bytes = file_contents(path);
  double sum = 0.0;
  const char* place = bytes.data();
  const char* const end = place + bytes.size();
  bool in_block = false;
  while (place < end) {
    const void* const found = std::memchr(place, '\n', static_cast<std::size_t>(end - place));
    const char* const line_end = found == nullptr ? end : static_cast<const char*>(found);
    if (*place == '>') {
      in_block = std::string_view(place, static_cast<std::size_t>(line_end - place)).find("//") !=
                 std::string_view::npos;
    } else if (in_block) {
      while (place < line_end) {
        float value = 0.0F;
        const auto [after, failure] = std::from_chars(place, line_end, value);
        sum += static_cast<double>(value);
        place = failure == std::errc{} ? after : place + 1;
      }
    }
    place = line_end + 1;
  }
  return sum;
}

// The bound: the floats of all files, and the same rows in the same commits.
void bare_import(const std::vector<std::string>& files, const std::vector<Row>& rows,
                 const std::string& path) {
  sqlite3* database = nullptr;
  sqlite3_stmt* insert = nullptr;
  require(sqlite3_open(path.c_str(), &database) == SQLITE_OK, "open");
  const auto run = [&](const char* statement) {
    require(sqlite3_exec(database, statement, nullptr, nullptr, nullptr) == SQLITE_OK, statement);
  };
  run("PRAGMA journal_mode=WAL");
  run("PRAGMA synchronous=NORMAL");
  run("CREATE TABLE Readings (ID INTEGER PRIMARY KEY,FileID,FreqBinary,DataBinary,MaskBinary)");
  require(sqlite3_prepare_v2(database, "INSERT INTO Readings VALUES (NULL,?,?,?,?)", -1, &insert, nullptr) ==
              SQLITE_OK,
          "insert");
  for (const std::string& file : files) {
    benchmark::DoNotOptimize(parse_floats(file));
  }
  sqlite3_int64 group = 0;
  int derived = 0;
  for (const Row& row : rows) {
    const bool new_group = row.file > 0 ? row.file != group : derived++ % (4 * stations_per_commit) == 0;
    if (new_group) {
      if (group != 0) {
        run("COMMIT");
      }
      run("BEGIN IMMEDIATE");
      group = row.file > 0 ? row.file : -1;
    }
    sqlite3_bind_int64(insert, 1, row.file);
    int column = 2;
    for (const std::string* bytes : {&row.frequencies, &row.data, &row.mask}) {
      sqlite3_bind_blob(insert, column++, bytes->data(), static_cast<int>(bytes->size()), SQLITE_STATIC);
    }
    require(sqlite3_step(insert) == SQLITE_DONE, "step");
    sqlite3_reset(insert);
  }
  run("COMMIT");
  sqlite3_finalize(insert);
  sqlite3_close(database);
}

void import_end_to_end(benchmark::State& state) {
  const TemporaryFolder folder;
  const std::vector<std::string> files = write_field_files(folder, static_cast<std::size_t>(state.range(0)));
  const std::string survey = folder.path("survey.mdb");
  std::size_t readings = 0;
  double importing = 0.0;
  {
    BesideBound measure(state);
    for (auto _ : state) {
      fs::remove(survey);
      make_survey(survey);
      measure.work([&] {
        ImportReport report;
        require(
            run_import(sample_choices(), files, ImportMode::import, report) == 0 && !report.has_failures(),
            "import");
      });
      state.counters["peak_MB"] = peak_megabytes();
      require(Module_database::close_database() == 0, "close");
      const std::vector<Row> rows = rows_of(survey);
      readings = rows.size();
      measure.bound([&] { bare_import(files, rows, folder.path("bare.db")); });
      fs::remove(folder.path("bare.db"));
    }
    importing = measure.working();
  }
  const double rounds = static_cast<double>(state.iterations());
  state.counters["files/s"] = static_cast<double>(files.size()) * rounds / importing;
  state.counters["readings/s"] = static_cast<double>(readings) * rounds / importing;
}

// The bound of opening: the engine's own compaction and a copy of the file as backup.
void bare_opening(const std::string& survey, const TemporaryFolder& folder) {
  const std::string compacted = folder.path("bare.db");
  fs::remove(compacted);
  sqlite3* database = nullptr;
  require(sqlite3_open(survey.c_str(), &database) == SQLITE_OK, "open");
  require(sqlite3_exec(database, ("VACUUM INTO '" + compacted + "'").c_str(), nullptr, nullptr, nullptr) ==
              SQLITE_OK,
          "compact");
  sqlite3_close(database);
  fs::copy_file(survey, folder.path("bare.bak"), fs::copy_options::overwrite_existing);
}

// Opening recovers, compacts, keeps the backup and checks; each time as after a write, since what is
// unchanged is not compacted again.
void open_survey_of_readings(benchmark::State& state) {
  const TemporaryFolder folder;
  const auto readings = state.range(0);
  // Six files give 24 raw, 8 averaged and 4 merged readings.
  const auto files = write_field_files(folder, static_cast<std::size_t>(readings) * 6 / 36);
  const std::string survey = folder.path("survey.mdb");
  make_survey(survey);
  ImportReport report;
  require(run_import(sample_choices(), files, ImportMode::import, report) == 0, "import");
  require(Module_database::close_database() == 0, "close");
  BesideBound measure(state);
  for (auto _ : state) {
    measure.bound([&] { bare_opening(survey, folder); });
    fs::last_write_time(survey, fs::last_write_time(survey) - std::chrono::seconds(1));
    measure.work([] { require(Module_database::open_database() == 0, "open"); });
    require(Module_database::close_database() == 0, "close");
  }
  state.SetItemsProcessed(state.iterations() * readings);
  state.counters["MB"] = static_cast<double>(fs::file_size(survey)) / 1e6;
}

}  // namespace

BENCHMARK(import_end_to_end)
    ->Arg(100)
    ->Arg(1000)
    ->Arg(10000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
BENCHMARK(open_survey_of_readings)
    ->Arg(2000)
    ->Arg(20000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);

BENCHMARK_MAIN();
