#include "import/proposals/plan_problems.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "import/proposals/site_stations.h"

namespace Module_data_file {

using numerics::geodesy::MapPlace;

namespace {

// Two places are always on a line.
constexpr std::size_t fewest_of_area = 3;

bool has(const PlannedSection& row, PlanProblem problem) {
  return std::ranges::find(row.problems, problem) != row.problems.end();
}

void mark(PlannedSection& row, PlanProblem problem) {
  if (!has(row, problem)) {
    row.problems.push_back(problem);
  }
}

void say(PlannedSection& row, PlanProblem problem, std::string text) {
  mark(row, problem);
  row.remarks.push_back(std::move(text));
}

// The stored rows at each station; those of files with several stations of their own at each of them.
using RowsAtStations = std::map<LineStation, std::vector<std::size_t>>;

RowsAtStations rows_at_stations(const std::vector<PlannedSection>& rows, std::span<const ScannedFile> files) {
  RowsAtStations at;
  for (std::size_t index = 0; index < rows.size(); ++index) {
    const PlannedSection& row = rows[index];
    if (!row.is_stored) {
      continue;
    }
    at[{upper_case(row.line), row.station}].push_back(index);
    if (row.own_stations > 1) {
      for (const OwnStation& own : files[row.file_index].own_stations) {
        std::vector<std::size_t>& here =
            at[{upper_case(own.line.empty() ? row.line : own.line), own.station}];
        if (std::ranges::find(here, index) == here.end()) {
          here.push_back(index);
        }
      }
    }
  }
  return at;
}

void find_own_problems(PlannedSection& row, const ScannedFile& file) {
  if (has(row, PlanProblem::not_readable)) {
    return;
  }
  if (row.frequencies == 0) {
    say(row, PlanProblem::no_frequencies, std::string(problem_text(PlanProblem::no_frequencies)));
  }
  const ScannedSection& section = file.sections[row.section_index];
  if (section.all_yx_phases_negative && !row.turn_ey) {
    say(row, PlanProblem::negative_yx_phases, "all YX phases are negative, and masked: Ey isn't turned");
  }
  if (section.lacks_curves && !row.from_impedance) {
    row.remarks.emplace_back("impedances without curves, unless these are computed");
  }
  if (has(row, PlanProblem::same_file_name)) {
    row.remarks.push_back("another file has its name; the survey knows it as " + row.file);
  }
  row.remarks.insert(row.remarks.begin(), row.reported.begin(), row.reported.end());
}

void find_shared_stations(std::vector<PlannedSection>& rows, const RowsAtStations& at, const PlanRun& run,
                          SurveyBefore& survey) {
  for (const SharedStation& shared : shared_stations(run.found(), survey.files_at_stations())) {
    const auto here = at.find({upper_case(shared.line), shared.station});
    if (here == at.end()) {
      continue;
    }
    for (const std::size_t index : here->second) {
      say(rows[index], PlanProblem::shared_station, shared.text());
    }
  }
}

std::optional<MapPlace> place_in_survey(const LineStation& station, const PlanRun& run,
                                        const SurveyBefore& survey) {
  const std::vector<Module_database::Site>& sites = survey.sites(station.first);
  const auto found = std::ranges::find(sites, station.second, &Module_database::Site::station);
  return found == sites.end() || !found->latitude || !found->longitude
             ? std::nullopt
             : run.lines().map().on_map({*found->latitude, *found->longitude});
}

void find_two_places(std::vector<PlannedSection>& rows, const RowsAtStations& at, const PlanRun& run,
                     const SurveyBefore& survey) {
  for (const auto& [station, indices] : at) {
    const std::optional<MapPlace> in_survey = place_in_survey(station, run, survey);
    std::optional<MapPlace> first = in_survey;
    double farthest = 0.0;
    if (has(rows[indices.front()], PlanProblem::shared_station)) {
      continue;  // two sites are at two places
    }
    for (const std::size_t index : indices) {
      const std::optional<MapPlace>& place = run.lines().place_of(rows[index].file_index);
      first = first ? first : place;
      farthest = place ? std::max(farthest, distance(*place, *first)) : farthest;
    }
    if (farthest > same_place) {
      for (const std::size_t index : indices) {
        say(rows[index], PlanProblem::two_places,
            "station " + plain_text(station.second) + " of line " + rows[index].line + " is at places " +
                format_number(farthest, "0") + " m apart" + (in_survey ? ", one of them the survey's" : ""));
      }
    }
  }
}

void find_far_off(std::vector<PlannedSection>& rows, const PlanRun& run) {
  std::set<std::string> told;
  for (PlannedSection& row : rows) {
    const std::string name = upper_case(row.line);
    const auto line = run.lines().all().find(name);
    const std::optional<MapPlace>& place = run.lines().place_of(row.file_index);
    if (!row.is_stored || !place || line == run.lines().all().end()) {
      continue;
    }
    const LinePlaces& places = line->second;
    if (places.is_far_off(*place)) {
      say(row, PlanProblem::far_off_line, "its place is far off those of the others on line " + row.line);
    }
    if (!places.is_line() && places.places() >= fewest_of_area && told.insert(name).second) {
      row.remarks.push_back("stations of line " + row.line +
                            " are no distances: its sites don't lie on a line");
    }
  }
}

}  // namespace

void find_problems(std::vector<PlannedSection>& rows, std::span<const ScannedFile> files, const PlanRun& run,
                   SurveyBefore& survey) {
  const RowsAtStations at = rows_at_stations(rows, files);
  find_shared_stations(rows, at, run, survey);
  find_two_places(rows, at, run, survey);
  find_far_off(rows, run);
  for (PlannedSection& row : rows) {
    find_own_problems(row, files[row.file_index]);
    std::ranges::sort(row.problems);
  }
}

}  // namespace Module_data_file
