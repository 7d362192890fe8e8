#include "output/line_stations.h"

#include <string>

#include "core/number_text.h"
#include "database/survey_database.h"
#include "platform/dao/text_literal.h"

namespace Module_output {

std::vector<double> stations_with_readings(const Module_database::LineSelection& selection,
                                           DataTypes data_types) {
  std::string criteria = "LineNumber = " + dao::text_literal(selection.line) +
                         " AND ReferenceType = " + format_number(selection.reference_type, "0") +
                         " AND DipoleLength = " + criterion_text(selection.dipole);
  if (data_types == DataTypes::selected) {
    criteria += " AND DataType = " + dao::text_literal(selection.data_type);
  } else {
    criteria += " AND " + std::string(Module_database::no_tipper_criterion);
  }
  std::vector<double> stations;
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT DISTINCT Station FROM ReadingsDataTable WHERE " + criteria + " ORDER BY Station");
  for (; !rows.eof(); rows.move_next()) {
    stations.push_back(rows.get_double("Station"));
  }
  return stations;
}

}  // namespace Module_output
