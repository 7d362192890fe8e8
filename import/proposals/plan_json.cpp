#include "import/proposals/plan_json.h"

#include <utility>

#include <nlohmann/json.hpp>

#include "core/number_text.h"

namespace Module_data_file {

namespace {

nlohmann::ordered_json json_of(const PlannedSection& row) {
  nlohmann::ordered_json problems = nlohmann::ordered_json::array();
  for (const PlanProblem problem : row.problems) {
    problems.push_back(std::string(problem_text(problem)));
  }
  return {{"file", row.file},
          {"section", row.section_index + 1},
          {"stored", row.is_stored},
          {"site", row.site},
          {"line", row.line},
          {"station", row.station},
          {"own_stations", row.own_stations},
          {"event", row.event},
          {"rate", decimal_of_single(row.stored_rate())},
          {"frequencies", row.frequencies},
          {"place", row.place},
          {"turn_ey", row.turn_ey},
          {"from_impedance", row.from_impedance},
          {"problems", std::move(problems)},
          {"remarks", row.remarks}};
}

}  // namespace

std::string plan_as_json(const ImportPlan& plan, std::span<const Proposal> proposals,
                         std::size_t files_left_out) {
  nlohmann::ordered_json reasons = nlohmann::ordered_json::array();
  for (const Proposal& proposal : proposals) {
    reasons.push_back({{"what", std::string(proposed_title(proposal.choice))},
                       {"value", proposal.value},
                       {"why", proposal.why}});
  }
  nlohmann::ordered_json rows = nlohmann::ordered_json::array();
  for (const PlannedSection& row : plan.sections) {
    rows.push_back(json_of(row));
  }
  const nlohmann::ordered_json whole = {
      {"proposals", std::move(reasons)}, {"files_left_out", files_left_out}, {"rows", std::move(rows)}};
  // A path may hold bytes that aren't UTF-8.
  return whole.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace Module_data_file
