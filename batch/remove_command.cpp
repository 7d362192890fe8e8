// brenlox_batch remove: takes files, stations and lines out of a survey.
#include <iostream>
#include <memory>
#include <vector>

#include "batch/command.h"
#include "core/number_text.h"
#include "core/text_fields.h"
#include "core/user_interface.h"
#include "survey_edits/remove_readings.h"

namespace Batch {
namespace {

using namespace Module_survey_edits;
using Module_averaged_data::Outcome;

struct RemoveOptions {
  std::string survey;
  std::vector<std::string> files;
  std::vector<std::string> stations;  // "LINE,STATION"
  std::vector<std::string> lines;
  bool ghosts = false;
  bool dry_run = false;
};

/// @return false after a message if the survey has none of these
bool found(const std::vector<std::size_t>& indices, const std::string& what) {
  if (indices.empty()) {
    user_interface().show_message("The survey has no " + what);
  }
  return !indices.empty();
}

bool add_file(const SurveyContents& contents, const std::string& name, Choice& choice) {
  const auto files = files_named(contents, name);
  choice.files.insert(files.begin(), files.end());
  return found(files, "file " + name);
}

bool add_station(const SurveyContents& contents, const std::string& text, Choice& choice) {
  const std::size_t comma = text.rfind(',');
  const std::string station = comma == std::string::npos ? "" : text.substr(comma + 1);
  if (!is_numeric(station)) {
    user_interface().show_message("'" + text + "' is not LINE,STATION");
    return false;
  }
  const std::string line(trimmed(text.substr(0, comma)));
  const auto stations = stations_named(contents, line, numeric_value(station));
  choice.stations.insert(stations.begin(), stations.end());
  return found(stations, "station " + station + " on line " + line);
}

bool add_line(const SurveyContents& contents, const std::string& name, Choice& choice) {
  const auto lines = lines_named(contents, name);
  for (const std::size_t line : lines) {
    choice.add_line(contents, line);
  }
  return found(lines, "line " + name);
}

/// @return false after a message for each name that the survey doesn't have
bool choose(const RemoveOptions& options, const SurveyContents& contents, Choice& choice) {
  bool all = true;
  for (const std::string& name : options.files) {
    all = add_file(contents, name, choice) && all;
  }
  for (const std::string& text : options.stations) {
    all = add_station(contents, text, choice) && all;
  }
  for (const std::string& name : options.lines) {
    all = add_line(contents, name, choice) && all;
  }
  if (options.ghosts) {
    choice.add_ghosts(contents);
  }
  return all;
}

void list_what_goes(const SurveyContents& contents, const RemovalPlan& plan) {
  const auto list = [](const std::string& what, const std::vector<std::size_t>& indices, const auto& name) {
    for (const std::size_t index : indices) {
      std::cout << what << name(index) << '\n';
    }
  };
  const auto file = [&](std::size_t index) { return contents.files[index].name; };
  list("file ", plan.files_gone, file);
  list("part of file ", plan.files_cut, file);
  list("", plan.stations_gone, [&](std::size_t index) { return name_of(contents.stations[index]); });
}

int remove_chosen(const RemoveOptions& options) {
  const SurveyContents contents = survey_contents();
  Choice choice;
  if (!choose(options, contents, choice)) {
    return -1;
  }
  const RemovalPlan plan = plan_removal(contents, choice);
  if (options.dry_run) {
    list_what_goes(contents, plan);
    std::cout << "Would remove " << what_goes(plan) << "; " << counted(plan.averages.size(), "average")
              << " would be computed again\n";
    return 0;
  }
  const Outcome outcome = plan.empty() ? Outcome::finished : remove_readings(contents, plan);
  if (outcome == Outcome::stopped) {
    user_interface().show_message("Stopped; nothing was removed");
  }
  if (outcome != Outcome::finished) {
    return -1;
  }
  std::cout << "Removed " << what_goes(plan) << "; " << counted(plan.averages.size(), "average")
            << " computed again\n";
  return 0;
}

int run_remove(const RemoveOptions& options) {
  if (options.files.empty() && options.stations.empty() && options.lines.empty() && !options.ghosts) {
    user_interface().show_message("Give what is to be removed: --file, --station, --line or --ghosts");
    return status_wrong_usage;
  }
  return with_open_survey(options.survey, [&] { return remove_chosen(options); });
}

}  // namespace

Command add_remove_command(Program& program) {
  const auto options = std::make_shared<RemoveOptions>();
  Parser parser = program.add_command(
      "remove", "Takes files, stations and lines out of a survey and computes its curves again");
  add_survey_argument(parser, options->survey);
  parser.add_option("--file", options->files, "files by their names in the survey; may be repeated");
  parser.add_option("--station", options->stations, "LINE,STATION; may be repeated");
  parser.add_option("--line", options->lines, "lines with all of their stations; may be repeated");
  parser.add_flag("--ghosts", options->ghosts, "stations that have no readings");
  parser.add_flag("--dry-run", options->dry_run, "only list what would go");
  return {parser, [options] { return run_remove(*options); }};
}

}  // namespace Batch
