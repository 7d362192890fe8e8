#include "occam/ground/wall_stations.h"

#include <cstddef>
#include <exception>
#include <filesystem>

#include "core/number_text.h"
#include "formats/occam/data_file.h"
#include "formats/occam/iteration_file.h"
#include "numerics/section/site.h"
#include "occam/results/run_summary.h"

namespace fs = std::filesystem;

namespace Module_occam {

namespace {

/// The mesh with its masks, without regard to resistivities.
numerics::section::Section masked_section(const OccamModel& model, const std::vector<CodeLines>& codes) {
  constexpr numerics::section::Code ground = 1;
  numerics::section::Section section;
  section.left_edge = model.node_x.front();
  section.column_widths = model.mesh.node_widths;
  section.row_heights = model.mesh.node_heights;
  for (const CodeLines& row : codes) {
    for (std::size_t column = 0; column < section.columns(); ++column) {
      for (const std::string& line : row) {
        section.codes.push_back(line[column] == air_code   ? numerics::section::air_code
                                : line[column] == sea_code ? numerics::section::sea_code
                                                           : ground);
      }
    }
  }
  return section;
}

}  // namespace

MaskStations run_stations(const std::string& model_path) {
  try {
    const fs::path model(model_path);
    const fs::path control = control_file_of(model.parent_path(), model.filename().string());
    if (control.empty()) {
      return {};
    }
    const std::string data_file = read_control_file(control.string()).data_file;
    OccamData data = read_data_file_sites((model.parent_path() / data_file).string());
    return {std::move(data.site_names), {data.site_offsets.begin(), data.site_offsets.end()}};
  } catch (const std::exception&) {
    return {};  // a model can be masked before its run is complete
  }
}

MaskStations stations_at(const std::vector<double>& offsets) {
  MaskStations stations{{}, offsets};
  for (const double offset : offsets) {
    stations.names.push_back(plain_text(offset));
  }
  return stations;
}

std::vector<std::string> wall_stations(const OccamModel& model, const std::vector<CodeLines>& codes,
                                       const MaskStations& stations) {
  const numerics::section::Section section = masked_section(model, codes);
  std::vector<std::string> names;
  for (std::size_t station = 0; station < stations.names.size(); ++station) {
    const double offset = stations.offsets[station];
    if (offset >= model.node_x.front() && offset <= model.node_x.back() &&
        stands_on_a_wall(section, nearest_node_column(section, offset))) {
      names.push_back(stations.names[station]);
    }
  }
  return names;
}

std::string wall_report(const std::vector<std::string>& names) {
  constexpr std::size_t most = 50;
  if (names.empty()) {
    return {};
  }
  std::string text =
      names.size() == 1 ? "1 station stands" : std::to_string(names.size()) + " stations stand";
  text += " on a vertical wall of the masked mesh, where TM has no meaningful value: ";
  for (std::size_t i = 0; i < names.size() && i < most; ++i) {
    text += (i > 0 ? ", " : "") + names[i];
  }
  return names.size() > most ? text + " and " + std::to_string(names.size() - most) + " others" : text;
}

}  // namespace Module_occam
