#include "import/proposals/plan_problems.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "import/file_formats.h"
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

RowsAtStations rows_at_stations(const std::vector<PlannedSection>& rows, std::span<const ScannedFile> files,
                                LineDirection direction) {
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
            at[{upper_case(own.line.empty() ? row.line : own.line_along(direction)), own.station}];
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

// What two tables of stations have in common.
struct CommonStations {
  std::int64_t count = 0;
  bool have_places = false;  // one of these has a place in both
  bool have_lines = false;   // one of these has its line from both
  double farthest = 0.0;     // m, between the places of one station
};

using RowPair = std::pair<std::size_t, std::size_t>;

// Each with the first table that has a station, too.
std::map<RowPair, CommonStations> common_stations(const std::vector<PlannedSection>& rows,
                                                  std::span<const ScannedFile> files, const PlanRun& run) {
  const LineDirection direction = run.choices().line_direction;
  std::map<RowPair, CommonStations> common;
  std::map<LineStation, std::pair<std::size_t, const OwnStation*>> firsts;
  for (std::size_t index = 0; index < rows.size(); ++index) {
    const ScannedFile& file = files[rows[index].file_index];
    if (!rows[index].is_stored || !is_station_table(file.format)) {
      continue;
    }
    std::set<LineStation> seen;
    for (const OwnStation& own : file.own_stations) {
      const LineStation key{upper_case(own.line.empty() ? rows[index].line : own.line_along(direction)),
                            own.station};
      const auto first = firsts.try_emplace(key, index, &own).first->second;
      if (first.first == index || !seen.insert(key).second) {
        continue;
      }
      CommonStations& both = common[{first.first, index}];
      const std::optional<double> metres = metres_between(*first.second, own, run.lines().map());
      ++both.count;
      both.have_places = both.have_places || metres;
      both.have_lines = both.have_lines || (!first.second->line.empty() && !own.line.empty());
      both.farthest = std::max(both.farthest, metres.value_or(0.0));
    }
  }
  return common;
}

// Files of two lines that came to one would be averaged into one another, station by station.
void find_common_stations(std::vector<PlannedSection>& rows, std::span<const ScannedFile> files,
                          const PlanRun& run) {
  for (const auto& [pair, common] : common_stations(rows, files, run)) {
    PlannedSection& a = rows[pair.first];
    PlannedSection& b = rows[pair.second];
    const bool are_apart = common.farthest > same_place;
    const bool nothing_tells =
        !common.have_places && !common.have_lines && a.own_stations > 1 && b.own_stations > 1;
    if (!are_apart && !nothing_tells) {
      continue;
    }
    std::string stations = plain_text(common.count);
    stations += common.count == 1 ? " station" : " stations";
    stations += " of line " + a.line + " in common with ";
    const std::string why = are_apart
                                ? ", up to " + format_number(common.farthest, "0") + " m apart"
                                : ", and no places that tell whether they are the same: two lines may be one";
    const PlanProblem problem = are_apart ? PlanProblem::two_places : PlanProblem::shared_station;
    const auto beside = [&](const PlannedSection& other) {
      std::string text = stations;
      return text.append(other.file).append(why);
    };
    say(a, problem, beside(b));
    say(b, problem, beside(a));
  }
}

// A file of transfer functions is all that is known of its site; two of one name are one site to the survey.
void find_namesake_sites(std::vector<PlannedSection>& rows, std::span<const ScannedFile> files,
                         const RowsAtStations& at) {
  for (const auto& [station, indices] : at) {
    for (const std::size_t index : indices) {
      PlannedSection& row = rows[index];
      const auto other = std::ranges::find_if(indices, [&](std::size_t candidate) {
        return rows[candidate].file_index != row.file_index &&
               is_site_file(files[rows[candidate].file_index].format) &&
               upper_case(rows[candidate].site) == upper_case(row.site);
      });
      if (is_site_file(files[row.file_index].format) && other != indices.end()) {
        row.remarks.push_back("site " + row.site + " is in " + rows[*other].file +
                              ", too: both are taken as one site, and averaged");
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
    if (!row.is_stored || !place || name.empty() || line == run.lines().all().end()) {
      continue;
    }
    const LinePlaces& places = line->second;
    if (places.is_far_off(*place)) {
      say(row, PlanProblem::far_off_line, "its place is far off those of the others on line " + row.line);
    }
    if (const auto apart = places.parallel_lines(); apart && told.insert(name).second) {
      row.remarks.push_back("the sites of line " + row.line + " lie on " + parallel_lines_text(*apart) +
                            ": a folder for each makes lines of them");
    }
    if (!places.is_line() && places.places() >= fewest_of_area && told.insert(name).second) {
      row.remarks.push_back("stations of line " + row.line +
                            " are no distances: its sites don't lie on a line; if they are of several, "
                            "a folder for each makes lines of them");
    }
  }
}

}  // namespace

void find_problems(std::vector<PlannedSection>& rows, std::span<const ScannedFile> files, const PlanRun& run,
                   SurveyBefore& survey) {
  const RowsAtStations at = rows_at_stations(rows, files, run.choices().line_direction);
  find_shared_stations(rows, at, run, survey);
  find_two_places(rows, at, run, survey);
  find_common_stations(rows, files, run);
  find_namesake_sites(rows, files, at);
  find_far_off(rows, run);
  for (PlannedSection& row : rows) {
    find_own_problems(row, files[row.file_index]);
    std::ranges::sort(row.problems);
  }
}

}  // namespace Module_data_file
