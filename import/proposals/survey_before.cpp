#include "import/proposals/survey_before.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "database/survey_database.h"
#include "database/survey_lists.h"
#include "import/quiet_interface.h"
#include "import/survey_file_names.h"
#include "projections/survey_projection.h"

namespace Module_data_file {

namespace {

using Module_database::open_survey;

std::optional<Module_projections::CoordSystem> usable_projection() {
  const QuietInterface quiet;  // a faulty one is told when it is used
  if (Module_projections::apply_survey_projection() != 0) {
    return std::nullopt;
  }
  return Module_projections::current_coord_system();
}

}  // namespace

SurveyBefore::SurveyBefore() {
  if (!open_survey().database.is_open()) {
    return;
  }
  earlier_files_ = std::make_unique<EarlierFiles>();
  for (const std::string& line : Module_database::listed_lines()) {
    lines_.insert(upper_case(line));
  }
  for (const Module_database::ListedStation& station : Module_database::listed_stations()) {
    lines_.insert(upper_case(station.line));
  }
  for (Module_database::Site& site : Module_database::listed_sites()) {
    sites_[upper_case(site.line)].push_back(std::move(site));
  }
  projection_ = usable_projection();
  has_projection_ = !Module_projections::current_coord_system().name.empty();
}

const FileRows* SurveyBefore::rows_of(const std::string& path, const std::string& name, double date) const {
  return earlier_files_ ? earlier_files_->find(name, path_tails(path), date) : nullptr;
}

std::string SurveyBefore::line_of(const FileRows& rows) {
  dao::Recordset lines = open_survey().database.open_recordset(
      "SELECT DISTINCT LineNumber FROM ReadingsDataTable WHERE FileID = " +
      format_number(rows.first_ID, "0"));
  if (lines.eof()) {
    return {};
  }
  std::string line = lines.get_text("LineNumber");
  lines.move_next();
  return lines.eof() ? line : std::string();
}

bool SurveyBefore::has_line(const std::string& line) const { return lines_.contains(upper_case(line)); }

const std::vector<Module_database::Site>& SurveyBefore::sites(const std::string& line) const {
  static const std::vector<Module_database::Site> none;
  const auto found = sites_.find(upper_case(line));
  return found == sites_.end() ? none : found->second;
}

const SurveyBefore::StationOfEvent& SurveyBefore::stations_of_file(const FileRows& rows) {
  const auto [known, is_new] = stations_of_file_.try_emplace(rows.first_ID);
  if (is_new) {
    dao::Recordset readings = open_survey().database.open_recordset(
        "SELECT DISTINCT LineNumber,Station,EventNumber FROM ReadingsDataTable WHERE FileID = " +
        format_number(rows.first_ID, "0"));
    for (; !readings.eof(); readings.move_next()) {
      known->second.emplace(
          std::pair(upper_case(readings.get_text("LineNumber")), readings.get_long("EventNumber")),
          readings.get_double("Station"));
    }
  }
  return known->second;
}

std::optional<double> SurveyBefore::station_of(const FileRows& rows, const std::string& line,
                                               std::int32_t event) {
  const StationOfEvent& stations = stations_of_file(rows);
  const auto found = stations.find({upper_case(line), event});
  return found == stations.end() ? std::nullopt : std::optional(found->second);
}

std::optional<double> SurveyBefore::highest_station(const std::string& line) {
  const FilesAtStations::Line& stations = files_at_stations_.of_line(line);
  return stations.empty() ? std::nullopt : std::optional(stations.rbegin()->first);
}

}  // namespace Module_data_file
