// Parsing of EDI impedance files, beside a bare loop that only finds the blocks and parses their floats.
#include <charconv>
#include <cmath>
#include <cstring>
#include <iterator>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/beside_bound.h"
#include "core/line_reader.h"
#include "formats/edi/edi_parser.h"
#include "tests/support/temporary_folder.h"

namespace {

constexpr int frequencies = 90;
constexpr int values_in_line = 6;

void add_block(std::string& text, const std::string& tag, double scale) {
  text += ">" + tag + " ROT=ZROT //" + std::to_string(frequencies) + "\n";
  for (int index = 0; index < frequencies; ++index) {
    char number[32];
    const double value = scale * std::sin(0.37 * index + scale) * std::pow(10.0, 4.0 - 0.08 * index);
    std::snprintf(number, sizeof number, " %13.6e%s", value,
                  index % values_in_line == values_in_line - 1 ? " \n" : "");
    text += number;
  }
  text += "\n";
}

// A file with all blocks of a usual processing program in each of its sections.
std::string made_file(int sections) {
  std::string text =
      ">HEAD\n DATAID=\"MADE\"\n>=DEFINEMEAS\n>HMEAS ID=1.001 CHTYPE=HX X=0 Y=0 Z=0 AZM=0\n>EMEAS ID=2.001 "
      "CHTYPE=EX X=0 Y=0 X2=1 Y2=0\n";
  for (int section = 0; section < sections; ++section) {
    text += ">=MTSECT\n SECTID=" + std::to_string(section) + "\n NFREQ=90\n HX=1.001\n EX=2.001\n\n";
    add_block(text, "FREQ", 1.0);
    add_block(text, "ZROT", 0.5);
    for (const std::string& element : std::vector<std::string>{"XX", "XY", "YX", "YY"}) {
      for (const std::string& tag :
           {"Z" + element + "R", "Z" + element + "I", "Z" + element + ".VAR", "RHO" + element,
            "RHO" + element + ".ERR", "PHS" + element, "PHS" + element + ".ERR"}) {
        add_block(text, tag, 1.0 + static_cast<double>(tag.size()) / 3.0);
      }
    }
  }
  return text + ">END\n";
}

// What any reader has to do at least: the bytes of the file, the lines that begin a block, the floats
// between.
double bare_loop(const std::string& path) {
  const std::string bytes = bytes_of(path);
  std::vector<float> values;
  double sum = 0.0;
  const char* place = bytes.data();
  const char* const file_end = place + bytes.size();
  bool in_block = false;
  while (place < file_end) {
    const void* const found = std::memchr(place, '\n', static_cast<std::size_t>(file_end - place));
    const char* const line_end = found == nullptr ? file_end : static_cast<const char*>(found);
    if (*place == '>') {
      for (const float value : values) {
        sum += static_cast<double>(value);
      }
      values.clear();
      in_block = place + 1 < line_end && place[1] != '=' && std::strstr(place, "//") < line_end;
    } else if (in_block) {
      while (place < line_end) {
        if (*place == ' ') {
          ++place;
          continue;
        }
        float value = 0.0F;
        const auto [after, failure] = std::from_chars(place, line_end, value);
        if (failure != std::errc{}) {
          break;
        }
        values.push_back(value);
        place = after;
      }
    }
    place = line_end + 1;
  }
  return sum;
}

double parse(const std::string& path) {
  using namespace formats::edi;
  formats::FileReport report;
  LineReader reader(path);
  EdiMtParser parser(reader, report);
  EdiSection section;
  double sum = 0.0;
  while (parser.next_section(section)) {
    sum += static_cast<double>(section.get(element_yx, quantity_phase).values.front());
  }
  return sum;
}

void parse_beside_bare_loop(benchmark::State& state) {
  const TemporaryFolder folder;
  const std::string text = made_file(static_cast<int>(state.range(0)));
  const std::string path = folder.write("made.edi", text);
  read_beside_bare_loop(state, path, text.size(), parse, bare_loop);
}

}  // namespace

BENCHMARK(parse_beside_bare_loop)->Arg(1)->Arg(50)->UseManualTime()->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
