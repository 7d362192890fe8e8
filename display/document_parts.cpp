#include "display/document_parts.h"

#include <algorithm>

namespace Module_display_data {

std::vector<PagePart> station_page_parts(std::size_t scan_rates) {
  constexpr std::size_t most_in_a_row = 3;
  const std::size_t across = std::min(scan_rates, most_in_a_row);
  const std::size_t down = (scan_rates + most_in_a_row - 1) / most_in_a_row;
  const double width = 1.0 / static_cast<double>(1 + across);
  const double height = 1.0 / static_cast<double>(std::max<std::size_t>(down, 1));
  std::vector<PagePart> parts{{0.0, 0.0, width, 1.0}};
  for (std::size_t rate = 0; rate < scan_rates; ++rate) {
    const std::size_t row = rate / most_in_a_row;
    const std::size_t column = 1 + rate % most_in_a_row;
    parts.push_back({width * static_cast<double>(column), height * static_cast<double>(row), width, height});
  }
  return parts;
}

std::vector<PagePart> parts_beside(std::size_t count) {
  std::vector<PagePart> parts;
  const double width = 1.0 / static_cast<double>(count);
  for (std::size_t place = 0; place < count; ++place) {
    parts.push_back({width * static_cast<double>(place), 0.0, width, 1.0});
  }
  return parts;
}

}  // namespace Module_display_data
