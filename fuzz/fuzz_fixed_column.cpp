// Any text as a file of tensors in fixed columns.
#include "fuzz/scan_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  scan_input(data, size, Module_data_file::format_fixed_columns);
  return 0;
}
