// Any bytes as a file of transfer functions with full error covariances.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "core/line_reader.h"
#include "formats/z_file/z_file.h"
#include "fuzz/input_file.h"
#include "fuzz/scan_input.h"
#include "fuzz/sound_functions.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string path = write_input_file(data, size, "input.txt");
  formats::FileReport report;
  try {
    LineReader lines(path);
    if (!is_sound(formats::z_file::read_z_file(lines, report), report)) std::abort();
  } catch (const std::runtime_error&) {
    return 0;  // no text file
  }
  scan_input(data, size, Module_data_file::format_z_file);
  return 0;
}
