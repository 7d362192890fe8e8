// brenlox_batch invert: one-dimensional Rho+ inversion of every station of a line.
#include <iostream>
#include <memory>

#include <nlohmann/json.hpp>

#include "batch/command.h"
#include "batch/reading_option.h"
#include "batch/rhoplus_option.h"
#include "core/number_text.h"
#include "core/user_interface.h"
#include "database/frequency_store.h"
#include "platform/files/safe_files.h"
#include "reduction/each_item.h"
#include "rhoplus/station_inversion.h"

namespace Batch {
namespace {

using Module_averaged_data::Outcome;
using Module_rhoplus::StationInversion;
using Json = nlohmann::ordered_json;

struct InvertOptions {
  std::string survey;
  Module_database::LineSelection reading;
  Module_output::RhoplusSettings settings;
  std::string json_path;  // empty: a table on the standard output
};

/// Why a station has no results.
std::string reason_of(const numerics::rhoplus::RhoplusRun& run) {
  return run.message.empty() ? Module_rhoplus::nothing_inverted : run.message;
}

Json model_json(const std::vector<numerics::rhoplus::RhoplusLayer>& model) {
  Json layers = Json::array();
  for (const numerics::rhoplus::RhoplusLayer& layer : model) {
    const bool basement = layer.conductance >= numerics::rhoplus::perfect_conductor;
    layers.push_back({{"depth", decimal_of_single(layer.depth)},
                      {"conductance", basement ? Json() : Json(decimal_of_single(layer.conductance))}});
  }
  return layers;
}

/// Conductances in S at depths in m; null is a perfect conductor. "unsupported" is there for a station whose
/// curve rests on readings that are switched off.
Json station_json(double station, const StationInversion& inversion) {
  Json json{{"station", station}, {"status", inversion.run.status}};
  if (!inversion.unsupported.empty()) {
    json["unsupported"] = inversion.unsupported;
  }
  if (inversion.run.status == numerics::rhoplus::rhoplus_ran) {
    json["used_values"] = inversion.run.used_values;
    json["target_chi"] = decimal_of_single(inversion.run.target_chi);
    json["achieved_chi"] = decimal_of_single(inversion.run.achieved_chi);
    json["optimality_gap"] = inversion.run.optimality_gap;
    json["limit_met"] = inversion.run.limit_met;
    json["model"] = model_json(inversion.run.model);
  } else {
    json["message"] = reason_of(inversion.run);
  }
  return json;
}

void print_station(double station, const StationInversion& inversion) {
  std::cout << "Station " << plain_text(station) << ": ";
  if (inversion.run.status != numerics::rhoplus::rhoplus_ran) {
    std::cout << reason_of(inversion.run) << '\n';
    return;
  }
  std::cout << inversion.run.used_values << " values, chi "
            << format_number(inversion.run.achieved_chi, "0.00") << ", target "
            << format_number(inversion.run.target_chi, "0.00")
            << (inversion.run.limit_met ? ", limit of iterations met\n" : "\n");
  if (!inversion.unsupported.empty()) {
    std::cout << "  " << inversion.unsupported << '\n';
  }
  for (const numerics::rhoplus::RhoplusLayer& layer : inversion.run.model) {
    const bool basement = layer.conductance >= numerics::rhoplus::perfect_conductor;
    std::cout << "  " << format_number(layer.depth, "0.0") << " m  "
              << (basement ? "perfect conductor" : plain_text(layer.conductance) + " S") << '\n';
  }
}

/// Inverts each station; `results` gets one entry a station. @return 0, or -1 after a message
int invert_stations(const InvertOptions& options, const std::vector<double>& stations,
                    const Frequencies& frequencies, Json& results) {
  Module_averaged_data::WorkProgress progress("Inverting", stations.size());
  const Outcome outcome = Module_averaged_data::each_item(progress, [&](std::size_t index) {
    StationInversion inversion;
    if (Module_rhoplus::invert_station_in_memory(options.reading.at(stations[index]), frequencies,
                                                 options.settings, inversion) != 0) {
      return -1;
    }
    results.push_back(station_json(stations[index], inversion));
    if (options.json_path.empty()) {
      print_station(stations[index], inversion);
    }
    return 0;
  });
  if (outcome == Outcome::stopped) {
    user_interface().show_message("Stopped; the stations so far are complete");
  }
  return outcome == Outcome::finished ? 0 : -1;
}

int invert_line(const InvertOptions& options) {
  const std::vector<double> stations = Module_output::rhoplus_stations(options.reading);
  if (stations.empty()) {
    user_interface().show_message("There is no data for the specified line and data type");
    return -1;
  }
  const auto frequencies = Module_database::load_reference_frequencies(options.reading.reference_type);
  if (!frequencies) {
    return -1;
  }
  Json results = Json::array();
  const int status = invert_stations(options, stations, *frequencies, results);
  if (options.json_path == "-") {
    std::cout << results.dump(2) << '\n';
  } else if (!options.json_path.empty()) {
    safe_files::write_into_place(options.json_path, results.dump(2) + '\n');
    user_interface().show_message("The results are written to " + options.json_path);
  }
  return status;
}

int run_invert(InvertOptions& options) {
  if (!options.json_path.empty() && options.json_path != "-") {
    options.json_path = path_from_here(options.json_path);
  }
  return with_open_survey(options.survey, options.reading.line, [&] { return invert_line(options); });
}

}  // namespace

Command add_invert_command(Program& program) {
  const auto options = std::make_shared<InvertOptions>();
  Parser parser = program.add_command("invert",
                                      "Inverts each station of a line in one dimension (Rho+): misfit and "
                                      "model; \"inversion\" is Occam in two");
  add_survey_argument(parser, options->survey);
  add_reading_options(parser, options->reading);
  add_rhoplus_options(parser, options->settings);
  parser.add_option("--json", options->json_path, "write the results to this file as JSON; - prints them")
      .may_lack_value("-");
  return {parser, [options] { return run_invert(*options); }};
}

}  // namespace Batch
