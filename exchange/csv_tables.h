// csv_tables.h: the CSV files that a line gives.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/line_contents.h"
#include "formats/csv/curve_table.h"

namespace Module_exchange {

/// Curves; elements of impedances and of tippers; what is computed of them; the best fit of Rho+.
enum class CsvTable : std::uint8_t { curves, tensors, tippers, parameters, rhoplus };

struct LineTables {
  LineContents line;
  std::vector<formats::csv::CurveRows> curves;  // of the reduction chosen
  std::vector<CsvTable> tables;                 // those that have rows
};

/// Reads one of the lines chosen. Needs an open survey; throws dao::Error.
/// @return 0, or -1 after a message
[[nodiscard]] int load_tables(const ExportChoices& choices, std::size_t choice_index, LineTables& tables);

/// "200E_curves.csv"
std::string table_file(const std::string& line_id, CsvTable table);

/// The ids of the lines chosen, in their order: different also where a line is chosen twice, with different
/// dipoles.
std::vector<std::string> line_ids(const ExportChoices& choices);

}  // namespace Module_exchange
