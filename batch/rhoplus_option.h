// rhoplus_option.h: the options for the settings of Rho+ inversion.
#pragma once
#include "batch/options.h"
#include "output/rhoplus_settings.h"

namespace Batch {

/// Adds --root, --floor, --phase-floor, --scale, --surface, --include-empty, --no-static,
/// --keep-negative-phase and --file-errors; one that is left out keeps its default.
void add_rhoplus_options(Parser& parser, Module_output::RhoplusSettings& settings);

/// Adds those of them that an inversion depends on: all but --root and --include-empty.
void add_rhoplus_inversion_options(Parser& parser, Module_output::RhoplusSettings& settings);

/// Adds --file-errors alone.
void add_file_errors_flag(Parser& parser, Module_output::RhoplusSettings& settings);

}  // namespace Batch
