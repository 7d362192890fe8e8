// Exports of a line of 50 stations with 60 frequencies: EDI and EMTF XML files of its tensors, tables of its
// curves. The bound converts as many numbers as the files have and writes as many bytes. Counters: those of
// beside_bound.h; stations by second.
#include <filesystem>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/bare_numbers.h"
#include "benchmarks/line_survey.h"
#include "exchange/export_files.h"
#include "tests/support/recording_interface.h"
#include "tests/support/temporary_folder.h"

namespace {

namespace fs = std::filesystem;
using Module_exchange::ExportFormat;

constexpr int station_count = 50;

void make_survey(const std::string& path) {
  reset_session_state();
  Module_database::reset_module();
  session().database_file = path;
  line_survey::require(Module_database::create_database());
  line_survey::require(Module_database::open_database());
  dao::Transaction transaction(Module_database::open_survey().database);
  for (int station = 1; station <= station_count; ++station) {
    int element = 0;
    for (const char* const type : {"ExHx", "ExHy", "EyHx", "EyHy"}) {
      made::ReadingKey key = made::key(0.0F, 100.0 * station);
      key.data_type = type;
      made::store(key, 0, line_survey::curve(station + 10 * element++), Module_database::reduction_merged,
                  -1);
    }
  }
  transaction.commit();
}

struct FileOfNumbers {
  std::vector<double> numbers;
  std::size_t size = 0;
};

void export_line(benchmark::State& state, ExportFormat format) {
  const RecordingInterface interface;
  const TemporaryFolder folder;
  make_survey(folder.path("survey.mdb"));
  const made::ReadingKey key = made::key(0.0F, 100.0);
  Module_exchange::ExportChoices choices;
  choices.format = format;
  choices.lines = {{key.line, key.reference_type, key.dipole}};
  int turn = 0;
  Module_exchange::ExportResult result;
  const auto write = [&] {
    choices.folder = folder.path("export " + std::to_string(turn++));
    result = {};
    line_survey::require(Module_exchange::export_files(choices, {}, result));
  };
  write();
  line_survey::require(result.files.empty() ? -1 : 0);
  std::vector<FileOfNumbers> files;
  for (const std::string& file : result.files) {
    files.push_back({numbers_of(file), fs::file_size(file)});
  }
  run_beside_bound(state, write, [&] {
    for (std::size_t i = 0; i < files.size(); ++i) {
      write_numbers(folder.path(std::to_string(i)), files[i].numbers, files[i].size);
    }
  });
  state.SetItemsProcessed(state.iterations() * station_count);
  Module_database::reset_module();
}

}  // namespace

BENCHMARK_CAPTURE(export_line, edi, ExportFormat::edi)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(export_line, emtf_xml, ExportFormat::emtf_xml)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(export_line, csv, ExportFormat::csv)->UseManualTime()->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
