// made_station.h: merged curves of stations over ground of known impedance.
#pragma once
#include <array>
#include <cmath>
#include <complex>
#include <functional>
#include <numbers>
#include <vector>

#include "core/absent_value.h"
#include "tensor/line_curves.h"

namespace made {

using Complex = std::complex<double>;
using Elements = std::array<Complex, 4>;  // xx, xy, yx, yy

inline double radians(double degrees) { return degrees * std::numbers::pi / 180.0; }
inline Complex impedance(double rho, double phase, double frequency) {
  return std::polar(std::sqrt(5.0 * frequency * rho), radians(phase));
}

/// What is measured in axes north and east of [[xx', te], [-tm, yy']] in the axes of a strike.
inline Elements in_axes_of_north(double strike, Complex te, Complex tm, Complex xx = 0.0, Complex yy = 0.0) {
  const double c = std::cos(radians(strike));
  const double s = std::sin(radians(strike));
  return {xx * c * c + (tm - te) * s * c + yy * s * s, te * c * c + (xx - yy) * s * c + tm * s * s,
          -te * s * s + (xx - yy) * s * c - tm * c * c, xx * s * s + (te - tm) * s * c + yy * c * c};
}

enum class Ey { as_measured, turned };

/// The merged curves as an import leaves them: Ey turned or not, a phase at or below 0 of a diagonal element
/// masked. Deviations of the repeats are 2 % and 1 degree, errors of the files 10 % and 3 degrees where a
/// value isn't masked.
inline Module_tensor::StationCurves station(double number, const std::vector<float>& frequencies,
                                            const std::function<Elements(double)>& impedances,
                                            Ey ey = Ey::turned) {
  using namespace Module_database;
  Module_tensor::StationCurves made;
  made.station = number;
  for (std::size_t element = 0; element < 4; ++element) {
    StoredReading& merged = made.merged[element];
    merged.ID = static_cast<std::int32_t>(element) + 1;
    merged.FileID = derived_file;
    merged.axes = {ey == Ey::turned ? ey_turned : ey_as_measured, 0.0F};
    merged.curve.assign(frequencies.size());
    merged.curve.frequencies = frequencies;
    Module_tensor::CurveSource& source = made.sources[element];
    source.axes = {merged.axes};
    source.regardless_of_masks.resize(frequencies.size());
    for (std::size_t at = 0; at < frequencies.size(); ++at) {
      const bool sign = ey == Ey::turned && element >= 2;
      const Complex z = (sign ? -1.0 : 1.0) * impedances(frequencies[at])[element];
      const double rho = 0.2 * std::norm(z) / frequencies[at];
      const double phase = std::arg(z) / radians(1.0);
      const bool masked = phase <= 0.0 && (element == 0 || element == 3);
      const std::array<double, 4> values{rho, phase, 0.02 * rho, 1.0};
      for (std::size_t field = 0; field < values.size(); ++field) {
        const auto number_of_field = static_cast<int>(field) + 1;
        merged.curve.value(number_of_field, at) = masked ? no_data : static_cast<float>(values[field]);
        merged.curve.value(number_of_field + 4, at) = static_cast<float>(values[field]);
      }
      source.regardless_of_masks[at] = {
          {{static_cast<float>(rho), static_cast<float>(0.1 * rho)}, {static_cast<float>(phase), 3.0F}}};
      merged.curve.counts_at(field_resistivity, at) = masked ? 0 : 1;
      merged.curve.counts_at(field_phase, at) = masked ? 0 : 1;
      merged.curve.error_at(field_resistivity, at) = masked ? no_data : static_cast<float>(0.1 * rho);
      merged.curve.error_at(field_phase, at) = masked ? no_data : 3.0F;
    }
  }
  return made;
}

}  // namespace made
