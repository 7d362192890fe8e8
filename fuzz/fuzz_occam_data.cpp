// Any text as the data file of a two-dimensional inversion, read for its sites and as a whole.
#include <algorithm>
#include <cstdlib>
#include <stdexcept>

#include "formats/occam/data_file.h"
#include "fuzz/input_file.h"

using namespace Module_occam;

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

void check_sites(const std::string& path) {
  const OccamData sites = read_data_file_sites(path);
  require(sites.site_count() > 0);
  require(sites.site_names.size() == sites.site_offsets.size());
}

void check_rows(const std::string& path) {
  const ObservedData data = read_data_file(path);
  require(data.site_names.size() == data.site_offsets.size());
  const auto within = [](int number, std::size_t count) {
    return number >= 1 && static_cast<std::size_t>(number) <= count;
  };
  require(std::ranges::all_of(data.rows, [&](const DataRow& row) {
    return within(row.site_number, data.site_offsets.size()) &&
           within(row.frequency_number, data.frequencies.size());
  }));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string path = write_input_file(data, size, "occamdat");
  for (const auto read : {check_sites, check_rows}) {
    try {
      read(path);
    } catch (const std::runtime_error&) {  // a text that isn't a data file
    }
  }
  return 0;
}
