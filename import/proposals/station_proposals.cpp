#include "import/proposals/station_proposals.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "import/file_decode.h"
#include "import/proposals/plan_run.h"
#include "import/proposals/survey_before.h"
#include "import/readers/section_stations.h"

namespace Module_data_file {

namespace {

constexpr double step_of_order = 100.0;

std::string kilometres(double metres) { return plain_text(std::round(metres / 100.0) / 10.0) + " km"; }

std::vector<const ScannedSection*> named_sections(std::span<const ScannedFile> files) {
  std::vector<const ScannedSection*> sections;
  for (const ScannedFile& file : files) {
    for (const ScannedSection& section : file.sections) {
      if (names_sites(file.format) && section.is_stored) {
        sections.push_back(&section);
      }
    }
  }
  return sections;
}

// Whether each row has a station of its own that something says.
bool gives_distinct(std::span<const ScannedFile> files, StationsBy rule, ImportChoices choices,
                    PlanMaker& maker) {
  choices.stations_by = rule;
  const ImportPlan plan = maker.plan(files, choices);
  return std::ranges::none_of(plan.sections, [&](const PlannedSection& row) {
    return names_sites(files[row.file_index].format) &&
           std::ranges::any_of(row.problems, [](PlanProblem problem) {
             return problem == PlanProblem::shared_station || problem == PlanProblem::two_places ||
                    problem == PlanProblem::no_station;
           });
  });
}

// Why distances are no stations here; empty if they are. `found` then says how well the sites lie on their
// lines.
std::string why_no_distances(std::span<const ScannedFile> files, const ImportChoices& choices,
                             SurveyBefore& survey, std::string& found) {
  const auto lacks_place = std::ranges::count_if(files, [](const ScannedFile& file) {
    return names_sites(file.format) && file.failure.empty() && !file.place;
  });
  if (lacks_place > 0) {
    return plain_text(std::int64_t{lacks_place}) + (lacks_place == 1 ? " file has" : " files have") +
           " no latitude and longitude";
  }
  const PlanRun run(files, choices, {}, survey);
  for (std::size_t file = 0; file < files.size(); ++file) {
    if (files[file].place && !run.lines().place_of(file)) {
      return "the places are too far apart for one map";
    }
  }
  for (const auto& [name, line] : run.lines().all()) {
    if (name.empty()) {
      return "the files have no line";
    }
    if (line.places() < 2) {
      return "line " + name + " has one place";
    }
    if (const auto apart = line.parallel_lines()) {
      return "the sites of line " + name + " lie on " + parallel_lines_text(*apart);
    }
    if (!line.is_line()) {
      return "the sites of line " + name + " don't lie on a line";
    }
    if (!line.known_are_distances()) {
      return "the stations that line " + name + " has are no distances";
    }
    const char* const lead =
        run.lines().all().size() > 1 ? "the sites lie on lines of " : "the sites lie on a line of ";
    found += (found.empty() ? lead : ", ") + kilometres(line.length());
    if (line.has_known()) {
      found += ", which keeps its zero and direction";
    }
  }
  return {};
}

// The first hundred above the stations that these lines have, in the survey or by files that hold theirs.
double first_of_order(std::span<const ScannedFile> files, const ImportChoices& choices,
                      SurveyBefore& survey) {
  const PlanRun run(files, choices, {}, survey);
  double highest = 0.0;
  for (const auto& [name, line] : run.lines().all()) {
    highest = std::max(highest, survey.highest_station(name).value_or(0.0));
  }
  for (const ScannedFile& file : files) {
    for (const OwnStation& own : file.own_stations) {
      const std::string line = own.line_along(choices.line_direction);
      const bool may_be_on_them = line.empty() || run.lines().all().contains(upper_case(line));
      highest = may_be_on_them ? std::max(highest, own.station) : highest;
    }
  }
  return step_of_order * (std::floor(highest / step_of_order) + 1.0);
}

}  // namespace

StationProposal propose_station_rule(std::span<const ScannedFile> files, PlanMaker& maker,
                                     ImportChoices& choices) {
  choices.stations_by = StationsBy::count;
  choices.count_sites = false;
  choices.start_station.clear();
  choices.station_step = plain_text(step_of_order);
  const std::vector<const ScannedSection*> sections = named_sections(files);
  if (sections.empty()) {
    return {"of the files", "the files hold their stations"};
  }
  std::string on_line;
  ImportChoices tested = choices;  // the user may still be typing the line
  (void)choices_fault(tested);     // brings it into its normal form
  std::string no_distances = why_no_distances(files, tested, maker.survey(), on_line);
  if (no_distances.empty() && !gives_distinct(files, StationsBy::distance, tested, maker)) {
    no_distances = "different sites are as far along the line";
  }
  if (no_distances.empty()) {
    choices.stations_by = StationsBy::distance;
    return {"distance along the line", on_line};
  }
  const auto is_number = [](const ScannedSection* section) {
    return has_name(section->head) && is_numeric(*section->head.name);
  };
  const bool only_edi = std::ranges::none_of(
      files, [](const ScannedFile& file) { return is_site_file(file.format) && file.failure.empty(); });
  const std::string name = only_edi ? "SECTID" : "the site name";
  const std::string because = no_distances + "; ";
  const bool are_numbers = std::ranges::all_of(sections, is_number);
  if (are_numbers && gives_distinct(files, StationsBy::sectid, tested, maker)) {
    choices.stations_by = StationsBy::sectid;
    return {name, because + name + " is a number"};
  }
  if (!are_numbers && gives_distinct(files, StationsBy::sectid_digits, tested, maker)) {
    choices.stations_by = StationsBy::sectid_digits;
    return {"digits of " + name, because + name + " has letters: its last digits"};
  }
  choices.count_sites = true;
  choices.start_station = plain_text(first_of_order(files, tested, maker.survey()));
  return {"order of the files", because + (are_numbers ? "the whole numbers" : "the digits") + " of " + name +
                                    " don't tell the sites apart"};
}

}  // namespace Module_data_file
