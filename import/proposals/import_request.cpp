#include "import/proposals/import_request.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <utility>

#include "core/number_text.h"
#include "core/user_interface.h"
#include "import/field_files.h"
#include "import/import_files.h"
#include "import/import_run.h"
#include "import/proposals/plan_maker.h"
#include "import/proposals/plan_table.h"
#include "platform/files/settled_path.h"

namespace Module_data_file {

namespace {

constexpr const char* usual_extension = "edi";

bool is_searched_for_all_kinds(const ImportRequest& request) {
  return request.proposals && request.extension.empty();
}

void tell_missing(const ImportRequest& request, const std::string& path) {
  const std::string extension = request.extension.empty() ? usual_extension : request.extension;
  user_interface().show_message((is_searched_for_all_kinds(request)
                                     ? "There is no field file in "
                                     : "There is no file with the extension " + extension + " in ") +
                                path);
}

// Looks into the files; those of no known kind are left out if only a search has found them.
// @param named on the command line
void look_into(FoundFiles& files, const std::set<std::string>& named) {
  std::vector<std::string> kept;
  for (const std::string& path : files.paths) {
    files.stopped = files.stopped || user_interface().stop_requested();
    if (files.stopped) {
      return;
    }
    ScannedFile file = scan_field_file(path);
    if (!named.contains(path) && !is_field_file(file)) {
      ++files.left_out;
      continue;
    }
    kept.push_back(path);
    files.scanned.push_back(std::move(file));
  }
  files.paths = std::move(kept);
}

bool is_given(const ImportRequest& request, DecodeRowIndex row) {
  return !request.choices.decode[row].specified.empty() || request.choices.decode[row].use_file_name;
}

bool says_stations(const ImportRequest& request) {
  return request.choices.stations_by != StationsBy::count || !request.choices.start_station.empty();
}

// Each option that is given wins over what was proposed, and its reason is no longer told.
void take_given(const ImportRequest& request, PlannedImport& planned) {
  const ImportChoices& given = request.choices;
  ImportChoices& choices = planned.choices;
  const auto take = [&](bool is_there, ProposedChoice choice, auto&& assign) {
    if (is_there) {
      assign();
      std::erase_if(planned.proposals, [&](const Proposal& proposal) { return proposal.choice == choice; });
    }
  };
  take(given.ReferenceType >= 0, ProposedChoice::reference,
       [&] { choices.ReferenceType = given.ReferenceType; });
  take(given.ReductionType != choices.ReductionType, ProposedChoice::reduction,
       [&] { choices.ReductionType = given.ReductionType; });
  take(is_given(request, decode_line_number), ProposedChoice::line, [&] {
    choices.decode[decode_line_number] = given.decode[decode_line_number];
    choices.folder_lines.clear();
  });
  take(is_given(request, decode_event), ProposedChoice::event,
       [&] { choices.decode[decode_event] = given.decode[decode_event]; });
  take(is_given(request, decode_sample_rate), ProposedChoice::rate, [&] {
    choices.decode[decode_sample_rate] = given.decode[decode_sample_rate];
    choices.own_rate_of_fixed_columns = false;
  });
  take(request.turn_ey_given, ProposedChoice::turn_ey, [&] { choices.turn_ey = given.turn_ey; });
  take(given.compute_from_impedance, ProposedChoice::from_impedance,
       [&] { choices.compute_from_impedance = true; });
  choices.convert_coordinates = choices.convert_coordinates || given.convert_coordinates;
}

// Where no file can be read there is no rate to propose, and its lack would hide why. Nothing is stored with
// this one: the import goes over the files and says of each what is wrong.
void take_rate_of_nothing(const FoundFiles& files, PlannedImport& planned) {
  DecodeRow& rate = planned.choices.decode[decode_sample_rate];
  const bool is_missing = !rate.use_file_name && rate.specified.empty();
  const auto fails = [](const ScannedFile& file) { return !file.failure.empty(); };
  if (is_missing && !files.scanned.empty() && std::ranges::all_of(files.scanned, fails)) {
    rate.specified = "1";
  }
}

void take_stations(const ImportRequest& request, const FoundFiles& files, PlanMaker& maker,
                   PlannedImport& planned) {
  ImportChoices& choices = planned.choices;
  std::erase_if(planned.proposals,
                [](const Proposal& proposal) { return proposal.choice == ProposedChoice::stations; });
  if (!says_stations(request)) {
    planned.proposals.push_back(propose_stations(files.scanned, choices, maker));
  } else {
    choices.stations_by = request.choices.stations_by;
    choices.start_station = request.choices.start_station;
  }
  choices.station_step = request.choices.station_step;
}

// Stations and places that can't be what the files mean.
bool is_told(const PlannedSection& row) {
  return std::ranges::any_of(row.problems, [&](PlanProblem problem) {
    const bool are_own = problem == PlanProblem::shared_station && row.own_stations > 0;
    return are_own || problem == PlanProblem::no_station || problem == PlanProblem::two_places ||
           problem == PlanProblem::far_off_line;
  });
}

}  // namespace

FoundFiles find_files(const ImportRequest& request) {
  const bool all_kinds = is_searched_for_all_kinds(request);
  const std::string extension =
      all_kinds ? "" : (request.extension.empty() ? usual_extension : request.extension);
  FoundFiles files;
  ImportFileList list;  // a folder and one below it give a file once
  std::set<std::string> named;
  std::vector<std::pair<std::string, std::set<std::string>>> folders;
  for (const std::string& given : request.paths) {
    const std::string path = settled_path(given).string();
    if (!std::filesystem::is_directory(given)) {
      list.add({path});
      named.insert(path);
      continue;
    }
    const std::vector<std::string> found = find_import_files(path, extension);
    list.add(found);
    folders.emplace_back(given, std::set<std::string>(found.begin(), found.end()));
  }
  files.paths = list.paths();
  if (request.proposals || request.looks) {
    if (!all_kinds) {
      named.insert(files.paths.begin(), files.paths.end());
    }
    look_into(files, named);
  }
  if (files.stopped) {
    return files;
  }
  for (const auto& folder : folders) {
    const std::set<std::string>& found = folder.second;
    if (std::ranges::none_of(files.paths, [&](const std::string& path) { return found.contains(path); })) {
      tell_missing(request, folder.first);
      files.complete = false;
    }
  }
  return files;
}

PlannedImport plan_import(const ImportRequest& request, const FoundFiles& files) {
  PlanMaker maker;
  PlannedImport planned{request.choices, {}, {}};
  if (request.proposals) {
    Proposals proposals = propose(files.scanned, maker, request.choices.line_direction);
    planned.choices = std::move(proposals.choices);
    planned.proposals = std::move(proposals.reasons);
    take_given(request, planned);
    take_rate_of_nothing(files, planned);
    take_stations(request, files, maker, planned);
  }
  planned.plan = maker.plan(files.scanned, planned.choices);
  return planned;
}

std::string plan_problems_text(const ImportPlan& plan) {
  std::string text;
  for (const std::size_t index : plan.display_order()) {
    const PlannedSection& row = plan.sections[index];
    if (is_told(row)) {
      text += "\n" + row.file + ", station " + plain_text(row.station) + ": " +
              plan_cell_text(row, PlanColumn::remarks);
    }
  }
  return text.empty() ? text : "Stations and places to look at:" + text;
}

}  // namespace Module_data_file
