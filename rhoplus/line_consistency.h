// line_consistency.h: what a layered earth can't explain of a line's merged curves, point by point.
//
// Rho+ gives the best fit that any one-dimensional ground allows. What it leaves at a point is there because
// the ground isn't layered, or because the point is bad: a residual that stands out among those of its
// neighbours says the latter.
//
// Conventions: a residual is datum minus model, in standard errors of the datum; of resistivity it is taken
// of the logarithm, error over value. Errors are those of Rho+, raised as the settings say.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "core/frequencies.h"
#include "numerics/rhoplus/rhoplus.h"
#include "output/rhoplus_settings.h"
#include "tensor/line_tensors.h"

namespace Module_rhoplus {

/// The modes that one-dimensional ground can explain; the diagonal elements it has none of.
inline constexpr std::array consistency_types{Module_tensor::CurveType::ExHy, Module_tensor::CurveType::EyHx};
inline constexpr std::size_t mode_count = consistency_types.size();

struct PointResidual {
  static constexpr double none = std::numeric_limits<double>::quiet_NaN();

  float frequency = 0.0F;             // Hz
  double resistivity = none;          // NaN: the inversion didn't use it
  double phase = none;                // likewise
  numerics::rhoplus::RhoplusRow row;  // as inverted, with the fit; its frequency is 0 where it wasn't

  [[nodiscard]] bool uses_resistivity() const { return resistivity == resistivity; }
  [[nodiscard]] bool uses_phase() const { return phase == phase; }
};

/// The fit of one mode of a station.
struct CurveConsistency {
  std::int32_t ID = 0;  // of the merged curve; 0: the station has none of this mode
  int status = numerics::rhoplus::rhoplus_not_run;  // RhoplusStatus; not run where Rho+ has nothing to invert
  std::string message;                              // a sentence where the computation failed
  int used_values = 0;                              // resistivities and phases
  double chi = 0.0;                                 // root of the least chi-squared
  double target = 0.0;                              // what it is expected to be below, in the mean
  bool limit_met = false;                           // of iterations: it may not be the best fit
  bool phases_turned = false;         // by 180 degrees, as the readings' Ey has the sign of measurement
  std::vector<PointResidual> points;  // in the order of the merged curve; empty unless it ran

  [[nodiscard]] bool ran() const { return status == numerics::rhoplus::rhoplus_ran; }
};

struct StationConsistency {
  double station = 0.0;
  std::array<CurveConsistency, mode_count> modes;  // in the order of consistency_types
};

struct LineConsistency {
  std::vector<StationConsistency> stations;  // in the order of the line's
  bool stopped = false;                      // before all were inverted; the others have not been run
};

/// Inverts ExHy and EyHx of all stations. Phases of EyHx are brought to the first quadrant whatever the sign
/// of Ey.
/// @param frequencies  of the line's reference type; those switched off are left out
/// @param progress  may be empty; is called with the share done, 0 to 1; false stops
/// @param threads   0: as many as there are cores. The result doesn't depend on it.
LineConsistency line_consistency(const Module_tensor::LineTensors& line, const Frequencies& frequencies,
                                 const Module_output::RhoplusSettings& settings,
                                 const std::function<bool(double)>& progress = {}, std::size_t threads = 0);

/// The same for one station, after an edit.
StationConsistency station_consistency(const Module_tensor::StationCurves& curves,
                                       const Module_tensor::StationTensor& tensor,
                                       const Frequencies& frequencies,
                                       const Module_output::RhoplusSettings& settings);

}  // namespace Module_rhoplus
