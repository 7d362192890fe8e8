// Any bytes as averaged soundings, in either layout.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "core/line_reader.h"
#include "formats/zonge/zonge_avg_parser.h"
#include "fuzz/input_file.h"
#include "fuzz/scan_input.h"
#include "fuzz/sound_functions.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string path = write_input_file(data, size, "input.avg");
  formats::FileReport report;
  try {
    LineReader lines(path);
    const auto stations = formats::zonge::read_zonge_avg(lines, report);
    if (stations.empty() && report.failure.empty()) std::abort();
    for (const formats::zonge::AvgStation& station : stations) {
      if (!std::isfinite(station.station) || !is_sound(station.function, report)) std::abort();
      if (station.dipole && !(*station.dipole > 0.0 && std::isfinite(*station.dipole))) std::abort();
    }
  } catch (const std::runtime_error&) {
    return 0;  // no text file
  }
  scan_input(data, size, Module_data_file::format_zonge_avg);
  return 0;
}
