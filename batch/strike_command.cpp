// brenlox_batch strike: the strike of a line, of all its frequencies and by decade.
#include <cmath>
#include <iomanip>
#include <iostream>
#include <memory>
#include <optional>

#include <nlohmann/json.hpp>

#include "batch/command.h"
#include "batch/line_options.h"
#include "core/number_text.h"
#include "core/user_interface.h"
#include "database/frequency_store.h"
#include "platform/files/safe_files.h"
#include "tensor/line_tensors.h"
#include "tensor/shared_remarks.h"
#include "tensor/strike_summary.h"

namespace Batch {
namespace {

using Json = nlohmann::ordered_json;
using Module_tensor::FrequencyBand;
using Module_tensor::StrikeStation;
using numerics::impedance::BandStrike;
using numerics::impedance::StrikeChoices;
using numerics::impedance::StrikeMethod;
using numerics::impedance::StrikeWeights;

const std::map<std::string, StrikeMethod> method_names{{"pt_azimuth", StrikeMethod::phase_tensor_azimuth},
                                                       {"pt_alpha", StrikeMethod::phase_tensor_alpha},
                                                       {"swift_sum", StrikeMethod::swift_sum},
                                                       {"tipper", StrikeMethod::tipper}};
const std::map<std::string, StrikeWeights> weights_names{
    {"none", StrikeWeights::none}, {"ellipticity_squared", StrikeWeights::ellipticity_squared}};

struct StrikeOptions {
  LineOptions line;
  std::string band;
  std::string method;   // empty: all of them
  std::string weights;  // likewise; without JSON what the window begins with
  double skew_limit = StrikeChoices{}.skew_limit;
  double least_ellipticity = StrikeChoices{}.least_ellipticity;
  std::string json_path;  // empty: a table
};

/// A line's stations, ready to be asked, and its direction.
struct StrikeLine {
  std::string name;
  std::vector<StrikeStation> stations;
  std::optional<double> azimuth;
  FrequencyBand band;
  std::vector<FrequencyBand> bands;  // the whole one first
  std::vector<std::string> remarks;  // on stations, and why some have no tensor
};

template <class Choice>
std::vector<std::string> names_of(const std::map<std::string, Choice>& names) {
  std::vector<std::string> list;
  list.reserve(names.size());
  for (const auto& [name, choice] : names) {
    list.push_back(name);
  }
  return list;
}

template <class Choice>
std::string name_of(const std::map<std::string, Choice>& names, Choice choice) {
  return std::ranges::find(names, choice, [](const auto& entry) { return entry.second; })->first;
}

/// The two ends of a band as typed. None if they aren't two.
std::optional<std::pair<std::string, std::string>> ends_of(const std::string& band) {
  const std::size_t comma = band.find(',');
  if (comma == std::string::npos || band.find(',', comma + 1) != std::string::npos) {
    return std::nullopt;
  }
  return std::pair(band.substr(0, comma), band.substr(comma + 1));
}

std::string fault_of_band(const std::string& text) {
  const auto ends = ends_of(text);
  return ends && is_numeric(ends->first) && is_numeric(ends->second) &&
                 Module_tensor::read_band(ends->first, ends->second, {})
             ? ""
             : "a band is FROM,TO in Hz, both above 0, as 0.01,10";
}

std::vector<StrikeMethod> methods_of(const StrikeOptions& options) {
  if (!options.method.empty()) {
    return {method_names.at(options.method)};
  }
  return {StrikeMethod::phase_tensor_azimuth, StrikeMethod::phase_tensor_alpha, StrikeMethod::swift_sum,
          StrikeMethod::tipper};
}

/// Only phase tensors are weighted: for the others there is nothing to choose.
std::vector<StrikeWeights> weights_of(const StrikeOptions& options, StrikeMethod method) {
  const bool chooses =
      method == StrikeMethod::phase_tensor_azimuth || method == StrikeMethod::phase_tensor_alpha;
  if (!chooses) {
    return {StrikeWeights::none};
  }
  if (!options.weights.empty()) {
    return {weights_names.at(options.weights)};
  }
  if (options.json_path.empty()) {
    return {StrikeChoices{}.weights};
  }
  return {StrikeWeights::none, StrikeWeights::ellipticity_squared};
}

/// All questions that are asked of each band.
std::vector<StrikeChoices> choices_of(const StrikeOptions& options) {
  std::vector<StrikeChoices> all;
  for (const StrikeMethod method : methods_of(options)) {
    for (const StrikeWeights weights : weights_of(options, method)) {
      all.push_back({method, weights, options.skew_limit, options.least_ellipticity});
    }
  }
  return all;
}

Json known(double value) { return std::isnan(value) ? Json() : Json(value); }

Json strike_json(const FrequencyBand& band, const StrikeChoices& choices, const BandStrike& strike) {
  return {{"min_frequency", decimal_of_single(static_cast<float>(band.lower))},
          {"max_frequency", decimal_of_single(static_cast<float>(band.upper))},
          {"method", name_of(method_names, choices.method)},
          {"weights", name_of(weights_names, choices.weights)},
          {"beta_limit", choices.skew_limit},
          {"min_ellipticity", choices.least_ellipticity},
          {"strike", known(strike.strike.value)},
          {"error", known(strike.strike.error)},
          {"alternative", known(strike.alternative)},
          {"deviation", known(strike.deviation)},
          {"n", strike.used},
          {"left_out", strike.left_out}};
}

Json json_of(const StrikeLine& line, const std::vector<StrikeChoices>& all) {
  Json strikes = Json::array();
  for (const FrequencyBand& band : line.bands) {
    for (const StrikeChoices& choices : all) {
      strikes.push_back(strike_json(band, choices, line_strike(line.stations, band, choices)));
    }
  }
  return {{"line", line.name},
          {"line_azimuth", line.azimuth ? Json(*line.azimuth) : Json()},
          {"band_strike", std::move(strikes)},
          {"remarks", line.remarks}};
}

std::string number_or_dash(double value) { return std::isnan(value) ? "-" : format_number(value, "0.0"); }

void print_row(const std::string& band, const BandStrike& strike) {
  const auto column = [](int width, const std::string& text) {
    std::cout << std::right << std::setw(width) << text;
  };
  std::cout << "  " << std::left << std::setw(26) << band;
  column(8, number_or_dash(strike.strike.value));
  column(8, number_or_dash(strike.strike.error));
  column(13, number_or_dash(strike.alternative));
  column(11, number_or_dash(strike.deviation));
  column(8, std::to_string(strike.used));
  column(10, std::to_string(strike.left_out));
  std::cout << '\n';
}

/// What the sentences on the whole band say.
void print_sentences(const StrikeLine& line, const StrikeChoices& choices) {
  Module_tensor::StrikeQuestion question;
  question.band = line.band;
  question.choices = choices;
  const auto summary = strike_summary(line.stations, question);
  std::vector<std::string> sentences = data_sentences(*summary, question);
  if (summary->best.strike.has_value()) {
    std::ranges::copy(direction_sentences(summary->best.strike.value, line.azimuth, summary->votes),
                      std::back_inserter(sentences));
  }
  for (const std::string& sentence : sentences) {
    std::cout << "  " << sentence << '\n';
  }
}

void print(const StrikeLine& line, const std::vector<StrikeChoices>& all) {
  std::cout << "Line " << line.name << ", " << line.stations.size() << " stations\n";
  for (const StrikeChoices& choices : all) {
    std::cout << '\n' << Module_tensor::method_name(choices.method) << '\n';
    const BandStrike whole = line_strike(line.stations, line.band, choices);
    if (whole.used + whole.left_out == 0) {
      std::cout << (choices.method == StrikeMethod::tipper ? "  no tipper in the band\n"
                                                           : "  no tensor in the band\n");
      continue;
    }
    std::cout << "  band                        strike   error  alternative  deviation  points  left out\n";
    for (std::size_t i = 0; i < line.bands.size(); ++i) {
      print_row((i == 0 ? "all of " : "") + band_text(line.bands[i]),
                line_strike(line.stations, line.bands[i], choices));
    }
    print_sentences(line, choices);
  }
}

/// What has to be known of the stations, and which were refused.
std::vector<std::string> remarks_of(const std::vector<Module_tensor::StationTensor>& stations) {
  std::vector<std::string> remarks;
  for (const Module_tensor::StationTensor& station : stations) {
    if (!station.refusal.empty()) {
      remarks.push_back(station.refusal);
    }
    std::ranges::copy(station.remarks, std::back_inserter(remarks));
  }
  return remarks;
}

/// Why a line has nothing to find a strike from.
std::string why_nothing(const std::string& line, const std::vector<Module_tensor::StationTensor>& stations) {
  const auto refused = std::ranges::count_if(
      stations, [](const Module_tensor::StationTensor& station) { return !station.refusal.empty(); });
  const bool has_tippers = std::ranges::any_of(
      stations, [](const Module_tensor::StationTensor& station) { return !station.tipper.empty(); });
  if (stations.empty()) {
    return "No station of line " + line + " has all four elements of a tensor, or a tipper";
  }
  if (static_cast<std::size_t>(refused) < stations.size() || has_tippers) {
    return "All frequencies at which line " + line + " has tensors or tippers are switched off";
  }
  return "No station of line " + line + " has a tipper, and " +
         (refused == 1 ? "its only one is" : "all " + std::to_string(refused) + " are") +
         " refused as tensors, for the reasons above";
}

std::string text_of(const Json& json) {
  // Names of an older survey may hold bytes that are no UTF-8.
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

/// @return 0, or -1 after a message
int load(const Module_tensor::LineChoice& choice, const StrikeOptions& options, StrikeLine& line) {
  const auto frequencies = Module_database::load_reference_frequencies(choice.reference_type);
  Module_tensor::LineTensors tensors;
  if (!frequencies || load_line_tensors(choice, *frequencies, tensors) != 0) {
    return -1;
  }
  line.name = choice.line;
  line.stations = Module_tensor::strike_stations(tensors.stations, *frequencies);
  line.remarks = remarks_of(tensors.stations);
  for (const Module_tensor::SharedRemark& remark : Module_tensor::shared_remarks(line.remarks)) {
    user_interface().show_message(remark.text);
  }
  line.azimuth = Module_tensor::line_azimuth(choice.line);
  const auto whole = Module_tensor::whole_band(line.stations);
  if (!whole) {
    user_interface().show_message(why_nothing(choice.line, tensors.stations));
    return -1;
  }
  line.band = *whole;
  if (const auto ends = ends_of(options.band)) {
    line.band = *Module_tensor::read_band(ends->first, ends->second, *whole);
  }
  line.bands = {line.band};
  std::ranges::copy(decades_of(line.stations, line.band), std::back_inserter(line.bands));
  return 0;
}

int find_strikes(const Module_tensor::LineChoice& choice, const StrikeOptions& options) {
  StrikeLine line;
  if (load(choice, options, line) != 0) {
    return -1;
  }
  const std::vector<StrikeChoices> all = choices_of(options);
  if (options.json_path.empty()) {
    print(line, all);
  } else if (options.json_path == "-") {
    std::cout << text_of(json_of(line, all));
  } else {
    safe_files::write_into_place(options.json_path, text_of(json_of(line, all)));
    user_interface().show_message("The strikes are written to " + options.json_path);
  }
  return 0;
}

int run_strike(StrikeOptions& options) {
  if (!options.json_path.empty() && options.json_path != "-") {
    options.json_path = path_from_here(options.json_path);
  }
  return with_line(options.line,
                   [&](const Module_tensor::LineChoice& choice) { return find_strikes(choice, options); });
}

std::string fault_of_limit(const std::string& text, double highest) {
  const double limit = numeric_value(text);
  return is_numeric(text) && limit >= 0.0 && limit <= highest ? std::string()
                                                              : "a number from 0 to " + plain_text(highest);
}

}  // namespace

Command add_strike_command(Program& program) {
  const auto options = std::make_shared<StrikeOptions>();
  Parser parser = program.add_command(
      "strike", "Finds the strike of a line with its error, for all frequencies and by decade");
  add_line_options(parser, options->line);
  parser.add_option("--band", options->band, "FROM,TO in Hz, in any order; all frequencies without it")
      .checked(fault_of_band);
  parser.add_option("--method", options->method, "all of them without it")
      .one_of_in_any_case(names_of(method_names));
  parser
      .add_option("--weights", options->weights,
                  "of phase tensors: by ellipticity squared without it; with --json both")
      .one_of_in_any_case(names_of(weights_names));
  parser
      .add_option("--skew-limit", options->skew_limit,
                  "degrees; tensors of a larger phase-tensor skew have no say")
      .checked([](const std::string& text) { return fault_of_limit(text, 90.0); })
      .shows_default();
  parser
      .add_option("--min-ellipticity", options->least_ellipticity,
                  "tensors of a smaller phase-tensor ellipticity have no say")
      .checked([](const std::string& text) { return fault_of_limit(text, 1.0); })
      .shows_default();
  parser.add_option("--json", options->json_path, "write the strikes to this file as JSON; - prints them")
      .may_lack_value("-");
  return {parser, [options] { return run_strike(*options); }};
}

}  // namespace Batch
