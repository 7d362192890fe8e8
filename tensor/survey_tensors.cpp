#include "tensor/survey_tensors.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "core/number_text.h"
#include "core/trap_errors.h"
#include "database/survey_database.h"
#include "database/survey_lists.h"

namespace Module_tensor {

using Module_averaged_data::Outcome;

namespace {

constexpr std::string_view failed = "An error occurred while reading the tensors of the survey: ";

std::vector<StationTensor> northward(const std::vector<StationTensor>& stations) {
  std::vector<StationTensor> turned;
  turned.reserve(stations.size());
  for (const StationTensor& station : stations) {
    turned.push_back(turned_to(station, 0.0));
  }
  return turned;
}

/// The dipoles with which each line has curves, by the line as the survey spells it.
std::map<std::string, std::vector<float>> dipoles_of_lines(std::int32_t reference_type) {
  std::map<std::string, std::vector<float>> dipoles;
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT DISTINCT LineNumber,DipoleLength FROM ReadingsDataTable WHERE ReferenceType = " +
      format_number(reference_type, "0"));
  for (; !rows.eof(); rows.move_next()) {
    dipoles[Module_database::spelled_line(rows.get_text("LineNumber"))].push_back(
        rows.get_single("DipoleLength"));
  }
  return dipoles;
}

}  // namespace

std::vector<LineChoice> other_lines(const LineChoice& choice) {
  std::vector<LineChoice> lines;
  for (const auto& [line, dipoles] : dipoles_of_lines(choice.reference_type)) {
    if (line != choice.line) {
      const bool has_same = std::ranges::find(dipoles, choice.dipole) != dipoles.end();
      lines.push_back({line, choice.reference_type, has_same ? choice.dipole : std::ranges::min(dipoles)});
    }
  }
  return lines;
}

void SurveyTensors::take(const LineTensors& line) {
  const LineChoice& choice = line.curves.choice;
  if (choice.reference_type != shown_.reference_type || choice.dipole != shown_.dipole) {
    lines_.clear();
  }
  shown_ = choice;
  if (!choice.line.empty()) {
    lines_[choice.line] = northward(line.stations);
  }
}

Outcome SurveyTensors::load_others(const Frequencies& frequencies) {
  std::vector<LineChoice> lines;
  if (trap_errors(failed, [&] { lines = other_lines(shown_); }) != 0) {
    return Outcome::failed;
  }
  std::erase_if(lines, [this](const LineChoice& line) { return lines_.contains(line.line); });
  left_out_ = lines.size();
  Module_averaged_data::WorkProgress progress("Reading the tensors", lines.size());
  return each_item(progress, [&](std::size_t index) {
    LineTensors loaded;
    if (load_line_tensors(lines[index], frequencies, loaded) != 0) {
      return -1;
    }
    lines_[lines[index].line] = northward(loaded.stations);
    --left_out_;
    return 0;
  });
}

int SurveyTensors::make_map(bool all_lines, const Frequencies& frequencies, SiteMap& map) const {
  map = {};
  return trap_errors(failed, [&] {
    std::vector<LineStations> chosen;
    std::vector<std::string> names;
    for (const auto& [line, stations] : lines_) {
      if (all_lines || line == shown_.line) {
        chosen.push_back({line, stations});
        std::ranges::for_each(chosen.back().stations,
                              [&](StationTensor& station) { leave_out_disabled(frequencies, station); });
        names.push_back(line);
      }
    }
    map = site_map(chosen, Module_projections::survey_places(names));
  });
}

}  // namespace Module_tensor
