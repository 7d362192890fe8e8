#include "exchange/csv_tables.h"

#include <array>

#include "exchange/csv_curves.h"
#include "exchange/csv_rhoplus.h"
#include "exchange/csv_tensors.h"
#include "exchange/site_names.h"

namespace Module_exchange {

int load_tables(const ExportChoices& choices, std::size_t choice_index, LineTables& tables) {
  tables = {};
  if (load_line(choices, choice_index, tables.line) != 0 ||
      curves_of_line(tables.line, choices.reduction, choices.rotation.has_value(), tables.curves) != 0) {
    return -1;
  }
  const LineContents& line = tables.line;
  const auto add = [&](CsvTable table, bool has_rows) {
    if (has_rows) {
      tables.tables.push_back(table);
    }
  };
  add(CsvTable::curves, !tables.curves.empty());
  add(CsvTable::tensors, has_tensors(line));
  add(CsvTable::tippers, has_tippers(line));
  add(CsvTable::parameters, has_parameters(line));
  add(CsvTable::rhoplus, choices.rhoplus && has_rhoplus_curves(line));
  return 0;
}

std::string table_file(const std::string& line_id, CsvTable table) {
  constexpr std::array<const char*, 5> names{"curves", "tensors", "tippers", "parameters", "rhoplus"};
  return line_id + "_" + names[static_cast<std::size_t>(table)] + ".csv";
}

std::vector<std::string> line_ids(const ExportChoices& choices) {
  std::vector<std::string> names;
  for (const Module_tensor::LineChoice& choice : choices.lines) {
    names.push_back(choice.line);
  }
  return unique_ids(names);
}

}  // namespace Module_exchange
