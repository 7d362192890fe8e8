#include "batch/import_proposals.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <set>
#include <utility>

#include "batch/command.h"
#include "core/number_text.h"
#include "core/user_interface.h"
#include "import/field_files.h"
#include "import/import_files.h"
#include "import/import_run.h"
#include "import/proposals/plan_json.h"
#include "import/proposals/plan_maker.h"
#include "import/proposals/plan_table.h"
#include "import/proposals/scanned_file.h"

namespace Batch {

using namespace Module_data_file;

namespace {

constexpr const char* usual_extension = "edi";

bool is_searched_for_all_kinds(const ImportOptions& options) {
  return options.proposals && options.extension.empty();
}

void tell_missing(const ImportOptions& options, const std::string& path) {
  const std::string extension = options.extension.empty() ? usual_extension : options.extension;
  user_interface().show_message((is_searched_for_all_kinds(options)
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

bool is_given(const ImportOptions& options, DecodeRowIndex row) {
  return !options.choices.decode[row].specified.empty() || options.choices.decode[row].use_file_name;
}

bool has_station_options(const ImportOptions& options) {
  return options.by_sectid || options.by_distance || !options.choices.start_station.empty();
}

// Each option that is given wins over what was proposed, and its reason is no longer told.
void take_given(const ImportOptions& options, PlannedImport& planned) {
  const ImportChoices& given = options.choices;
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
  take(is_given(options, decode_line_number), ProposedChoice::line, [&] {
    choices.decode[decode_line_number] = given.decode[decode_line_number];
    choices.folder_lines.clear();
  });
  take(is_given(options, decode_event), ProposedChoice::event,
       [&] { choices.decode[decode_event] = given.decode[decode_event]; });
  take(is_given(options, decode_sample_rate), ProposedChoice::rate, [&] {
    choices.decode[decode_sample_rate] = given.decode[decode_sample_rate];
    choices.own_rate_of_fixed_columns = false;
  });
  take(!options.turn_ey.empty(), ProposedChoice::turn_ey, [&] { choices.turn_ey = given.turn_ey; });
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

void take_stations(const ImportOptions& options, const FoundFiles& files, PlanMaker& maker,
                   PlannedImport& planned) {
  ImportChoices& choices = planned.choices;
  std::erase_if(planned.proposals,
                [](const Proposal& proposal) { return proposal.choice == ProposedChoice::stations; });
  if (!has_station_options(options)) {
    planned.proposals.push_back(propose_stations(files.scanned, choices, maker));
  } else {
    choices.stations_by = options.choices.stations_by;
    choices.start_station = options.choices.start_station;
  }
  choices.station_step = options.choices.station_step;
}

}  // namespace

FoundFiles find_files(const ImportOptions& options) {
  const bool all_kinds = is_searched_for_all_kinds(options);
  const std::string extension =
      all_kinds ? "" : (options.extension.empty() ? usual_extension : options.extension);
  FoundFiles files;
  ImportFileList list;  // a folder and one below it give a file once
  std::set<std::string> named;
  std::vector<std::pair<std::string, std::set<std::string>>> folders;
  for (const std::string& given : options.paths) {
    const std::string path = path_from_here(given);
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
  if (options.proposals || options.dry_run) {
    if (!all_kinds) {
      named.insert(files.paths.begin(), files.paths.end());
    }
    look_into(files, named);
  }
  if (files.stopped) {
    return files;
  }
  for (const auto& [folder, found] : folders) {
    if (std::ranges::none_of(files.paths, [&](const std::string& path) { return found.contains(path); })) {
      tell_missing(options, folder);
      files.complete = false;
    }
  }
  return files;
}

PlannedImport plan_import(const ImportOptions& options, const FoundFiles& files) {
  PlanMaker maker;
  PlannedImport planned{options.choices, {}, {}};
  if (options.proposals) {
    Proposals proposals = propose(files.scanned, maker, options.choices.line_direction);
    planned.choices = std::move(proposals.choices);
    planned.proposals = std::move(proposals.reasons);
    take_given(options, planned);
    take_rate_of_nothing(files, planned);
    take_stations(options, files, maker, planned);
  }
  planned.plan = maker.plan(files.scanned, planned.choices);
  return planned;
}

void print_proposals(const PlannedImport& planned, const FoundFiles& files) {
  for (const Proposal& proposal : planned.proposals) {
    std::cout << proposed_title(proposal.choice) << ": " << proposal.value << " (" << proposal.why << ")\n";
  }
  if (files.left_out > 0) {
    std::cout << "Left out, no field files: " << files.left_out << '\n';
  }
}

void print_plan_problems(const PlannedImport& planned) {
  std::string text;
  for (const std::size_t index : planned.plan.display_order()) {
    const PlannedSection& row = planned.plan.sections[index];
    const bool is_told = std::ranges::any_of(row.problems, [&](PlanProblem problem) {
      const bool are_own = problem == PlanProblem::shared_station && row.own_stations > 0;
      return are_own || problem == PlanProblem::no_station || problem == PlanProblem::two_places ||
             problem == PlanProblem::far_off_line;
    });
    if (is_told) {
      text += "\n" + row.file + ", station " + plain_text(row.station) + ": " +
              plan_cell_text(row, PlanColumn::remarks);
    }
  }
  if (!text.empty()) {
    user_interface().show_message("Stations and places to look at:" + text);
  }
}

int print_plan(const ImportOptions& options, const FoundFiles& files) {
  const PlannedImport planned = plan_import(options, files);
  if (!planned.plan.fault.empty()) {
    user_interface().show_message(planned.plan.fault);
    return -1;
  }
  if (options.json) {
    std::cout << plan_as_json(planned.plan, planned.proposals, files.left_out);
    return 0;
  }
  print_proposals(planned, files);
  std::cout << (planned.proposals.empty() ? "" : "\n") << plan_as_text(planned.plan) << '\n'
            << planned.plan.summary() << "; nothing is stored\n";
  return 0;
}

}  // namespace Batch
