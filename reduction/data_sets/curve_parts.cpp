#include "reduction/data_sets/curve_parts.h"

#include <algorithm>

#include "core/number_text.h"
#include "core/session_state.h"
#include "platform/dao/case_folding.h"
#include "platform/dao/text_literal.h"

namespace Module_averaged_data {

using Module_database::Curve;
using Module_database::ReadingKey;

void Extent::include(float value) {
  if (is_absent(double{value})) {
    return;
  }
  minimum = std::min(minimum, value);
  maximum = std::max(maximum, value);
}

void CurveExtents::include(const Curve& curve) {
  for (std::size_t i = 0; i < curve.count(); ++i) {
    if (!(curve.frequencies[i] > 0.0F)) {
      continue;  // it has no place on the axis
    }
    frequency.include(curve.frequencies[i]);
    resistivity.include(curve.value(Module_database::field_resistivity, i));
    phase.include(curve.value(Module_database::field_phase, i));
  }
}

std::vector<std::int32_t> list_positions(const Curve& curve, const Frequencies& frequencies) {
  std::vector<std::int32_t> positions;
  positions.reserve(curve.count());
  for (const float frequency : curve.frequencies) {
    positions.push_back(frequencies.position(frequency));
  }
  return positions;
}

ReadingKey selected_key() {
  const SessionState& state = session();
  return {state.current_line,           state.current_station,
          state.current_reference_type, static_cast<float>(state.current_scan_rate),
          state.current_data_type,      state.current_dipole};
}

std::string place_criteria(const ReadingKey& key) {
  return "LineNumber = " + dao::text_literal(key.line) + " AND Station = " + criterion_text(key.station);
}

std::string kind_criteria(std::int32_t reduction, const ReadingKey& key) {
  return "ReductionType = " + format_number(reduction, "0") +
         " AND ReferenceType = " + format_number(key.reference_type, "0") +
         " AND DataType = " + dao::text_literal(key.data_type) +
         " AND DipoleLength = " + criterion_text(key.dipole);
}

bool same_line(std::string_view a, std::string_view b) {
  return a == b || dao::folded_text(a) == dao::folded_text(b);
}

bool same_station(const ReadingKey& a, const ReadingKey& b) {
  return a.station == b.station && a.reference_type == b.reference_type && a.data_type == b.data_type &&
         a.dipole == b.dipole && same_line(a.line, b.line);
}

}  // namespace Module_averaged_data
