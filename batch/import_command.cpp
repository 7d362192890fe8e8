// brenlox_batch import: field files into a survey, with averages and merged curves of what they touched.
#include <algorithm>
#include <array>
#include <filesystem>
#include <iostream>
#include <memory>
#include <vector>

#include "batch/command.h"
#include "batch/import_options.h"
#include "batch/import_proposals.h"
#include "batch/reading_option.h"
#include "core/number_text.h"
#include "core/trap_errors.h"
#include "database/survey_moment.h"
#include "formats/zonge/zonge_stn_file.h"
#include "import/import_run.h"
#include "import/quiet_interface.h"
#include "import/report_groups.h"
#include "import/report_texts.h"
#include "platform/files/files_in_use.h"
#include "platform/files/private_folder.h"
#include "platform/files/safe_files.h"

namespace Batch {
namespace {

using formats::FileReport;
using Module_data_file::DecodeRow;
using Module_data_file::ImportChoices;
using Module_data_file::ImportMode;
using Module_data_file::ImportReport;
using Module_data_file::QuietInterface;
using Module_data_file::ReportGroup;
using Module_data_file::StationsBy;
using Module_data_file::TurnEy;

constexpr const char* report_failed = "An error occurred while writing the import report: ";

int write_report(const ImportReport& report, const std::string& path) {
  const int status =
      trap_errors(report_failed, [&] { safe_files::write_into_place(path, report.to_json()); });
  if (status == 0) {
    std::cout << "The report is written to " << path << '\n';
  }
  return status;
}

void print_stations(const ImportReport& report) {
  for (const Module_data_file::ScannedStation& found : report.stations) {
    std::cout << found.LineNumber << ' ' << plain_text(found.Station) << ", scan rate "
              << plain_text(found.SampleRate) << " Hz, dipole " << plain_text(found.DipoleLength) << " m\n";
  }
}

/// What was read otherwise than it stands or left unused, a line for each kind; the report has it by file.
void print_remarks(const std::vector<ReportGroup>& groups) {
  constexpr std::size_t most_kinds = 20;
  const std::vector<std::string> kinds = Module_data_file::remark_texts(groups);
  for (std::size_t kind = 0; kind < std::min(kinds.size(), most_kinds); ++kind) {
    std::cout << kinds[kind] << '\n';
  }
  if (kinds.size() > most_kinds) {
    std::cout << "and " << kinds.size() - most_kinds << " more kinds of remarks\n";
  }
}

/// What readers report about the blocks of their files, a list for each file.
void print_accounts(const ImportReport& report) {
  for (const FileReport& file : report.files) {
    std::string text = file.file + ":";
    for (const std::string& line : file.account) {
      text += "\n" + line;
    }
    if (file.account_dropped > 0) {
      text += "\nand " + plain_text(file.account_dropped) + " more lines";
    }
    if (!file.account.empty()) {
      user_interface().show_message(text);
    }
  }
}

void print_summary(const ImportReport& report, ImportMode mode) {
  std::cout << Module_data_file::counts_text(report, mode) << '\n';
  if (report.stopped) {
    user_interface().show_message(Module_data_file::import_stopped);
  }
}

/// What a report must not be written over.
std::vector<std::filesystem::path> files_read(const ImportOptions& options,
                                              const std::vector<std::string>& files) {
  std::vector<std::filesystem::path> read(files.begin(), files.end());
  for (const std::string& file : files) {
    if (const auto stations = formats::zonge::find_stn_file(file)) {
      read.emplace_back(*stations);
    }
  }
  read.emplace_back(options.survey);
  return read;
}

int import_files(const ImportOptions& options, const FoundFiles& files) {
  PlannedImport planned{options.request.choices, {}, {}};
  if (options.request.proposals) {
    planned = plan_import(options.request, files);
    print_proposals(planned, files);
    print_plan_problems(planned);
  }
  ImportReport report;
  const ImportMode mode = options.scan ? ImportMode::scan : ImportMode::import;
  const int result = Module_data_file::run_import(planned.choices, files.paths, mode, report, {},
                                                  Module_data_file::SharedStations::tell,
                                                  options.request.proposals ? &planned.plan : nullptr);
  if (options.scan) {
    print_stations(report);
  }
  print_accounts(report);
  const std::vector<ReportGroup> groups =
      Module_data_file::report_groups(report, Module_data_file::OptionNames::batch);
  for (const std::string& problem : Module_data_file::problem_texts(groups, report)) {
    user_interface().show_message(problem);
  }
  print_summary(report, mode);
  print_remarks(groups);
  if (!options.report.empty() && write_report(report, options.report) != 0) {
    return -1;
  }
  return result == 0 && !report.stopped && report.groups_skipped == 0 && !report.has_failures() ? 0 : -1;
}

/// "START,WIDTH" into a decode row; the numbers themselves are checked with the other choices.
bool read_columns(const std::string& text, DecodeRow& row) {
  const std::size_t comma = text.find(',');
  const std::string start = text.substr(0, comma);
  const std::string width = comma == std::string::npos ? "" : text.substr(comma + 1);
  constexpr double largest_column = 1e6;
  if (!is_numeric(start) || !is_numeric(width) || numeric_value(start) > largest_column ||
      numeric_value(width) > largest_column) {
    user_interface().show_message("'" + text + "' is not START,WIDTH");
    return false;
  }
  row.use_file_name = true;
  row.start_column = static_cast<std::int32_t>(std::max(0.0, numeric_value(start)));
  row.width = static_cast<std::int32_t>(std::max(0.0, numeric_value(width)));
  return true;
}

/// Brings the options into the choices. @return false after a message on what doesn't fit
bool take_options(ImportOptions& options) {
  ImportChoices& choices = options.request.choices;
  for (std::size_t row = 0; row < options.columns.size(); ++row) {
    if (!options.columns[row].empty() && !read_columns(options.columns[row], choices.decode[row])) {
      return false;
    }
  }
  choices.line_direction = options.line_direction == "EN" ? Module_data_file::LineDirection::local_east
                                                          : Module_data_file::LineDirection::local_north;
  choices.turn_ey = options.turn_ey == "always"   ? TurnEy::always
                    : options.turn_ey == "needed" ? TurnEy::where_needed
                                                  : TurnEy::never;
  options.request.turn_ey_given = !options.turn_ey.empty();
  options.request.looks = options.dry_run;
  if (options.by_distance) {
    choices.stations_by = StationsBy::distance;
  } else if (options.by_sectid) {
    choices.stations_by = options.by_digits ? StationsBy::sectid_digits : StationsBy::sectid;
  }
  if (options.json && !options.dry_run) {
    user_interface().show_message("--json needs --dry-run");
    return false;
  }
  if (options.dry_run && options.scan) {
    user_interface().show_message("--dry-run and --scan exclude each other");
    return false;
  }
  if (options.dry_run && !options.report.empty()) {
    user_interface().show_message(
        "--dry-run and --report exclude each other: nothing is done with the files");
    return false;
  }
  return true;
}

/// What has to be given where nothing is proposed.
bool has_required(const ImportOptions& options) {
  if (options.request.choices.ReferenceType < 0) {
    user_interface().show_message("--reference is required without --auto");
    return false;
  }
  constexpr std::array<const char*, 3> names{"line", "event", "rate"};
  for (std::size_t row = 0; row < names.size(); ++row) {
    const DecodeRow& decode = options.request.choices.decode[row];
    if (!decode.use_file_name && decode.specified.empty()) {
      user_interface().show_message("--" + std::string(names[row]) + " or --" + names[row] +
                                    "-columns is required without --auto");
      return false;
    }
  }
  return true;
}

/// Whether the choices can be imported, before anything is opened; those that are proposed pass.
bool has_sound_choices(const ImportOptions& options) {
  ImportChoices choices = options.request.choices;
  if (options.request.proposals) {
    choices.ReferenceType = std::max(choices.ReferenceType, 0);
    for (DecodeRow& row : choices.decode) {
      row.specified = row.specified.empty() ? "1" : row.specified;
    }
  } else if (!has_required(options)) {
    return false;
  }
  ImportReport nothing;
  return Module_data_file::run_import(choices, {}, ImportMode::scan, nothing) == 0;
}

/// Works on a copy of the survey, which stays as it is.
int run_dry(const ImportOptions& options, const FoundFiles& files) {
  std::error_code unreadable;
  if (!std::filesystem::exists(options.survey, unreadable)) {
    user_interface().show_message("The specified file does not exist");
    return status_failed;
  }
  int status = status_failed;
  (void)trap_errors("An error occurred while copying the survey: ", [&] {
    const PrivateFolder folder;
    const std::string copy = (folder.path() / "survey.mdb").string();
    Module_database::copy_with_log(options.survey, copy, {});
    auto quiet = std::make_unique<QuietInterface>();  // what opening does to the copy is done to nothing else
    status = with_open_survey(copy, [&] {
      quiet.reset();
      return print_plan(options, files);
    });
    if (quiet) {  // it couldn't be opened: say why
      quiet.reset();
      status = with_open_survey(copy, [] { return -1; });
    }
  });
  return status;
}

int run_import_command(ImportOptions& options) {
  if (!take_options(options) || !has_sound_choices(options)) {
    return status_wrong_usage;
  }
  if (!options.report.empty()) {
    options.report = path_from_here(options.report);
  }
  const FoundFiles files = find_files(options.request);
  if (files.stopped) {
    user_interface().show_message("Stopped; nothing is stored");
    return status_failed;
  }
  const safe_files::FilesInUse inputs(files_read(options, files.paths));
  if (files.paths.empty() ||
      trap_errors(report_failed, [&] { safe_files::refuse_input(options.report); }) != 0) {
    return status_failed;
  }
  const int status = options.dry_run
                         ? run_dry(options, files)
                         : with_open_survey(options.survey, [&] { return import_files(options, files); });
  return files.complete ? status : status_failed;
}

void add_decode_row(Parser& parser, const std::string& name, const std::string& what, std::string& specified,
                    std::string& columns) {
  Parser group = parser.add_alternatives(what, what + ", typed or cut from the file names");
  group.add_option("--" + name, specified, what);
  group.add_option("--" + name + "-columns", columns,
                   "START,WIDTH: where the file names hold it, columns counted from 1");
}

}  // namespace

Command add_import_command(Program& program) {
  const auto options = std::make_shared<ImportOptions>();
  ImportChoices& choices = options->request.choices;
  choices.ReductionType = 0;
  Parser parser =
      program.add_command("import", "Imports field files and brings averages and merged curves up to date");
  add_survey_argument(parser, options->survey);
  parser.add_option("PATH", options->request.paths, "field files, and folders to search for them").required();
  parser.add_flag(
      "--auto", options->request.proposals,
      "look into the files and choose what isn't given: reference, line, event, rate, stations and "
      "what the data need; folders are searched for field files of all kinds");
  parser.add_flag("--dry-run", options->dry_run,
                  "print what would be stored, a row for each section; nothing is");
  parser.add_flag("--json", options->json, "with --dry-run: as JSON");
  parser.add_option("--reference", choices.ReferenceType, reference_types_help)
      .in_range(0, last_reference_type);
  parser
      .add_option("--reduction", choices.ReductionType,
                  "what the files hold: 0 raw, 1 averaged, 2 merged data")
      .in_range(0, 2)
      .shows_default();
  add_decode_row(parser, "line", "Line", choices.decode[0].specified, options->columns[0]);
  add_decode_row(parser, "event", "Event", choices.decode[1].specified, options->columns[1]);
  add_decode_row(parser, "rate", "Scan rate in Hz", choices.decode[2].specified, options->columns[2]);
  parser
      .add_option("--line-direction", options->line_direction,
                  "EN: line is local E, station is local N (default); NE: the other way round")
      .one_of({"EN", "NE"});
  parser.add_option("--start-station", choices.start_station, "station of the first section");
  parser.add_option("--station-step", choices.station_step, "from one section to the next, m")
      .shows_default();
  parser.add_flag("--sectid-as-station", options->by_sectid,
                  "the number in SECTID, or another name of the site, is the station");
  parser.add_flag("--sectid-digits", options->by_digits,
                  "with --sectid-as-station: the last digits in the name, also behind letters");
  parser.add_flag("--distance-as-station", options->by_distance,
                  "the station is the distance along the line in m, by latitude and longitude");
  parser.add_flag("--from-impedance", choices.compute_from_impedance,
                  "compute resistivity and phase where a file has impedances only");
  parser
      .add_flag(
          "--turn-ey", options->turn_ey, "needed",
          "turn the sign of Ey, 180 degrees on the phases of EyHx and EyHy, in each section whose YX "
          "phases lie mostly in -180..-90; --turn-ey=always: in every section; =never: in none, also with "
          "--auto")
      .one_of({"needed", "always", "never"});
  parser.add_flag("--convert-geographic", choices.convert_coordinates,
                  "stations get the files' latitude and longitude in the survey's projection as map place");
  parser.add_option("--extension", options->request.extension,
                    "extension of the files in folders: edi, with --auto any field file, unless it is given");
  parser.add_option("--report", options->report, "write what was done with each file as JSON");
  parser.add_flag("--scan", options->scan, "only list the stations; nothing is stored");
  return {parser, [options] { return run_import_command(*options); }};
}

}  // namespace Batch
