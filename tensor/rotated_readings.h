// rotated_readings.h: a station's merged curves in turned axes, for all that takes merged curves out of the
// survey.
//
// Nothing that is stored changes. Conventions as in station_tensor.h; azimuths in degrees clockwise from
// north. A direction and its opposite are the same axes: -65, 115 and 295 give the same curves.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/frequencies.h"
#include "database/reading.h"
#include "tensor/line_curves.h"
#include "tensor/station_tensor.h"

namespace Module_tensor {

/// The sign of the rotated Ey.
enum class RotatedEy : std::uint8_t {
  as_readings,    // that of the station's readings: turned where theirs is
  first_quadrant  // turned: both off-diagonal phases of a layered earth are +45 degrees, as inversions take
                  // them
};

struct Rotation {
  double azimuth = 0.0;  // of the new x; that of the strike, for x along the strike
  bool apply_static = true;
  RotatedEy ey = RotatedEy::as_readings;
};

// The azimuths that users may ask for, both ends included; beyond them lies a mistake.
inline constexpr double least_azimuth = -180.0;
inline constexpr double largest_azimuth = 360.0;
inline constexpr const char* bad_azimuth = "The strike to rotate to must be from -180 to 360 degrees";
/// False for what is no number, too.
bool is_rotation_azimuth(double azimuth);

/// An azimuth as typed; NaN for what is no number.
double azimuth_of(std::string_view text);

/// "rotated to a strike of 25 degrees from north"
std::string rotation_text(double azimuth);

/// The element that a data type names; none for what isn't an element of the impedance tensor.
std::optional<CurveType> impedance_type(std::string_view data_type);

/// A station's curves and what is made of them.
struct LoadedStation {
  StationCurves curves;
  StationTensor tensor;
};

/// Reads the merged curves of one station; those that are missing are computed.
/// @return 0, or -1 after a message
[[nodiscard]] int load_station(const LineChoice& choice, double station, const Frequencies& frequencies,
                               LoadedStation& loaded);

/// What there is to tell of the stations of a line that were rotated.
struct RotationReport {
  std::vector<std::string> left_out;  // what keeps stations from having a tensor, sentences with their names
  int without_azimuth = 0;            // rotated stations whose x counts as north, as no azimuth is known

  /// Notes a station. @return whether it can be rotated. One without any off-diagonal curve can't, and there
  /// is nothing to tell of it.
  bool add(const LoadedStation& station);
};

/// "Left out for want of a tensor: Station 300 (ET003): there is no ExHx; Station 400: ..."; empty if none
/// is. Of many the first ones are named, and the rest counted.
std::string left_out_text(const RotationReport& report);

/// "rotated to a strike of 25 degrees from north", what counts as north without being known as north, and
/// what was left out. Without a point at the end.
std::string report_text(double azimuth, const RotationReport& report);

/// Tensor and tipper in turned axes. Errors are the tensor's own, those of the repeats' spread, else of the
/// files, and turned as of independent elements; a diagonal element without one gets that of the other
/// element of its row first.
/// @param azimuth  of the new x, degrees clockwise from north
StationTensor rotated_tensor(const StationTensor& tensor, double azimuth);

/// The merged curve of one element in turned axes, as if it had been stored so: at the frequencies of the
/// station's curve of that name, with
///
///   fields 1, 2    of the rotated tensor; absent and masked where there is no tensor
///   fields 3, 4    the deviations of the repeats, of all four elements
///   fields 5 to 8  the same as fields 1 to 4
///   errors         those of the files, of all four elements
///
/// Errors of different elements count as independent. A diagonal element whose error isn't known is taken to
/// be known as well as the other element of its row: both are estimated from the same electric field. The
/// static factors are in the resistivities, and ResOffset is 1.
/// @param type  an impedance element
/// @return ID 0 if the station has no tensor
Module_database::StoredReading rotated_reading(const StationCurves& curves, const StationTensor& tensor,
                                               CurveType type, const Rotation& rotation);

}  // namespace Module_tensor
