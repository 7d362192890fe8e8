// transfer_function.h: what the exchange formats of magnetotellurics hold of a site, whatever their layout.
//
// Conventions: x north, y east, z down as the axes of the site have them; time factor exp(+i omega t);
// impedance E/B in mV/km/nT; tipper without unit; frequency Hz; resistivity ohm-m; phase degrees; angles
// degrees clockwise from geographic north. A variance is that of the complex value, so that the standard
// error of either part is sqrt(variance / 2). What a file doesn't say is NaN; what parsers give is finite
// else, errors and variances above 0.
#pragma once
#include <array>
#include <complex>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace formats::transfer_function {

inline constexpr double not_given = std::numeric_limits<double>::quiet_NaN();

enum class Component : std::uint8_t { zxx, zxy, zyx, zyy, tx, ty };
inline constexpr std::size_t component_count = 6;
inline constexpr std::size_t impedance_count = 4;

/// One component at one frequency. A file has the complex value, or resistivity and phase, or both, and these
/// needn't agree where somebody has edited the curves.
struct Value {
  std::complex<double> value{not_given, not_given};
  double variance = not_given;
  double resistivity = not_given;
  double phase = not_given;
  double resistivity_error = not_given;  // one standard deviation
  double phase_error = not_given;
  bool use_resistivity = true;  // the file may switch off either half of a point
  bool use_phase = true;

  [[nodiscard]] bool has_value() const {
    return value.real() == value.real() && value.imag() == value.imag();
  }
  [[nodiscard]] bool has_curve() const { return resistivity == resistivity && phase == phase; }
};

struct Point {
  double frequency = 0.0;
  std::array<Value, component_count> values;

  Value& of(Component component) { return values[static_cast<std::size_t>(component)]; }
  [[nodiscard]] const Value& of(Component component) const {
    return values[static_cast<std::size_t>(component)];
  }
};

struct Site {
  std::string id;                   // as the file has it; empty if it has none
  std::string name;                 // the same
  std::optional<double> latitude;   // degrees, north positive
  std::optional<double> longitude;  // degrees, east positive, -180 to 180
  std::optional<double> elevation;  // m
  std::string datum;
  std::string date;                   // as the file has it
  std::optional<double> x_azimuth;    // of the axes of all values
  std::optional<double> declination;  // of the magnetic north
};

/// One site of a file.
struct TransferFunction {
  Site site;
  std::vector<Point> points;  // in the order of the file; two may have one frequency
};

}  // namespace formats::transfer_function
