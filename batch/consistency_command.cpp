// brenlox_batch consistency: what a layered earth can't explain of a line's curves, and masking it.
#include <cmath>
#include <iomanip>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include <nlohmann/json.hpp>

#include "batch/command.h"
#include "batch/line_options.h"
#include "batch/rhoplus_option.h"
#include "core/number_text.h"
#include "core/user_interface.h"
#include "database/frequency_store.h"
#include "reduction/each_item.h"
#include "rhoplus/mask_proposal.h"

namespace Batch {
namespace {

using namespace Module_rhoplus;
using Json = nlohmann::ordered_json;

struct ConsistencyOptions {
  LineOptions line;
  Module_output::RhoplusSettings settings;
  std::optional<double> mask;  // errors
  bool three_dimensional = false;
  double skew_limit = numerics::impedance::DimensionalityLimits{}.skew;  // degrees
  bool json = false;
};

struct Results {
  Module_tensor::LineTensors line;
  LineConsistency consistency;
  std::optional<MaskProposal> masked;
};

std::string type_name(std::size_t mode_index) {
  return std::string(Module_tensor::curve_types[static_cast<std::size_t>(consistency_types[mode_index])]);
}

/// A residual and where it is.
struct Largest {
  double residual = 0.0;  // errors
  float frequency = 0.0F;
  bool is_phase = false;
};

std::optional<Largest> largest_of(const CurveConsistency& curve) {
  std::optional<Largest> largest;
  const auto consider = [&largest](double residual, float frequency, bool is_phase) {
    if (!std::isnan(residual) && (!largest || std::abs(residual) > std::abs(largest->residual))) {
      largest = Largest{residual, frequency, is_phase};
    }
  };
  for (const PointResidual& point : curve.points) {
    consider(point.resistivity, point.frequency, false);
    consider(point.phase, point.frequency, true);
  }
  return largest;
}

template <class Visit>
void for_each_curve(const Results& results, Visit&& visit) {
  for (std::size_t station = 0; station < results.consistency.stations.size(); ++station) {
    for (std::size_t mode = 0; mode < mode_count; ++mode) {
      const CurveConsistency& curve = results.consistency.stations[station].modes[mode];
      if (curve.ID != 0) {
        visit(results.line.stations[station], mode, curve);
      }
    }
  }
}

std::string remark_on(const CurveConsistency& curve) {
  if (!curve.ran()) {
    return curve.message.empty() ? "nothing to invert" : curve.message;
  }
  return curve.limit_met ? "the limit of iterations was met" : "";
}

void print_table(const Results& results) {
  constexpr int station_width = 24;
  constexpr int width = 10;
  std::cout << std::left << std::setw(station_width) << "Station" << std::setw(width) << "Data type"
            << std::right << std::setw(width) << "Values" << std::setw(width) << "Chi" << std::setw(width)
            << "Target" << std::setw(width) << "Largest"
            << "  at\n";
  for_each_curve(results, [](const Module_tensor::StationTensor& station, std::size_t mode,
                             const CurveConsistency& curve) {
    std::cout << std::left << std::setw(station_width)
              << Module_tensor::station_text(station.station, station.name) << std::setw(width)
              << type_name(mode);
    const auto largest = largest_of(curve);
    if (largest) {
      std::cout << std::right << std::setw(width) << curve.used_values << std::setw(width)
                << format_number(curve.chi, "0.00") << std::setw(width) << format_number(curve.target, "0.00")
                << std::setw(width) << format_number(largest->residual, "0.0") << "  "
                << (largest->is_phase ? "phase" : "resistivity") << ", " << plain_text(largest->frequency)
                << " Hz";
    }
    const std::string remark = remark_on(curve);
    std::cout << (remark.empty() ? "" : "  ") << remark << '\n';
  });
  if (results.masked) {
    const std::size_t all = results.masked->values[0] + results.masked->values[1];
    std::cout << '\n' << (all > 0 ? "Masked: " : "") << proposal_text(*results.masked) << '\n';
  }
}

Json number_or_null(double value) { return std::isnan(value) ? Json() : Json(value); }

/// The name of the site, or the station's number.
Json json_name(const Module_tensor::StationTensor& station) {
  return station.name.empty() ? Json(station.station) : Json(station.name);
}

Json json_of_curve(const Module_tensor::StationTensor& station, std::size_t mode,
                   const CurveConsistency& curve) {
  Json json{{"station", json_name(station)},
            {"data_type", type_name(mode)},
            {"inverted", curve.ran()},
            {"values", curve.used_values}};
  json["chi"] = curve.ran() ? Json(curve.chi) : Json();
  json["target"] = curve.ran() ? Json(curve.target) : Json();
  json["largest"] = Json();
  if (const auto largest = largest_of(curve)) {
    json["largest"] = {{"residual", largest->residual},
                       {"of", largest->is_phase ? "phase" : "resistivity"},
                       {"frequency", decimal_of_single(largest->frequency)}};
  }
  json["remark"] = remark_on(curve);
  return json;
}

Json json_of_masked(const Results& results) {
  Json list = Json::array();
  for (const ProposedPoint& point : results.masked->points) {
    list.push_back({{"station", json_name(results.line.stations[point.station_index])},
                    {"data_type", type_name(point.mode_index)},
                    {"frequency", decimal_of_single(point.frequency)},
                    {"resistivity", point.resistivity},
                    {"phase", point.phase}});
  }
  return list;
}

void print_json(const Results& results) {
  Json json{
      {"line", results.line.curves.choice.line}, {"curves", Json::array()}, {"residuals", Json::array()}};
  for_each_curve(results, [&json](const Module_tensor::StationTensor& station, std::size_t mode,
                                  const CurveConsistency& curve) {
    json["curves"].push_back(json_of_curve(station, mode, curve));
    for (const PointResidual& point : curve.points) {
      if (point.uses_resistivity() || point.uses_phase()) {
        json["residuals"].push_back({{"station", json_name(station)},
                                     {"data_type", type_name(mode)},
                                     {"frequency", decimal_of_single(point.frequency)},
                                     {"resistivity", number_or_null(point.resistivity)},
                                     {"phase", number_or_null(point.phase)}});
      }
    }
  });
  if (results.masked) {
    json["masked"] = json_of_masked(results);
    json["left_three_dimensional"] = results.masked->left_three_dimensional;
  }
  // Texts of an older survey may hold bytes that are no UTF-8.
  std::cout << json.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

/// @return 0, or -1 after a message
int invert_line(const Module_tensor::LineChoice& choice, const ConsistencyOptions& options,
                Results& results) {
  const Frequencies frequencies = Module_database::read_frequency_list(choice.reference_type);
  if (load_line_tensors(choice, frequencies, results.line) != 0) {
    return -1;
  }
  Module_averaged_data::WorkProgress progress("Comparing with layered ground", 1);
  results.consistency = line_consistency(results.line, frequencies, options.settings, [&](double share) {
    progress.show(0, share);
    return !user_interface().stop_requested();
  });
  return 0;
}

/// @return 0, or -1 after a message
int mask_line(const ConsistencyOptions& options, Results& results) {
  ProposalRules rules;
  rules.errors = *options.mask;
  rules.three_dimensional = options.three_dimensional;
  rules.limits.skew = options.skew_limit;
  MaskProposal proposal = mask_proposal(results.line, results.consistency, rules);
  using Module_averaged_data::Edit;
  if (!proposal.empty() &&
      Module_averaged_data::set_points(points_to_mask(results.consistency, proposal)) != Edit::changed) {
    report_stop("Stopped; nothing was masked");
    return -1;
  }
  results.masked = std::move(proposal);
  return 0;
}

int run_consistency(const ConsistencyOptions& options) {
  return with_line(options.line, [&](const Module_tensor::LineChoice& choice) {
    Results results;
    if (invert_line(choice, options, results) != 0) {
      return -1;
    }
    if (results.consistency.stopped) {
      report_stop("Stopped; nothing was masked");
      return -1;
    }
    if (options.mask && mask_line(options, results) != 0) {
      return -1;
    }
    options.json ? print_json(results) : print_table(results);
    return 0;
  });
}

}  // namespace

Command add_consistency_command(Program& program) {
  const auto options = std::make_shared<ConsistencyOptions>();
  Parser parser = program.add_command(
      "consistency", "Shows what no layered earth explains of a line's ExHy and EyHx, and masks it if asked");
  add_line_options(parser, options->line);
  parser
      .add_option("--mask", options->mask,
                  "masks resistivities and phases whose residual is beyond so many errors")
      .above_zero();
  parser.add_flag("--three-dimensional", options->three_dimensional,
                  "masks also where the station's tensor is three-dimensional");
  parser
      .add_option("--skew-limit", options->skew_limit,
                  "skew of the phase tensor, degrees, above which it is three-dimensional")
      .above_zero()
      .shows_default();
  add_rhoplus_inversion_options(parser, options->settings);
  parser.add_flag("--json", options->json,
                  "as JSON: line, curves, residuals (datum minus model, in errors), masked, "
                  "left_three_dimensional");
  return {parser, [options] { return run_consistency(*options); }};
}

}  // namespace Batch
