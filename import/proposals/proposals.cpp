#include "import/proposals/proposals.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

#include "core/number_text.h"
#include "import/proposals/line_places.h"
#include "import/proposals/line_proposals.h"
#include "import/proposals/station_proposals.h"
#include "import/proposals/survey_before.h"
#include "projections/coord_system.h"

namespace Module_data_file {

namespace {

constexpr std::array<std::string_view, 9> titles{"Reference",       "Reduction",  "Line",
                                                 "Event",           "Rate",       "Turn Ey",
                                                 "From impedances", "Projection", "Stations"};
constexpr std::int32_t reference_none = 0;
constexpr std::int32_t reference_remote = 1;
constexpr double rate_over_frequency = 4.0;

std::string of_files(std::int64_t some, std::int64_t all) {
  constexpr std::int64_t both = 2;
  if (some != all) {
    return plain_text(some) + " of " + plain_text(all) + " files have ";
  }
  return all == 1      ? "the file has "
         : all == both ? "both files have "
                       : "all " + plain_text(all) + " files have ";
}

// The readable files, and how many of them are or have something.
class Census {
 public:
  explicit Census(std::span<const ScannedFile> files) {
    for (const ScannedFile& file : files) {
      if (file.failure.empty()) {
        take(file);
      }
    }
  }
  std::int64_t of_sites = 0;
  std::int64_t edi = 0;  // of these; the others don't tell whether they had a remote reference
  std::int64_t fixed_columns = 0;
  std::int64_t with_remote = 0;
  std::int64_t turned = 0;
  std::int64_t impedances_only = 0;
  double highest = 0.0;  // Hz
  std::vector<numerics::geodesy::GeographicPlace> places;

