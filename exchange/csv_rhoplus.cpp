#include "exchange/csv_rhoplus.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "exchange/csv_cells.h"
#include "rhoplus/line_consistency.h"
#include "tensor/rotated_readings.h"

namespace Module_exchange {

using Module_rhoplus::CurveConsistency;
using Module_rhoplus::PointResidual;
using Module_tensor::CurveType;
using Module_tensor::StationCurves;

namespace {

constexpr const char* heading =
    "line,station,site,data_type,frequency_Hz,resistivity_ohm_m,resistivity_error_ohm_m,"
    "fitted_resistivity_ohm_m,resistivity_residual,resistivity_used,phase_deg,phase_error_deg,"
    "fitted_phase_deg,phase_residual,phase_used,chi,expected_chi,x_azimuth_deg\r\n";

/// The merged curves in turned axes in place of those that were measured.
Module_tensor::LineTensors turned_line(const Module_tensor::LineTensors& line, double azimuth) {
  Module_tensor::LineTensors turned = line;
  const Module_tensor::Rotation rotation{.azimuth = azimuth};
  for (std::size_t station = 0; station < line.stations.size(); ++station) {
    for (const CurveType type : Module_rhoplus::consistency_types) {
      turned.curves.stations[station].merged[static_cast<std::size_t>(type)] =
          rotated_reading(line.curves.stations[station], line.stations[station], type, rotation);
    }
  }
  return turned;
}

/// Azimuth of x of a station's curves, degrees from north; NaN if nobody knows it.
double axes_of(const Module_tensor::StationTensor& station, std::optional<double> rotation) {
  return rotation ? *rotation : station.axes_known ? station.axes : std::numeric_limits<double>::quiet_NaN();
}

std::string rows_of(const std::string& line, const StationCurves& station, std::string_view data_type,
                    const CurveConsistency& curve, double x_azimuth) {
  std::string text;
  for (const PointResidual& point : curve.points) {
    const numerics::rhoplus::RhoplusRow& row = point.row;
    if (!(row.frequency > 0.0F)) {
      continue;  // it wasn't given to the inversion
    }
    CsvRow cells;
    cells.add(line).add(station.station).add(station.name).add(data_type).add(row.frequency);
    cells.add(row.resistivity).add(row.resistivity_error).add(row.model_resistivity);
    cells.add(point.resistivity).add_count(row.uses_resistivity() ? 1 : 0);
    cells.add(row.phase).add(row.phase_error).add(row.model_phase);
    cells.add(point.phase).add_count(row.uses_phase() ? 1 : 0);
    cells.add(static_cast<float>(curve.chi)).add(static_cast<float>(curve.target)).add(x_azimuth);
    text += cells.text();
  }
  return text;
}

}  // namespace

bool has_rhoplus_curves(const LineContents& line) {
  return std::ranges::any_of(line.tensors.curves.stations, [](const StationCurves& station) {
    return station.of(CurveType::ExHy).ID != 0 || station.of(CurveType::EyHx).ID != 0;
  });
}

RhoplusTable rhoplus_csv(const LineContents& line, std::optional<double> rotation,
                         const Module_output::RhoplusSettings& settings,
                         const std::function<bool(double)>& progress) {
  const Module_tensor::LineTensors tensors = rotation ? turned_line(line.tensors, *rotation) : line.tensors;
  const Module_rhoplus::LineConsistency fits =
      Module_rhoplus::line_consistency(tensors, line.frequencies, settings, progress);
  if (fits.stopped) {
    return {.text = {}, .stopped = true};
  }
  RhoplusTable table{.text = heading};
  for (std::size_t station = 0; station < fits.stations.size(); ++station) {
    for (std::size_t mode = 0; mode < Module_rhoplus::mode_count; ++mode) {
      const auto type = static_cast<std::size_t>(Module_rhoplus::consistency_types[mode]);
      table.text +=
          rows_of(line.choice.line, tensors.curves.stations[station], Module_tensor::curve_types[type],
                  fits.stations[station].modes[mode], axes_of(line.tensors.stations[station], rotation));
    }
  }
  return table;
}

}  // namespace Module_exchange
