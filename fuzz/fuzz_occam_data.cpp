// Any text as the data file of a two-dimensional inversion.
#include <cstdlib>

#include "fuzz/input_file.h"
#include "occam/data_file.h"
#include "occam/occam_state.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Module_occam::reset_occam_state();
  const int outcome = Module_occam::read_occam_data_file(write_input_file(data, size, "occamdat"));
  const Module_occam::OccamData& sites = Module_occam::occam_state().data;
  if ((outcome == 0) != (sites.site_count() > 0) || sites.site_names.size() != sites.site_offsets.size()) {
    std::abort();
  }
  return 0;
}