 private:
  void take(const ScannedFile& file) {
    edi += is_edi(file.format) ? 1 : 0;
    of_sites += names_sites(file.format) || is_station_table(file.format) ? 1 : 0;
    fixed_columns += file.format == format_fixed_columns ? 1 : 0;
    with_remote += file.has_remote ? 1 : 0;
    const auto any = [&](auto member) { return std::ranges::any_of(file.sections, member); };
    turned += any(&ScannedSection::has_turned_ey) ? 1 : 0;
    impedances_only += any(&ScannedSection::lacks_curves) ? 1 : 0;
    for (const ScannedSection& section : file.sections) {
      highest = std::max(highest, section.highest);
    }
    if (const auto& place = file.place ? file.place : file.first_place) {
      places.push_back(*place);
    }
  }
};

Proposal propose_reference(const Census& census, ImportChoices& choices) {
  const bool remote = census.with_remote > 0 && 2 * census.with_remote >= census.of_sites;
  choices.ReferenceType = remote ? reference_remote : reference_none;
  return {ProposedChoice::reference, remote ? "Remote" : "Not Remote",
          census.with_remote == 0 ? (census.edi < census.of_sites ? "no file shows remote channels"
                                                                  : "no file has remote channels")
                                  : of_files(census.with_remote, census.of_sites) + "remote channels"};
}

Proposal propose_event(const Census& census, ImportChoices& choices) {
  choices.decode[decode_event] = {};
  choices.decode[decode_event].specified = "0";
  return {
      ProposedChoice::event, "0",
      census.fixed_columns > 0 ? "the files don't say theirs" : "the files number their sections themselves"};
}

Proposal propose_rate(const Census& census, ImportChoices& choices) {
  choices.decode[decode_sample_rate] = {};
  choices.own_rate_of_fixed_columns = true;
  if (!(census.highest > 0.0)) {
    choices.decode[decode_sample_rate].specified.clear();
    return {ProposedChoice::rate, "none", "no file gives a frequency"};
  }
  std::string rate = plain_text(rate_over_frequency * census.highest);
  choices.decode[decode_sample_rate].specified = rate;
  return {
      ProposedChoice::rate, std::move(rate),
      "four times the highest frequency of all files, " + plain_text(census.highest) + " Hz" +
          (census.fixed_columns > 0 ? "; files of fixed columns have four times their own last one" : "")};
}

void propose_tensors(const Census& census, Proposals& proposals) {
  ImportChoices& choices = proposals.choices;
  choices.turn_ey = census.turned > 0 ? TurnEy::where_needed : TurnEy::never;
  if (census.turned > 0) {
    proposals.reasons.push_back({ProposedChoice::turn_ey, "where needed",
                                 of_files(census.turned, census.of_sites) + "YX phases in -180..-90"});
  }
  choices.compute_from_impedance = census.impedances_only > 0;
  if (census.impedances_only > 0) {
    proposals.reasons.push_back(
        {ProposedChoice::from_impedance, "computed",
         of_files(census.impedances_only, census.of_sites) + "impedances without curves"});
  }
}

void propose_projection(const Census& census, const SurveyBefore& survey, Proposals& proposals) {
  if (census.places.empty() || (survey.has_projection() && !survey.projection())) {
    return;
  }
  proposals.choices.convert_coordinates = true;
  if (survey.projection()) {
    proposals.reasons.push_back(
        {ProposedChoice::projection, survey.projection()->name,
         "the survey's; " + of_files(static_cast<std::int64_t>(census.places.size()), census.of_sites) +
             "latitude and longitude"});
    return;
  }
  proposals.choices.projection = utm_zone_of(census.places);
  proposals.reasons.push_back({ProposedChoice::projection, proposals.choices.projection->name,
                               of_files(static_cast<std::int64_t>(census.places.size()), census.of_sites) +
                                   "latitude and longitude; the zone of the median longitude"});
}

void replace_reason(Proposals& proposals, Proposal reason) {
  std::ranges::replace_if(
      proposals.reasons, [&](const Proposal& other) { return other.choice == reason.choice; }, reason);
}

/// A line without a name of its own takes its letter from the direction, unless the user has typed one.
void propose_line_again(std::span<const ScannedFile> files, PlanMaker& maker, ImportChoices& choices,
                        Proposals& proposals) {
  const DecodeRow& row = choices.decode[decode_line_number];
  const DecodeRow& proposed = proposals.choices.decode[decode_line_number];
  const bool is_other_way = choices.line_direction != proposals.choices.line_direction;
  if (!is_other_way || row.use_file_name || row.specified != proposed.specified) {
    return;
  }
  LineProposal line = propose_lines(files, maker.survey(), choices);
  replace_reason(proposals, {ProposedChoice::line, std::move(line.value), std::move(line.why)});
  proposals.choices.line_direction = choices.line_direction;
  proposals.choices.decode[decode_line_number] = choices.decode[decode_line_number];
  proposals.choices.folder_lines = choices.folder_lines;
}

}  // namespace

const Proposal* Proposals::find(ProposedChoice choice) const {
  const auto found = std::ranges::find(reasons, choice, &Proposal::choice);
  return found == reasons.end() ? nullptr : &*found;
}

std::string_view proposed_title(ProposedChoice choice) { return titles[static_cast<std::size_t>(choice)]; }

Proposal propose_stations(std::span<const ScannedFile> files, ImportChoices& choices, PlanMaker& maker) {
  StationProposal proposal = propose_station_rule(files, maker, choices);
  return {ProposedChoice::stations, std::move(proposal.value), std::move(proposal.why)};
}

void follow_choices(std::span<const ScannedFile> files, PlanMaker& maker, ChosenStations stations,
                    ImportChoices& choices, Proposals& proposals) {
  propose_line_again(files, maker, choices, proposals);
  if (stations == ChosenStations::by_proposal) {  // another line may have sites, and with them its zero
    replace_reason(proposals, propose_stations(files, choices, maker));
    proposals.choices.stations_by = choices.stations_by;
  }
}

Proposals propose(std::span<const ScannedFile> files, PlanMaker& maker, LineDirection direction) {
  const Census census(files);
  Proposals proposals;
  ImportChoices& choices = proposals.choices;
  choices.line_direction = direction;
  proposals.reasons.push_back(propose_reference(census, choices));
  choices.ReductionType = 0;
  proposals.reasons.push_back({ProposedChoice::reduction, "Raw", "field files"});
  LineProposal line = propose_lines(files, maker.survey(), choices);
  proposals.reasons.push_back({ProposedChoice::line, std::move(line.value), std::move(line.why)});
  proposals.reasons.push_back(propose_event(census, choices));
  proposals.reasons.push_back(propose_rate(census, choices));
  propose_tensors(census, proposals);
  propose_projection(census, maker.survey(), proposals);
  proposals.reasons.push_back(propose_stations(files, choices, maker));
  return proposals;
}

}  // namespace Module_data_file
