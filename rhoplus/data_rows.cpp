#include "rhoplus/data_rows.h"

#include "core/absent_value.h"
#include "core/number_text.h"

namespace Module_rhoplus {

namespace {

std::string value_text(float value, float scale, const char* picture) {
  return is_absent(double{value}) ? std::string{} : format_number(scale * value, picture);
}

}  // namespace

std::optional<Module_averaged_data::Component> switched_in_column(int column) {
  switch (column) {
    case column_use_resistivity:
      return Module_averaged_data::Component::resistivity;
    case column_use_phase:
      return Module_averaged_data::Component::phase;
    default:
      return std::nullopt;
  }
}

std::vector<DataRowTexts> data_rows(const StationInversion& inversion) {
  const Module_database::Curve& curve = inversion.merged.curve;
  std::vector<DataRowTexts> rows(curve.count());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    auto& [use_resistivity, use_phase, texts] = rows[i];
    use_resistivity = curve.point_counts(Module_database::field_resistivity, i);
    use_phase = curve.point_counts(Module_database::field_phase, i);
    texts[column_frequency] = format_number(curve.frequencies[i], "0.0000");
    texts[column_observed_resistivity] =
        value_text(curve.value(Module_database::field_resistivity, i), inversion.scale, "0.0");
    texts[column_observed_phase] = value_text(curve.value(Module_database::field_phase, i), 1.0F, "0.00");
    const auto& row_number = inversion.tables.index.row_number;
    if (i < row_number.size() && row_number[i] > 0) {
      const auto& row = inversion.tables.data[static_cast<std::size_t>(row_number[i] - 1)];
      texts[column_inverted_resistivity] = value_text(row.model_resistivity, 1.0F, "0.0");
      texts[column_inverted_phase] = value_text(row.model_phase, 1.0F, "0.00");
    }
  }
  return rows;
}

}  // namespace Module_rhoplus
