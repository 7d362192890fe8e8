#include "formats/j_format/j_blocks.h"

#include <algorithm>
#include <array>

#include "core/number_text.h"
#include "core/text_fields.h"

namespace formats::j_format {

using transfer_function::Component;
using transfer_function::component_count;

namespace {

constexpr std::array<std::string_view, component_count> component_names{"XX", "XY", "YX", "YY", "ZX", "ZY"};
/// Curves of no element of the tensor: of the modes, of the average and of the determinant.
constexpr std::array<std::string_view, 4> averages{"TE", "TM", "AV", "DE"};

Unit unit_in(std::string_view text) {
  const std::string upper = upper_case(text);
  return upper.find("FIELD") != std::string::npos ? Unit::field
         : upper.find("S.I") != std::string::npos || upper.find("SI UNIT") != std::string::npos
             ? Unit::si
             : Unit::not_said;
}

}  // namespace

std::optional<BlockType> block_type(std::string_view line) {
  std::string_view rest = line;
  const std::string name = upper_case(next_word(rest).substr(0, 4));
  if (name.size() != 3) {
    return std::nullopt;
  }
  const std::string_view letters = std::string_view(name).substr(1);
  BlockType type;
  type.name = name;
  if ((name[0] == 'R' || name[0] == 'Z') && std::ranges::find(averages, letters) != averages.end()) {
    return type;
  }
  const auto found = std::ranges::find(component_names, letters);
  if (found == component_names.end()) {
    return std::nullopt;
  }
  type.component = static_cast<Component>(found - component_names.begin());
  const bool is_tipper = type.component == Component::tx || type.component == Component::ty;
  type.kind = name[0] == 'R' && !is_tipper   ? BlockKind::curve
              : name[0] == 'Z' && !is_tipper ? BlockKind::impedance
              : name[0] == 'T' && is_tipper  ? BlockKind::tipper
                                             : BlockKind::other;
  if (type.kind == BlockKind::other) {
    return std::nullopt;
  }
  type.unit = unit_in(rest);
  return type;
}

std::optional<std::int64_t> row_count(std::string_view line) {
  constexpr double largest_count = 1e15;
  const std::string_view item = next_word(line);
  const double count = numeric_value(item);
  const bool is_count = is_numeric(item) && trimmed(line).empty() &&
                        item.find('.') == std::string_view::npos && count >= 0.0 && count <= largest_count;
  return is_count ? std::optional(static_cast<std::int64_t>(count)) : std::nullopt;
}

}  // namespace formats::j_format
