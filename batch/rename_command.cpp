// brenlox_batch rename: another name for a line, another number for a station.
#include <iostream>
#include <memory>
#include <optional>

#include "batch/command.h"
#include "core/number_text.h"
#include "core/user_interface.h"
#include "survey_edits/rename.h"
#include "survey_edits/survey_contents.h"

namespace Batch {
namespace {

using namespace Module_survey_edits;

struct RenameOptions {
  std::string survey;
  std::string line;
  std::optional<double> station;
  std::string to;
};

int refuse(const std::string& fault) {
  user_interface().show_message(fault);
  return -1;
}

int rename_line_of(const RenameOptions& options) {
  const NewLine name = new_line_name(options.line, options.to);
  if (!name.fault.empty()) {
    return refuse(name.fault);
  }
  if (rename_line(options.line, name.line) != 0) {
    return -1;
  }
  std::cout << "Line " << options.line << " is " << name.line << " now\n";
  return 0;
}

int rename_station_of(const RenameOptions& options) {
  const NewStation number = new_station_number(options.line, *options.station, options.to);
  if (!number.fault.empty()) {
    return refuse(number.fault);
  }
  if (rename_station(options.line, *options.station, number.station) != 0) {
    return -1;
  }
  std::cout << "Station " << plain_text(*options.station) << " of line " << options.line << " is "
            << plain_text(number.station) << " now\n";
  return 0;
}

int rename(const RenameOptions& options) {
  const SurveyContents contents = survey_contents();
  if (lines_named(contents, options.line).empty()) {
    return refuse("The survey has no line " + options.line);
  }
  if (!options.station) {
    return rename_line_of(options);
  }
  if (stations_named(contents, options.line, *options.station).empty()) {
    return refuse("The survey has no station " + plain_text(*options.station) + " on line " + options.line);
  }
  return rename_station_of(options);
}

}  // namespace

Command add_rename_command(Program& program) {
  const auto options = std::make_shared<RenameOptions>();
  Parser parser = program.add_command("rename", "Gives a line another name, or a station another number");
  add_survey_argument(parser, options->survey);
  parser.add_option("--line", options->line, "the line").required();
  parser.add_option("--station", options->station, "a station of it; without, the line is renamed");
  parser.add_option("--to", options->to, "the new name or number").required();
  return {parser, [options] {
            return with_open_survey(options->survey, options->line, [&] { return rename(*options); });
          }};
}

}  // namespace Batch
