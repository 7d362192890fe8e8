// site_document.h: what is written about one site into a file of transfer functions, whatever its layout.
//
// Conventions as in transfer_function.h: the sign of Ey is that of the axes, so that the Zyx of a uniform
// earth has a phase of -135 degrees.
#pragma once
#include <optional>
#include <string>
#include <vector>

#include "formats/transfer_function/transfer_function.h"

namespace formats::transfer_function {

struct SiteDocument {
  std::string id;      // letters, digits and underscores; the file is named after it
  std::string survey;  // name of the survey, as text
  std::string line;
  double station = 0.0;
  double dipole = 0.0;  // m; 0: not known
  /// Static factors are included. Frequencies descend or ascend; no two are equal. A point that doesn't
  /// count, or is masked, has no value: NaN in value and variance, in resistivity and its error, or in phase
  /// and its error, each for itself. site.x_azimuth is that of the axes of all values.
  TransferFunction function;
  std::optional<double> sensor_azimuth;  // of Hx, degrees clockwise from north, where it is known
  std::vector<std::string> history;      // what was masked, averaged, merged, multiplied, rotated: sentences
  std::string program;                   // with its version: "Brenlox 1.0"
  std::optional<double> date_collected;  // days since 30 December 1899
  double date_written = 0.0;             // likewise

  [[nodiscard]] bool has(Component component) const;
};

/// Whether a component has a value, a resistivity or a phase at any frequency.
inline bool SiteDocument::has(Component component) const {
  for (const Point& point : function.points) {
    const Value& value = point.of(component);
    if (value.has_value() || value.resistivity == value.resistivity || value.phase == value.phase) {
      return true;
    }
  }
  return false;
}

}  // namespace formats::transfer_function
