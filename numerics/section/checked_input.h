// checked_input.h: what is asked of a section, after the checks, and how the work is done.
#pragma once
#include <cstddef>
#include <functional>
#include <span>
#include <vector>

#include "numerics/section/host.h"
#include "numerics/section/section.h"
#include "numerics/section/site.h"

namespace numerics::section {

struct ResponseOptions {
  std::size_t threads = 0;  // 0: as many as the machine has cores; the result is the same with any number

  /// Called from the calling thread during the work, with the share done, 0 to 1; false stops.
  std::function<bool(double)> progress = {};
};

/// What a section has after the checks.
struct CheckedInput {
  LayeredColumn host;
  std::vector<Site> sites;
};

/// @param site_positions  m, along the line; each is taken to the nearest node column
/// @param frequencies     Hz
/// Throws std::invalid_argument for input that has no response (see check_section, host_column,
/// nearest_node_column, make_site) and for a frequency that isn't finite and positive.
CheckedInput check_input(const Section& section, std::span<const double> site_positions,
                         std::span<const double> frequencies);

}  // namespace numerics::section
