#include "occam/setup/design_summary.h"

#include <exception>
#include <vector>

#include "core/number_text.h"
#include "core/session_state.h"
#include "occam/setup/mesh_design.h"
#include "occam/setup/station_positions.h"

namespace Module_occam {

namespace {

/// Of the stations of a line within the limits.
std::vector<float> positions_of(const Module_projections::LineDistances* distances, const std::string& line,
                                const InversionChoices& choices) {
  const SessionState& state = session();
  std::vector<double> stations;
  for (std::size_t station = 0; station < state.station_line.size(); ++station) {
    const double value = state.station_value[station];
    if (state.station_line[station] == line && is_within_limits(value, choices)) {
      stations.push_back(value);
    }
  }
  std::vector<float> positions;
  for (const PositionedStation& station :
       distances != nullptr ? positions_by_distance(stations, *distances) : positions_by_number(stations)) {
    positions.push_back(static_cast<float>(station.position));
  }
  return positions;
}

double depth_of(const MeshRows& rows) {
  double depth = 0.0;
  for (const double thickness : rows.layer_thickness) {
    depth += thickness;
  }
  return depth;
}

}  // namespace

std::string design_summary(const std::string& line, const InversionInputs& inputs,
                           const Module_projections::LineDistances& distances,
                           std::span<const ModeCount> counts) {
  InversionChoices choices;
  if (const auto fault = invalid_entry(inputs, choices)) {
    return fault->message;
  }
  try {
    const bool by_distance = inputs.positions == PositionSource::distances;
    const std::vector<float> positions = positions_of(by_distance ? &distances : nullptr, line, choices);
    if (positions.size() < min_stations) {
      return "Stations that remain: " + plain_text(static_cast<int>(positions.size())) +
             "; an inversion needs at least " + plain_text(static_cast<int>(min_stations));
    }
    const MeshColumns columns = mesh_columns(horizontal_nodes(positions, choices.block_width));
    const MeshRows rows = mesh_rows(layer_count(choices), choices.layers_per_decade, choices.top_layer);
    const int blocks = block_count(merge_blocks(columns, rows, choices.doubling_threshold));
    const auto across = static_cast<int>(columns.widths.size());
    const auto down = static_cast<int>(rows.heights.size());
    const std::string warning = size_warning(across, down);
    const std::string data = totals_text(mode_totals(counts, choices));
    return plain_text(static_cast<int>(positions.size())) + " stations, mesh of " + plain_text(across) +
           " by " + plain_text(down) + " cells, " + plain_text(blocks) + " model blocks, layers down to " +
           format_number(depth_of(rows), "0") + " m" + (data.empty() ? "" : ". " + data) +
           (warning.empty() ? "" : ". " + warning);
  } catch (const std::exception& failure) {
    return failure.what();
  }
}

}  // namespace Module_occam
