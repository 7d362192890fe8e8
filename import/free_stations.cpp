#include "import/free_stations.h"

#include "core/number_text.h"
#include "core/text_fields.h"
#include "database/sound_rows.h"
#include "database/survey_database.h"
#include "platform/dao/text_literal.h"

namespace Module_data_file {

namespace {

using Module_database::open_survey;

std::set<double> stations_in_survey(const std::string& line) {
  std::set<double> stations;
  if (!open_survey().database.is_open()) {
    return stations;  // a scan needs no survey
  }
  dao::Recordset rows = open_survey().database.open_recordset(
      "SELECT Station FROM StationsTable WHERE SurveyLine = " + dao::text_literal(line));
  Module_database::for_each_sound_row(
      rows, [&](const dao::Recordset& row) { stations.insert(row.get_double("Station")); });
  return stations;
}

}  // namespace

FreeStations::Line& FreeStations::line_of(const std::string& line) {
  const std::string name = upper_case(line);
  const auto known = lines_.find(name);
  return known != lines_.end() ? known->second
                               : lines_.emplace(name, Line{stations_in_survey(line)}).first->second;
}

double FreeStations::next(const std::string& line, double start, double spacing,
                          const std::set<double>& own) {
  const FoundSites& in_files = in_files_();
  Line& known = line_of(line);
  const std::string name = upper_case(line);
  bool all_for_good = true;
  for (int step = known.steps;; ++step) {
    // By its decimal text, as counted stations are.
    const double station = numeric_value(plain_text(start + step * spacing));
    const LineStation place{name, station};
    const bool taken =
        taken_.contains(place) || in_files.sites.contains(place) || in_files.claimed.contains(place);
    const bool is_free = !taken && (!known.in_survey.contains(station) || own.contains(station));
    const bool stands_still = step > 0 && station == start;  // the spacing is lost in so large a number
    if (is_free || stands_still) {
      return station;
    }
    all_for_good = all_for_good && taken;
    known.steps += all_for_good ? 1 : 0;
  }
}

bool FreeStations::is_free(const std::string& line, double station, const std::set<double>& own) {
  const LineStation place{upper_case(line), station};
  return !taken_.contains(place) && !in_files_().sites.contains(place) &&
         (!line_of(line).in_survey.contains(station) || own.contains(station));
}

void FreeStations::take(const std::string& line, double station) {
  taken_.emplace(upper_case(line), station);
}

}  // namespace Module_data_file
