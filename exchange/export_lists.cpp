#include "exchange/export_lists.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

#include "core/trap_errors.h"
#include "database/sound_rows.h"
#include "database/survey_database.h"
#include "database/survey_lists.h"

namespace Module_exchange {

using Module_tensor::LineChoice;

namespace {

/// Every kind of every line that has readings, each once.
std::vector<LineChoice> kinds_of_survey() {
  std::map<std::string, std::string> spelled;  // by the line as readings have it
  std::set<std::tuple<std::string, std::int32_t, float>> found;
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT DISTINCT LineNumber,ReferenceType,DipoleLength FROM ReadingsDataTable");
  Module_database::for_each_sound_row(rows, [&](const dao::Recordset& row) {
    const std::string line = row.get_text("LineNumber");
    auto known = spelled.find(line);
    if (known == spelled.end()) {
      known = spelled.emplace(line, Module_database::spelled_line(line)).first;
    }
    found.emplace(known->second, row.get_long("ReferenceType"), row.get_single("DipoleLength"));
  });
  std::vector<LineChoice> kinds;
  for (const auto& [line, reference_type, dipole] : found) {
    kinds.push_back({line, reference_type, dipole});
  }
  return kinds;
}

/// Those that have curves, by their numbers as everywhere else.
std::vector<std::string> lines_of(const std::vector<LineChoice>& kinds) {
  std::vector<std::string> lines;
  const auto add = [&](const std::string& line) {
    if (std::ranges::find(lines, line) == lines.end() &&
        std::ranges::find(kinds, line, &LineChoice::line) != kinds.end()) {
      lines.push_back(line);
    }
  };
  for (const Module_database::ListedStation& station : Module_database::listed_stations()) {
    if (lines.empty() || lines.back() != station.line) {
      add(station.line);
    }
  }
  for (const LineChoice& kind : kinds) {  // readings that have lost their station
    add(kind.line);
  }
  return lines;
}

}  // namespace

int read_export_lists(ExportLists& lists) {
  lists = {};
  return trap_errors("An error occurred while reading the lines: ", [&] {
    ExportLists read;
    read.kinds = kinds_of_survey();
    read.lines = lines_of(read.kinds);
    std::set<std::int32_t> reference_types;
    std::set<float> dipoles;
    for (const LineChoice& kind : read.kinds) {
      reference_types.insert(kind.reference_type);
      dipoles.insert(kind.dipole);
    }
    read.reference_types.assign(reference_types.begin(), reference_types.end());
    read.dipoles.assign(dipoles.begin(), dipoles.end());
    lists = std::move(read);
  });
}

std::optional<LineChoice> kind_of_line(const ExportLists& lists, const std::string& line,
                                       std::int32_t reference_type, float dipole) {
  std::optional<LineChoice> found;
  for (const LineChoice& kind : lists.kinds) {  // of a line by ascending dipoles
    if (kind.line == line && kind.reference_type == reference_type && (!found || kind.dipole == dipole)) {
      found = kind;
    }
  }
  return found;
}

}  // namespace Module_exchange
