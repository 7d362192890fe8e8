// brenlox_batch tensor: the tensors of a line's stations, and what is computed from them.
#include <algorithm>
#include <cmath>
#include <iostream>
#include <iterator>
#include <memory>
#include <optional>
#include <vector>

#include "batch/command.h"
#include "batch/line_options.h"
#include "batch/tensor_files.h"
#include "core/number_text.h"
#include "core/text_fields.h"
#include "core/user_interface.h"
#include "database/frequency_store.h"
#include "platform/files/safe_files.h"
#include "tensor/line_tensors.h"
#include "tensor/shared_remarks.h"

namespace Batch {
namespace {

using Module_tensor::LineChoice;

struct TensorOptions {
  LineOptions line;
  std::string station;             // number or name of the site; empty: all
  std::optional<double> rotation;  // azimuth of x, degrees from north
  std::string csv_path;
  std::string json_path;
};

bool is_asked(const TensorOptions& options, const Module_tensor::StationTensor& station) {
  const bool is_number = is_numeric(options.station) && numeric_value(options.station) == station.station;
  return options.station.empty() || is_number || equal_ignoring_case(options.station, station.name);
}

/// @return 0, or -1 after a message
int load(const TensorOptions& options, const LineChoice& choice, std::vector<LineStation>& stations) {
  const auto frequencies = Module_database::load_reference_frequencies(choice.reference_type);
  Module_tensor::LineTensors line;
  if (!frequencies || load_line_tensors(choice, *frequencies, line) != 0) {
    return -1;
  }
  for (Module_tensor::StationTensor& station : line.stations) {
    if (is_asked(options, station)) {
      stations.push_back({choice.line, std::move(station)});
    }
  }
  return 0;
}

/// What has to be known of the stations, on the way for messages.
void tell_remarks(const std::vector<LineStation>& stations) {
  std::vector<std::string> remarks;
  for (const LineStation& station : stations) {
    if (!station.tensor.refusal.empty()) {
      remarks.push_back(station.tensor.refusal);
    }
    std::ranges::copy(station.tensor.remarks, std::back_inserter(remarks));
  }
  for (const Module_tensor::SharedRemark& remark : Module_tensor::shared_remarks(remarks)) {
    user_interface().show_message(remark.text);
  }
}

void write(const std::string& path, const std::string& text) {
  if (path == "-") {
    std::cout << text;
    return;
  }
  safe_files::write_into_place(path, text);
  user_interface().show_message("The tensors are written to " + path);
}

void give_out(const TensorOptions& options, const std::vector<LineStation>& stations) {
  if (!options.json_path.empty()) {
    nlohmann::ordered_json json;
    json["stations"] = stations_json(stations, options.rotation);
    // Names of an older survey may hold bytes that are no UTF-8.
    write(options.json_path,
          json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + '\n');
  } else if (!options.csv_path.empty()) {
    write(options.csv_path, stations_csv(stations, options.rotation));
  } else {
    print_stations(std::cout, stations, options.rotation);
  }
}

int show_tensors(const TensorOptions& options, const std::vector<LineChoice>& choices) {
  std::vector<LineStation> stations;
  for (const LineChoice& choice : choices) {
    if (load(options, choice, stations) != 0) {
      return -1;
    }
  }
  if (stations.empty() && !options.station.empty()) {
    user_interface().show_message(
        (choices.size() == 1 ? "Line " + choices.front().line + " has" : std::string("The lines have")) +
        " no station " + options.station + " with readings of this kind");
    return status_wrong_usage;
  }
  tell_remarks(stations);
  give_out(options, stations);
  return 0;
}

std::string fault_of_rotation(const std::string& text) {
  return is_numeric(text) && std::abs(numeric_value(text)) <= 360.0
             ? std::string()
             : "'" + text + "' is no angle from -360 to 360 degrees";
}

std::string fault_of_path(const std::string& text) {
  return trimmed(text).empty() ? "the file has no name" : std::string();
}

int run_tensor(TensorOptions& options) {
  for (std::string* const path : {&options.csv_path, &options.json_path}) {
    if (!path->empty() && *path != "-") {
      *path = path_from_here(*path);
    }
  }
  return with_lines(options.line,
                    [&](const std::vector<LineChoice>& choices) { return show_tensors(options, choices); });
}

}  // namespace

Command add_tensor_command(Program& program) {
  const auto options = std::make_shared<TensorOptions>();
  Parser parser = program.add_command(
      "tensor", "Gives the tensors of stations: impedances, phase tensors, strikes, skews, tippers");
  add_line_options(parser, options->line, LineIs::optional);
  parser.add_option("--station", options->station, "number or name of a station; left out: all");
  parser
      .add_option("--rotate", options->rotation,
                  "degrees from north: elements also in axes whose x has this azimuth")
      .checked(fault_of_rotation);
  Parser file =
      parser.add_alternatives("File", "A table is printed without one; - stands for standard output");
  file.add_option("--csv", options->csv_path,
                  "write a row for each station and frequency to this file, as comma-separated text")
      .checked(fault_of_path);
  file.add_option("--json", options->json_path,
                  "write to this file as JSON: stations with frequency, values and errors by name")
      .checked(fault_of_path);
  return {parser, [options] { return run_tensor(*options); }};
}

}  // namespace Batch
