#include "database/survey_summary.h"

#include <type_traits>

#include "database/sound_rows.h"
#include "database/survey_database.h"
#include "database/survey_lists.h"

namespace Module_database {

namespace {

/// The values of one column of the readings, each once, ascending.
template <class Read>
auto distinct(const std::string& column, const std::string& condition, Read read) {
  std::vector<std::invoke_result_t<Read, const dao::Recordset&>> values;
  dao::Recordset rows = open_survey().database.open_recordset(
      "SELECT DISTINCT " + column + " FROM ReadingsDataTable" + condition + " ORDER BY " + column);
  for_each_sound_row(rows, [&](const dao::Recordset& row) { values.push_back(read(row)); });
  return values;
}

std::vector<LineSummary> read_lines() {
  std::vector<LineSummary> lines;
  for (const ListedStation& station : listed_stations()) {
    if (lines.empty() || lines.back().line != station.line) {
      lines.push_back({station.line, {}, {}});
    }
    lines.back().stations.push_back(station.station);
    lines.back().names.push_back(station.name);
  }
  return lines;
}

}  // namespace

SurveySummary read_survey_summary() {
  dao::Database& database = open_survey().database;
  SurveySummary contents;
  for (const std::string& table : database.table_names()) {
    const dao::Recordset count = database.open_recordset("SELECT Count(*) AS Rows FROM [" + table + "]");
    contents.tables.emplace_back(table, count.get_long("Rows"));
  }
  contents.lines = read_lines();
  contents.sites = listed_sites();
  contents.reference_types =
      distinct("ReferenceType", "", [](const dao::Recordset& row) { return row.get_long("ReferenceType"); });
  contents.data_types =
      distinct("DataType", "", [](const dao::Recordset& row) { return row.get_text("DataType"); });
  contents.dipoles =
      distinct("DipoleLength", "", [](const dao::Recordset& row) { return row.get_double("DipoleLength"); });
  contents.scan_rates = distinct("SampleRate", " WHERE ReductionType<2",
                                 [](const dao::Recordset& row) { return row.get_double("SampleRate"); });
  return contents;
}

}  // namespace Module_database
