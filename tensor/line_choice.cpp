#include "tensor/line_choice.h"

#include <algorithm>

#include "core/number_text.h"

namespace Module_tensor {

std::optional<std::size_t> curve_type_index(std::string_view data_type) {
  const auto found = std::ranges::find(curve_types, data_type);
  return found == curve_types.end() ? std::nullopt
                                    : std::optional(static_cast<std::size_t>(found - curve_types.begin()));
}

Module_database::ReadingKey LineChoice::key(CurveType type, double station) const {
  return {line,  station, reference_type, 0.0F, std::string(curve_types[static_cast<std::size_t>(type)]),
          dipole};
}

std::string LineChoice::criteria() const {
  return "LineNumber = '" + line + "' AND ReferenceType = " + format_number(reference_type, "0") +
         " AND DipoleLength = " + criterion_text(dipole);
}

}  // namespace Module_tensor
