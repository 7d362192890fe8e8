#include "core/frequencies.h"

#include <algorithm>
#include <utility>

#include "core/search_sort.h"

std::int32_t Frequencies::position(float frequency) const {
  return basSearchSort::search_sorted(list, frequency);
}

std::int32_t Frequencies::enabled_position(float frequency) const {
  const std::int32_t index = position(frequency);
  return is_enabled(index) ? index : -1;
}

bool Frequencies::is_enabled(std::int32_t index) const {
  return index >= 0 && std::cmp_less(index, enabled.size()) && enabled[static_cast<std::size_t>(index)] == 1;
}

std::size_t Frequencies::enabled_count() const {
  return static_cast<std::size_t>(std::ranges::count(enabled, 1));
}
