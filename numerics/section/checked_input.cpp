#include "numerics/section/checked_input.h"

#include <cmath>
#include <stdexcept>

#include "core/number_text.h"

namespace numerics::section {

CheckedInput check_input(const Section& section, std::span<const double> site_positions,
                         std::span<const double> frequencies) {
  check_section(section);
  for (const double frequency : frequencies) {
    if (!(std::isfinite(frequency) && frequency > 0.0)) {
      throw std::invalid_argument(plain_text(frequency) + " Hz is no frequency");
    }
  }
  CheckedInput input = {host_column(section), {}};
  for (const double position : site_positions) {
    input.sites.push_back(make_site(section, nearest_node_column(section, position)));
  }
  return input;
}

}  // namespace numerics::section
