// Scanning of spectra, Em1dfm and fixed-column files into curves, beside a bare loop that reads the same
// bytes and parses every number in them.
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/bare_numbers.h"
#include "benchmarks/beside_bound.h"
#include "import/file_decode.h"
#include "import/readers/reader_table.h"
#include "tests/import/readers/made_fields.h"
#include "tests/support/temporary_folder.h"

namespace {

using namespace Module_data_file;

constexpr std::size_t file_size = 2'000'000;  // bytes, about

const MadeTensor earth{std::complex{-3.0, 1.0}, std::complex{40.0, 25.0}, std::complex{-30.0, -28.0},
                       std::complex{2.0, -4.0}};

std::string spectra_file() {
  const std::string one = made_spectra({{1.0, earth}}, channels_by_id());
  const std::size_t block = one.find(">SPECTRA ");
  std::string text = one.substr(0, block);
  while (text.size() < file_size) {
    text += one.substr(block, one.find(">END") - block);
  }
  return text + ">END\n";
}

std::string em1dfm_file() {
  std::string text = "FREQUENCY DOMAIN EM DATA\nLINE 200E\n";
  while (text.size() < file_size) {
    text += "STATION NO 1250 5001.5 7002.5 88.25 5\n";
    for (const char* const frequency : {"56000", "7200", "5500", "900", "385"}) {
      text += std::string(" ") + frequency + " BOTH 8.01 0 152.345 98.7654 3 12.5 9.875\n";
    }
  }
  return text;
}

std::string fixed_column_file() {
  const MadeRecord record{
      1024.0, 0.5, {1e-4, 2e-4, 3e-3, 4e-3, -3e-3, -3e-3, 1e-4, -2e-4}, {1e-8, 2e-8, 3e-8, 4e-8}};
  const std::string one = made_fixed_columns({record});
  const std::size_t head = one.find('\n') + 1;
  std::string text = one.substr(0, head);
  while (text.size() < file_size) {
    text += one.substr(head);
  }
  return text;
}

void scan_beside_bare_loop(benchmark::State& state, FileFormat format, const std::string& text) {
  const TemporaryFolder folder;
  const std::string path = folder.write("made.txt", text);
  const auto scan = [&](const std::string& file) {
    ReadingRecord record;
    record.SampleRate = 4096.0F;
    formats::FileReport report;
    StoreNotes notes;
    FileTask task{ImportMode::scan, file, record, report, notes, {}};
    if (reader_of(format)(task) != 0 || report.readings == 0) {
      throw std::runtime_error("the made file gave no reading");
    }
    return report.readings;
  };
  read_beside_bare_loop(state, path, text.size(), scan,
                        [](const std::string& file) { return numbers_of(file).size(); });
}

}  // namespace

BENCHMARK_CAPTURE(scan_beside_bare_loop, spectra, format_edi_spectra, spectra_file())
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(scan_beside_bare_loop, em1dfm, format_em1dfm, em1dfm_file())
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(scan_beside_bare_loop, fixed_columns, format_fixed_columns, fixed_column_file())
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
