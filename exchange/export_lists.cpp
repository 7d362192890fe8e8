#include "exchange/export_lists.h"

#include <algorithm>
#include <set>

#include "core/trap_errors.h"
#include "database/survey_database.h"
#include "database/survey_lists.h"
#include "platform/dao/text_literal.h"

namespace Module_exchange {

using Module_tensor::LineChoice;

namespace {

/// All lines of the survey, by their numbers as everywhere else.
std::vector<std::string> lines_in_order() {
  std::vector<std::string> lines;
  const auto add = [&](const std::string& line) {
    if (std::ranges::find(lines, line) == lines.end()) {
      lines.push_back(line);
    }
  };
  for (const Module_database::ListedStation& station : Module_database::listed_stations()) {
    if (lines.empty() || lines.back() != station.line) {
      add(station.line);
    }
  }
  std::ranges::for_each(Module_database::listed_lines(), add);  // readings that have lost their station
  return lines;
}

}  // namespace

std::vector<LineChoice> all_kinds_of_line(const std::string& line) {
  std::vector<LineChoice> kinds = Module_tensor::kinds_of_line(line);
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT DISTINCT ReferenceType,DipoleLength FROM ReadingsDataTable WHERE LineNumber = " +
      dao::text_literal(line) + " ORDER BY ReferenceType,DipoleLength");
  for (; !rows.eof(); rows.move_next()) {
    const LineChoice kind{line, rows.get_long("ReferenceType"), rows.get_single("DipoleLength")};
    if (std::ranges::find(kinds, kind) == kinds.end()) {
      kinds.push_back(kind);
    }
  }
  return kinds;
}

int read_export_lists(ExportLists& lists) {
  lists = {};
  return trap_errors("An error occurred while reading the lines: ", [&] {
    ExportLists read;
    std::set<std::int32_t> reference_types;
    std::set<float> dipoles;
    for (const std::string& line : lines_in_order()) {
      for (const LineChoice& kind : all_kinds_of_line(line)) {
        if (read.lines.empty() || read.lines.back() != line) {
          read.lines.push_back(line);
        }
        read.kinds.push_back(kind);
        reference_types.insert(kind.reference_type);
        dipoles.insert(kind.dipole);
      }
    }
    read.reference_types.assign(reference_types.begin(), reference_types.end());
    read.dipoles.assign(dipoles.begin(), dipoles.end());
    lists = std::move(read);
  });
}

std::optional<LineChoice> kind_of_line(const ExportLists& lists, const std::string& line,
                                       std::int32_t reference_type, float dipole) {
  std::optional<LineChoice> found;
  for (const LineChoice& kind : lists.kinds) {  // of a line, transfer functions first
    if (kind.line == line && kind.reference_type == reference_type && (!found || kind.dipole == dipole)) {
      found = kind;
    }
  }
  return found;
}

}  // namespace Module_exchange
