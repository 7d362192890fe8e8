#include "rhoplus/line_consistency.h"

#include <vector>

#include "numerics/parallel_jobs.h"
#include "numerics/rhoplus/inversion.h"
#include "output/rhoplus_data.h"

namespace Module_rhoplus {

using Module_database::Curve;
using Module_database::StoredReading;
using Module_output::RhoplusSettings;
using Module_tensor::CurveType;
using Module_tensor::StationCurves;
using Module_tensor::StationTensor;
using numerics::rhoplus::RhoplusSurface;

namespace {

/// The other sign of the electric field: 180 degrees on all phases, -180 < phase <= 180.
void turn_phases(Curve& curve) {
  for (std::size_t i = 0; i < curve.count(); ++i) {
    for (const int field : {Module_database::field_phase, Module_database::field_all_phase}) {
      if (curve.is_present(field, i)) {
        float& phase = curve.value(field, i);
        phase += phase > 0.0F ? -180.0F : 180.0F;
      }
    }
  }
}

void take_residuals(const Curve& curve, const Module_output::RhoplusTables& tables,
                    const numerics::rhoplus::RhoplusInversion& inversion, CurveConsistency& result) {
  for (std::size_t i = 0; i < curve.count(); ++i) {
    PointResidual& point = result.points.emplace_back();
    point.frequency = curve.frequencies[i];
    if (const std::int32_t number = tables.index.row_number[i]; number > 0) {
      const auto at = static_cast<std::size_t>(number - 1);
      const numerics::rhoplus::RhoplusPrediction& fit = inversion.rows[at];
      point.resistivity = -fit.resistivity_residual;  // there it is model minus datum
      point.phase = -fit.phase_residual;
      point.row = tables.data[at];
    }
  }
}

CurveConsistency curve_consistency(StoredReading merged, bool turn, const Frequencies& frequencies,
                                   const RhoplusSettings& settings) {
  CurveConsistency result;
  result.ID = merged.ID;
  result.phases_turned = turn;
  if (turn) {
    turn_phases(merged.curve);
  }
  Module_output::RhoplusTables tables = Module_output::rhoplus_rows(merged, frequencies, settings);
  if (tables.data.empty()) {
    return result;
  }
  numerics::rhoplus::RhoplusInversion details;
  const auto surface = settings.surface == 0 ? RhoplusSurface::conducting : RhoplusSurface::insulating;
  const numerics::rhoplus::RhoplusRun run = numerics::rhoplus::rhoplus(tables.data, surface, &details);
  result.status = run.status;
  result.message = run.message;
  result.used_values = run.used_values;
  result.chi = run.achieved_chi;
  result.target = run.target_chi;
  result.limit_met = run.limit_met;
  if (result.ran()) {
    take_residuals(merged.curve, tables, details, result);
  }
  return result;
}

CurveConsistency mode_consistency(const StationCurves& curves, const StationTensor& tensor, std::size_t mode,
                                  const Frequencies& frequencies, const RhoplusSettings& settings) {
  const StoredReading& merged = curves.of(consistency_types[mode]);
  const bool turn =
      consistency_types[mode] == CurveType::EyHx && Module_tensor::yx_points_away(curves, tensor);
  return merged.ID == 0 ? CurveConsistency{} : curve_consistency(merged, turn, frequencies, settings);
}

}  // namespace

StationConsistency station_consistency(const StationCurves& curves, const StationTensor& tensor,
                                       const Frequencies& frequencies, const RhoplusSettings& settings) {
  StationConsistency result;
  result.station = curves.station;
  for (std::size_t mode = 0; mode < mode_count; ++mode) {
    result.modes[mode] = mode_consistency(curves, tensor, mode, frequencies, settings);
  }
  return result;
}

LineConsistency line_consistency(const Module_tensor::LineTensors& line, const Frequencies& frequencies,
                                 const RhoplusSettings& settings, const std::function<bool(double)>& progress,
                                 std::size_t threads) {
  LineConsistency result;
  result.stations.resize(line.stations.size());
  for (std::size_t station = 0; station < line.stations.size(); ++station) {
    result.stations[station].station = line.curves.stations[station].station;
  }
  const auto invert = [&](std::size_t item, std::size_t /*thread*/) {
    const std::size_t station = item / mode_count;
    const std::size_t mode = item % mode_count;
    result.stations[station].modes[mode] =
        mode_consistency(line.curves.stations[station], line.stations[station], mode, frequencies, settings);
  };
  result.stopped = !numerics::run_jobs(line.stations.size() * mode_count, threads, invert, progress);
  return result;
}

}  // namespace Module_rhoplus
