#include "reduction/data_sets/point_error.h"

#include <cmath>

namespace Module_averaged_data {

using Module_database::field_resistivity;

namespace {

// no_data where a file's fields 3 and 4 are the magnitudes of the fields, never so where something was
// averaged here. A merged curve takes all three from the same reading.
constexpr int field_of_magnitudes = 13;

}  // namespace

bool has_deviations(const Module_database::StoredReading& reading, std::size_t point) {
  return reading.ID != 0 && reading.FileID < 0 &&
         !is_absent(double{reading.curve.value(field_of_magnitudes, point)});
}

PointError point_error(const Module_database::StoredReading& reading, Module_database::Field field,
                       std::size_t point) {
  const auto is_known = [](float value) { return value > 0.0F && std::isfinite(value); };
  const float deviation =
      reading.curve.value(field == field_resistivity ? Module_database::field_resistivity_deviation
                                                     : Module_database::field_phase_deviation,
                          point);
  if (has_deviations(reading, point) && is_known(deviation)) {
    return {ErrorSource::repeats, deviation};
  }
  const float error = reading.curve.error(field, point);
  return is_known(error) ? PointError{ErrorSource::file, error} : PointError{};
}

}  // namespace Module_averaged_data
