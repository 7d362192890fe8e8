// Any text as the data file of a two-dimensional inversion, read for its sites and as a whole.
#include <algorithm>
#include <cstdlib>

#include "formats/occam/data_file.h"
#include "formats/occam/occam_state.h"
#include "fuzz/input_file.h"

using namespace Module_occam;

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

void read_sites(const std::string& path) {
  reset_occam_state();
  const int outcome = read_occam_data_file(path);
  const OccamData& sites = occam_state().data;
  require((outcome == 0) == (sites.site_count() > 0));
  require(sites.site_names.size() == sites.site_offsets.size());
}

void read_rows(const std::string& path) {
  ObservedData data;
  if (read_occam_data_rows(path, data) != 0) {
    require(data.site_names.empty() && data.frequencies.empty() && data.rows.empty());
    return;
  }
  require(data.site_names.size() == data.site_offsets.size());
  const auto within = [](int number, std::size_t most) {
    return number >= 1 && static_cast<std::size_t>(number) <= most;
  };
  require(std::ranges::all_of(data.rows, [&](const DataRow& row) {
    return within(row.site_number, data.site_offsets.size()) &&
           within(row.frequency_number, data.frequencies.size());
  }));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string path = write_input_file(data, size, "occamdat");
  read_sites(path);
  read_rows(path);
  return 0;
}
