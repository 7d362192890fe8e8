// reading_option.h: the options that say which readings a command works on.
#pragma once
#include <cstdint>
#include <string>

#include <CLI/CLI.hpp>

namespace Batch {

struct ReadingOption {
  std::string line;
  std::int32_t reference_type = 0;
  std::string data_type;
  float dipole = 0.0F;  // m
};

/// Adds --line, --reference, --data-type and --dipole, all required.
void add_reading_options(CLI::App& parser, ReadingOption& option);

}  // namespace Batch
