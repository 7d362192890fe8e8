// unsupported_curves.h: averages whose repeats are all switched off, and merged curves whose averages are.
//
// There is nothing to compute such a curve from, and it stays as it was computed last. It is shown and
// written like any other, and whoever shows or writes it says that it rests on nothing that is in use.
#pragma once
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "database/reading.h"

namespace Module_averaged_data {

struct UnsupportedCurve {
  double station = 0.0;
  std::string data_type;
  float scan_rate = 0.0F;  // Hz; 0: the merged curve
  bool in_use = false;     // it goes into the merged curve, or the merged curve into output

  bool operator==(const UnsupportedCurve&) const = default;
};

/// Those of a line, by station, data type and scan rate. Costs a query in proportion to the readings of the
/// line, or of the station. Damaged rows are gone past. Throws dao::Error.
/// @param line     an empty data type stands for all
/// @param station  none: all stations
[[nodiscard]] std::vector<UnsupportedCurve> unsupported_curves(const Module_database::LineSelection& line,
                                                               std::optional<double> station = {});

/// "No reading is in use, and the earlier curve remains: station 100, ExHy, 256 Hz", for the curves that are
/// in use; of many the first three and how many more there are. Empty if there are none.
[[nodiscard]] std::string unsupported_text(std::span<const UnsupportedCurve> curves);

/// The text about a line, or one of its stations, for who writes its curves. Empty as well where the line
/// can't be read: whoever uses its curves tells that.
[[nodiscard]] std::string unsupported_hint(const Module_database::LineSelection& line,
                                           std::optional<double> station = {});

}  // namespace Module_averaged_data
