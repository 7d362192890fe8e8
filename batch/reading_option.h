// reading_option.h: the options that say which readings a command works on.
#pragma once
#include <CLI/CLI.hpp>

#include "database/reading.h"

namespace Batch {

/// Adds --line, --reference, --data-type and --dipole, all required.
void add_reading_options(CLI::App& parser, Module_database::LineSelection& option);

}  // namespace Batch
