#include "core/search_sort.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "core/text_fields.h"

namespace basSearchSort {

namespace {

constexpr int not_found = -1;

}  // namespace

int search_sorted(std::span<const float> ascending, float value) {
  const auto place = std::ranges::lower_bound(ascending, value);
  return place != ascending.end() && *place == value ? static_cast<int>(place - ascending.begin())
                                                     : not_found;
}

int find_nearest_frequency(std::span<const float> ascending, float value, float tolerance) {
  auto nearest = std::ranges::lower_bound(ascending, value);
  if (nearest == ascending.end() ||
      (nearest != ascending.begin() && std::abs(*std::prev(nearest) - value) < std::abs(*nearest - value))) {
    if (nearest == ascending.begin()) {
      return not_found;
    }
    --nearest;
  }
  return std::abs(*nearest - value) < tolerance ? static_cast<int>(nearest - ascending.begin()) : not_found;
}

int binary_search(std::span<const std::string> ascending, std::string_view value, TextSearch search) {
  const auto count = static_cast<int>(ascending.size());
  const int first = std::max(search.first, 0);
  const int last =
      search.last < 0 || search.last < search.first ? count - 1 : std::min(search.last, count - 1);
  if (first > last) {
    return not_found;
  }
  const auto key = [&](std::string_view text) {
    const std::string_view compared = search.prefix_only ? text.substr(0, value.size()) : text;
    return search.match_case ? std::string(compared) : upper_case(compared);
  };
  const auto range =
      ascending.subspan(static_cast<std::size_t>(first), static_cast<std::size_t>(last - first) + 1);
  const std::string wanted = key(value);
  const auto place = std::ranges::lower_bound(range, wanted, {}, key);
  return place != range.end() && key(*place) == wanted ? first + static_cast<int>(place - range.begin())
                                                       : not_found;
}

}  // namespace basSearchSort
