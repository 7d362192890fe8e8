// station_tensor.h: the impedance tensor and the tipper of a station at each frequency, from its merged
// curves.
//
// Conventions as in numerics/impedance/tensor.h: impedance mV/km/nT, exp(+i omega t), Ey turned back so that
// the Zyx of a uniform earth has a phase of -135 degrees.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "numerics/impedance/tensor.h"
#include "tensor/line_curves.h"
#include "tensor/station_tipper.h"

namespace Module_tensor {

struct TensorPoint {
  double frequency = 0.0;  // Hz
  numerics::impedance::Tensor tensor;
  std::uint8_t masked_diagonals = 0;  // 0 to 2: elements whose value was taken in spite of a mask
};

/// Why Ey counts as turned or not.
enum class EyReason : std::uint8_t {
  facts,  // all readings were imported with "turn Ey"
  rule,   // Zxy and Zyx point the same way at more than half of the frequencies, or don't
  user    // EySign of the site
};

struct StationTensor {
  std::int32_t StationID = 0;
  double station = 0.0;
  std::string name;                     // of its site; empty if it has none
  std::vector<TensorPoint> points;      // ascending in frequency, those with all four elements
  std::vector<TipperPoint> tipper;      // likewise, those with both elements
  double axes = 0.0;                    // azimuth of x, degrees clockwise from north
  bool axes_known = false;              // else x counts as north
  bool ey_turned = false;               // in the readings; it has been turned back here
  EyReason ey_reason = EyReason::rule;  // without points nothing is known by rule
  std::size_t masked_diagonals = 0;     // elements of all points that were taken in spite of a mask
  std::string refusal;  // why there is no tensor, a sentence without its point; empty if there is
  std::vector<std::string> remarks;  // what a user has to know of it, sentences likewise, with its name
};

/// Resistivity and phase of an element at a point of its merged curve, with their errors and without the
/// static factor. What isn't there, or doesn't count, is no_data.
struct ElementPoint {
  std::array<SourceValue, quantity_count> values;
  bool is_masked = false;  // one of them was taken in spite of a mask
};

/// A mask on a diagonal element says nothing, as an import masks every phase at or below 0 and these have any
/// phase: where the value or one of its repeats is masked, the mean of all is taken. The others have to
/// count. What has a resistivity of 0 isn't there, and has no phase.
/// @param type  an impedance element
ElementPoint element_point(const StationCurves& curves, CurveType type, std::size_t at);

/// The same without what somebody has masked: the phase of a diagonal element that is above 0, and the whole
/// point where its resistivity is masked.
ElementPoint unmasked_element_point(const StationCurves& curves, CurveType type, std::size_t at);

/// A phase with the other sign of Ey: degrees, in and out within -180 to 180.
double phase_of_turned_ey(double phase);

/// At each frequency where the off-diagonal elements count and all four have values. A diagonal element that
/// is masked, or one of its repeats, is taken as if nothing were masked, but not where a user has switched it
/// off. Errors are those of the repeats' spread, else of the files. Stations whose readings have different
/// axes are refused.
/// @param ey_sign  of the site, see database/sites.h
StationTensor station_tensor(const StationCurves& curves, std::int32_t ey_sign);

/// The same in axes whose x has an azimuth, degrees clockwise from north.
StationTensor turned_to(const StationTensor& station, double azimuth);

/// Takes out what is at frequencies that are switched off in the list.
void leave_out_disabled(const Frequencies& frequencies, StationTensor& station);

/// Whether the phases of EyHx lie in the third quadrant, as those of a measured Ey do. What is known of the
/// station's Ey says so; by the rule of a tensor where there is one, else by where most of the phases in use
/// lie, those nearer to -135 degrees than to 45. Where none is in use the readings say it, else all phases,
/// masked as they are.
bool yx_points_away(const StationCurves& curves, const StationTensor& station);

/// "1250 (ET001)", or without a name "1250".
std::string station_text(double station, const std::string& name);

}  // namespace Module_tensor
