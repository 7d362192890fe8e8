// text_lists.h: names in a sentence.
#pragma once
#include <cstddef>
#include <string>
#include <vector>

#include "core/number_text.h"

/// "a, b and c", of many the first ones: "a, b, c, d, e and 12 more".
inline std::string listed_first(const std::vector<std::string>& names) {
  constexpr std::size_t named = 5;
  const std::size_t shown = names.size() <= named + 1 ? names.size() : named;
  std::string text;
  for (std::size_t index = 0; index < shown; ++index) {
    const bool is_last = index + 1 == names.size();
    text += (index == 0 ? "" : is_last ? " and " : ", ") + names[index];
  }
  return shown == names.size()
             ? text
             : text + " and " + plain_text(static_cast<std::int64_t>(names.size() - shown)) + " more";
}
