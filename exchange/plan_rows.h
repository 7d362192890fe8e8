// plan_rows.h: the rows of a plan by format.
#pragma once
#include <string>
#include <vector>

#include "exchange/csv_tables.h"
#include "exchange/export_row.h"
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

}  // namespace Module_exchange
