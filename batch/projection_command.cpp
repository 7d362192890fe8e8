// brenlox_batch projection: the map projection of a survey.
#include <iomanip>
#include <iostream>
#include <memory>
#include <string>
#include <utility>

#include "batch/command.h"
#include "core/number_text.h"
#include "core/user_interface.h"
#include "projections/definition_list.h"
#include "projections/projection_choice.h"
#include "projections/projection_file.h"
#include "projections/survey_projection.h"

namespace Batch {
namespace {

using Module_projections::CoordSystem;
using Module_projections::CoordSystems;

struct ProjectionOptions {
  std::string survey;
  std::string name;
  std::string csv;
};

std::string datum_words(const CoordSystem& definition) {
  const auto datum = numerics::geodesy::find_datum(definition.datum);
  std::string words = plain_text(definition.datum) + ' ' + (datum ? datum->name : "unknown");
  if (numerics::geodesy::datum_is_replaced(definition)) {
    const auto substitute =
        numerics::geodesy::find_datum(numerics::geodesy::substitute_datum(definition.projection));
    words += ", computed on " + (substitute ? substitute->ellipsoid : "another ellipsoid");
  }
  return words;
}

void print_projection(const CoordSystem& definition) {
  const std::pair<const char*, std::string> rows[] = {
      {"Name", definition.name},
      {"Projection",
       plain_text(definition.projection) + ' ' + numerics::geodesy::projection_name(definition.projection)},
      {"Datum", datum_words(definition)},
      {"Hemisphere",
       plain_text(definition.hemisphere) + ' ' + numerics::geodesy::hemisphere_name(definition.hemisphere)},
      {"Origin longitude", criterion_text(definition.origin_longitude)},
      {"Origin latitude", criterion_text(definition.origin_latitude)},
      {"Standard parallel 1", criterion_text(definition.standard_parallel_1)},
      {"Standard parallel 2", criterion_text(definition.standard_parallel_2)},
      {"False easting (m)", criterion_text(definition.false_easting)},
      {"False northing (m)", criterion_text(definition.false_northing)},
      {"Scale factor", criterion_text(definition.scale_factor)},
      {"Zone width", criterion_text(definition.zone_width)},
      {"Zone number", plain_text(definition.zone_number)}};
  constexpr int title_width = 21;
  for (const auto& [title, text] : rows) {
    std::cout << std::left << std::setw(title_width) << title << text << '\n';
  }
}

int show_projection() {
  if (Module_projections::read_survey_projection() != 0) {
    std::cout << "The survey has no projection\n";
    return 0;
  }
  print_projection(Module_projections::current_coord_system());
  return 0;
}

/// Finds the definition of that name in the file. False after a message that lists the names in it.
bool pick_definition(ProjectionOptions& options, CoordSystems& list, CoordSystem& picked) {
  if (Module_projections::read_coord_projection_file(options.csv, list) != 0) {
    return false;
  }
  const int index = Module_projections::find_definition(list, options.name);
  if (index > 0) {
    picked = list[static_cast<std::size_t>(index) - 1];
    return true;
  }
  std::string text = options.csv + " has no projection " + options.name;
  for (const CoordSystem& definition : list) {
    text +=
        (&definition == &list.front() ? "; it has: " : ", ") + Module_projections::name_part(definition.name);
  }
  user_interface().show_message(text);
  return false;
}

int run_projection(ProjectionOptions& options) {
  if (options.name.empty()) {
    return with_open_survey(options.survey, show_projection);
  }
  options.csv = path_from_here(options.csv);
  CoordSystems list;
  CoordSystem picked;
  if (!pick_definition(options, list, picked)) {
    return status_failed;
  }
  return with_open_survey(options.survey, [&] {
    return Module_projections::use_projection(list, picked) == 0 ? show_projection() : -1;
  });
}

}  // namespace

Command add_projection_command(Program& program) {
  const auto options = std::make_shared<ProjectionOptions>();
  Parser parser = program.add_command("projection", "Shows or sets the map projection of a survey");
  add_survey_argument(parser, options->survey);
  Option name = parser.add_option("--set", options->name, "name of the projection to set, from the file");
  Option csv = parser.add_option("--csv", options->csv, "file with definitions of projections");
  name.needs(csv);
  csv.needs(name);
  return {parser, [options] { return run_projection(*options); }};
}

}  // namespace Batch
