// Any text as an EDI file of cross-spectra.
#include "fuzz/scan_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  scan_input(data, size, Module_data_file::format_edi_spectra);
  return 0;
}
