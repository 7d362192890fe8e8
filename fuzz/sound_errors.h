// sound_errors.h: whether the errors of a curve are what every reader promises.
#pragma once
#include <cmath>
#include <cstddef>

#include "core/absent_value.h"
#include "database/reading.h"

/// Each error is absent, or above 0 and of a value that is there.
inline bool has_errors_of_values(const Module_database::Curve& curve) {
  if (!curve.errors.empty() && curve.errors.size() != curve.count() * Module_database::error_count) {
    return false;
  }
  for (std::size_t index = 0; index < curve.count(); ++index) {
    for (const int field : {Module_database::field_resistivity, Module_database::field_phase}) {
      const float error = curve.error(field, index);
      if (error == no_data) continue;
      if (!(error > 0.0F) || !std::isfinite(error) || !curve.is_present(field, index)) return false;
    }
  }
  return true;
}

/// The same; one of a phase is at most 90 degrees.
inline bool has_sound_errors(const Module_database::Curve& curve) {
  if (!has_errors_of_values(curve)) return false;
  for (std::size_t index = 0; index < curve.count(); ++index) {
    if (curve.error(Module_database::field_phase, index) > 90.0F) return false;
  }
  return true;
}

/// Both parts of a tipper are masked where they are absent and nowhere else.
inline bool has_sound_parts(const Module_database::Curve& curve) {
  for (std::size_t index = 0; index < curve.count(); ++index) {
    for (const int part : {Module_database::field_resistivity, Module_database::field_phase}) {
      if ((curve.counts_at(part, index) == 1) != curve.is_present(part, index)) return false;
    }
  }
  return has_errors_of_values(curve);
}
