// rotate_option.h: the option that turns tensors on their way out of the survey.
#pragma once
#include <optional>

#include "batch/options.h"

namespace Batch {

/// Adds --rotate DEG.
/// @param help  what the command makes of it
void add_rotate_option(Parser& parser, std::optional<double>& azimuth, const char* help);

}  // namespace Batch
