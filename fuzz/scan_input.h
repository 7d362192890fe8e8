// scan_input.h: an input of the fuzzer as a field file, scanned as the import scans it.
#pragma once
#include <cstddef>
#include <cstdint>

#include "import/file_decode.h"

/// Reads the head of the file as the import does, then scans it as a file of this format at a scan rate of
/// 4096 Hz. Aborts if what the reader leaves doesn't hold together.
void scan_input(const std::uint8_t* data, std::size_t size, Module_data_file::FileFormat format);
