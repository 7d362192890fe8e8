#include "import/import_plan.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <set>
#include <utility>

#include "core/number_text.h"
#include "core/text_fields.h"

namespace Module_data_file {

namespace {

struct ProblemText {
  PlanProblem problem;
  std::string_view text;
};

constexpr std::array<ProblemText, 9> problem_texts{
    {{PlanProblem::not_readable, "nothing to store"},
     {PlanProblem::no_frequencies, "no frequencies"},
     {PlanProblem::no_rate, "the rate is no number"},
     {PlanProblem::no_station, "no station"},
     {PlanProblem::shared_station, "two sites on one station"},
     {PlanProblem::two_places, "one station at two places"},
     {PlanProblem::far_off_line, "far off the line"},
     {PlanProblem::negative_yx_phases, "all YX phases are negative"},
     {PlanProblem::same_file_name, "another file has the same name"}}};

std::string counted(std::size_t count, const std::string& what) {
  return plain_text(static_cast<std::int64_t>(count)) + " " + what + (count == 1 ? "" : "s");
}

}  // namespace

bool PlannedSection::can_edit(PlanCell cell) const {
  return std::ranges::find(editable, cell) != editable.end();
}

bool PlannedSection::is_edited(PlanCell cell) const {
  return std::ranges::find(edited_cells, cell) != edited_cells.end();
}

const PlannedSection* ImportPlan::find(std::size_t file_index, std::size_t section_index) const {
  const auto place = [](const PlannedSection& row) { return std::pair(row.file_index, row.section_index); };
  const auto found = std::ranges::lower_bound(sections, std::pair(file_index, section_index), {}, place);
  return found != sections.end() && place(*found) == std::pair(file_index, section_index) ? &*found : nullptr;
}

std::vector<std::size_t> ImportPlan::display_order() const {
  std::vector<std::size_t> order(sections.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  const auto rank = [&](std::size_t index) {
    const std::vector<PlanProblem>& problems = sections[index].problems;
    return problems.empty() ? problem_texts.size() : static_cast<std::size_t>(std::ranges::min(problems));
  };
  std::ranges::stable_sort(order, {}, rank);
  return order;
}

std::vector<std::string> ImportPlan::shared_stations() const {
  std::set<std::string> texts;  // each once for all of its files
  for (const PlannedSection& row : sections) {
    if (std::ranges::find(row.problems, PlanProblem::shared_station) != row.problems.end()) {
      const auto said = std::ranges::find_if(
          row.remarks, [](const std::string& remark) { return remark.starts_with("Station "); });
      texts.insert(said == row.remarks.end() ? row.file : *said);
    }
  }
  return {texts.begin(), texts.end()};
}

std::string ImportPlan::summary() const {
  std::set<std::size_t> files;
  std::set<std::string> lines;
  std::set<std::pair<std::string, double>> stations;
  std::size_t own_stations = 0;
  std::size_t with_problems = 0;
  for (const PlannedSection& row : sections) {
    files.insert(row.file_index);
    with_problems += row.problems.empty() ? 0U : 1U;
    if (!row.is_stored) {
      continue;
    }
    if (!row.line.empty()) {  // it is told as a problem of its rows
      lines.insert(upper_case(row.line));
    }
    stations.emplace(upper_case(row.line), row.station);
    own_stations += row.own_stations > 1 ? row.own_stations - 1 : 0;
  }
  std::string text =
      counted(files.size(), "file") + ", " + counted(stations.size() + own_stations, "station");
  if (lines.size() == 1) {
    text += " on line " + *lines.begin();
  } else if (!lines.empty()) {
    text += " on " + counted(lines.size(), "line");
  }
  return with_problems == 0 ? text : text + "; " + counted(with_problems, "row") + " with problems";
}

std::string_view problem_text(PlanProblem problem) {
  return problem_texts[static_cast<std::size_t>(problem)].text;
}

}  // namespace Module_data_file
