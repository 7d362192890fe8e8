// sound_functions.h: whether transfer functions are what every parser of them promises.
#pragma once
#include <cmath>

#include "formats/file_report.h"
#include "formats/transfer_function/sound_numbers.h"

inline bool is_finite_or_absent(double number) { return std::isnan(number) || std::isfinite(number); }

inline bool is_error_or_absent(double error) {
  return std::isnan(error) || (error > 0.0 && std::isfinite(error));
}

inline bool is_sound(const formats::transfer_function::Value& value) {
  return is_finite_or_absent(value.value.real()) && is_finite_or_absent(value.value.imag()) &&
         is_finite_or_absent(value.resistivity) && is_finite_or_absent(value.phase) &&
         is_error_or_absent(value.variance) && is_error_or_absent(value.resistivity_error) &&
         is_error_or_absent(value.phase_error);
}

/// Frequencies have periods, errors are above 0, places are on the earth.
inline bool is_sound(const formats::transfer_function::TransferFunction& function) {
  namespace tf = formats::transfer_function;
  const tf::Site& site = function.site;
  if (site.latitude.has_value() != site.longitude.has_value()) return false;
  if (site.latitude && !(std::abs(*site.latitude) <= 90.0 && std::abs(*site.longitude) <= 180.0))
    return false;
  if (function.points.size() > tf::most_points) return false;
  for (const auto& number : {site.elevation, site.x_azimuth, site.declination}) {
    if (number && !std::isfinite(*number)) return false;
  }
  for (const tf::Point& point : function.points) {
    if (!tf::is_frequency(point.frequency)) return false;
    for (const tf::Value& value : point.values) {
      if (!is_sound(value)) return false;
    }
  }
  return true;
}

/// A file gives points, or says why not.
inline bool is_sound(const formats::transfer_function::TransferFunction& function,
                     const formats::FileReport& report) {
  return is_sound(function) && (!function.points.empty() || !report.failure.empty());
}
