#include "tensor/line_choice.h"

#include <algorithm>
#include <set>
#include <utility>

#include "core/number_text.h"
#include "database/survey_database.h"
#include "platform/dao/text_literal.h"

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
  return "LineNumber = " + dao::text_literal(line) +
         " AND ReferenceType = " + format_number(reference_type, "0") +
         " AND DipoleLength = " + criterion_text(dipole);
}

std::vector<LineChoice> kinds_of_line(const std::string& line) {
  std::set<std::pair<std::int32_t, float>> found;
  // All reductions that there are: with them the search goes through the index of a line's readings.
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT DISTINCT ReferenceType,DipoleLength,DataType FROM ReadingsDataTable WHERE LineNumber = " +
      dao::text_literal(line) + " AND (ReductionType = 0 OR ReductionType = 1 OR ReductionType = 2)");
  for (; !rows.eof(); rows.move_next()) {
    if (curve_type_index(rows.get_text("DataType"))) {
      found.emplace(rows.get_long("ReferenceType"), rows.get_single("DipoleLength"));
    }
  }
  std::vector<LineChoice> kinds;
  kinds.reserve(found.size());
  for (const auto& [reference_type, dipole] : found) {
    kinds.push_back({line, reference_type, dipole});
  }
  return kinds;
}

}  // namespace Module_tensor
