// plan_rows.h: the rows of a plan by format.
#pragma once
#include <functional>
#include <string>
#include <vector>

#include "exchange/csv_tables.h"
#include "exchange/export_plan.h"
#include "exchange/line_contents.h"

namespace Module_exchange {

/// The rows of a line's stations, without the names of their files.
/// @param names  of those that give a file, in the order of the rows, from which their ids are made; others
///               have an empty one. Names are added.
std::vector<ExportRow> site_rows(const ExportChoices& choices, const LineContents& line,
                                 std::size_t choice_index, std::vector<std::string>& names);

/// A row for each table of a line.
std::vector<ExportRow> table_rows(const LineTables& tables, const std::string& line_id,
                                  std::size_t choice_index);

/// The one row of a file of places, without a file where there are none.
ExportRow places_row(const ExportChoices& choices);

/// "survey.geojson"
std::string places_file(const ExportChoices& choices);

/// What make_export_plan gives, for whoever has a progress display of their own.
/// @param progress  may be empty; is called with the share done, 0 to 1; false stops
/// @return 0, or -1 after a message. Throws dao::Error.
[[nodiscard]] int build_plan(const ExportChoices& choices, const std::function<bool(double)>& progress,
                             ExportPlan& plan);

}  // namespace Module_exchange
