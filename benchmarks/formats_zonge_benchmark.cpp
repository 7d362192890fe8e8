// Parsing of raw receiver files, beside a bare loop that only finds the lines of numbers and parses their
// numbers.
#include <algorithm>
#include <charconv>
#include <cstring>
#include <string>

#include <benchmark/benchmark.h>

#include "benchmarks/beside_bound.h"
#include "formats/zonge/zonge_raw_parser.h"
#include "tests/formats/zonge/made_zonge_raw.h"
#include "tests/support/temporary_folder.h"

namespace {

// What any reader has to do at least: the bytes of the file, its lines, the numbers in those that begin with
// one.
double bare_loop(const std::string& path) {
  const std::string bytes = bytes_of(path);
  double sum = 0.0;
  const char* place = bytes.data();
  const char* const file_end = place + bytes.size();
  while (place < file_end) {
    const void* const found = std::memchr(place, '\n', static_cast<std::size_t>(file_end - place));
    const char* const line_end = found == nullptr ? file_end : static_cast<const char*>(found);
    place = std::find_if_not(place, line_end, [](char c) { return c == ' '; });
    if (place < line_end && *place >= '0' && *place <= '9') {
      while (place < line_end) {
        double value = 0.0;
        place = std::from_chars(place, line_end, value).ptr;
        sum += value;
        place = std::find(place, line_end, ' ');
        place = std::find_if_not(place, line_end, [](char c) { return c == ' '; });
      }
    }
    place = line_end + 1;
  }
  return sum;
}

double parse(const std::string& path) {
  using namespace formats::zonge;
  formats::FileReport report;
  LineReader reader(path);
  ZongeAccount account(report);
  ZongeRawParser parser(reader, account);
  ZongeBlock block;
  double sum = 0.0;
  while (parser.next_block(block)) {
    sum += block.channels.empty() ? 0.0 : block.channels.front().values.front().phase;
  }
  return sum;
}

void parse_beside_bare_loop(benchmark::State& state) {
  const TemporaryFolder folder;
  const std::string text = made_zonge_raw(static_cast<int>(state.range(0)));
  const std::string path = folder.write("made.raw", text);
  read_beside_bare_loop(state, path, text.size(), parse, bare_loop);
}

}  // namespace

BENCHMARK(parse_beside_bare_loop)->Arg(100)->Arg(5000)->UseManualTime()->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
