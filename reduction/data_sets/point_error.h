// point_error.h: how well a point of a curve is known, and by what.
#pragma once
#include <cstddef>
#include <cstdint>

#include "core/absent_value.h"
#include "database/reading.h"

namespace Module_averaged_data {

enum class ErrorSource : std::uint8_t {
  none,    // nothing is known
  file,    // the error that files bring, of a mean after averaging and merging
  repeats  // the standard deviation of the repeats behind an average or a merged curve
};

struct PointError {
  ErrorSource source = ErrorSource::none;
  float value = no_data;  // ohm-m or degrees
};

/// Whether fields 3, 4, 7 and 8 of a point hold deviations of repeats. In those of files there are other
/// things.
bool has_deviations(const Module_database::StoredReading& reading, std::size_t point);

/// How well resistivity (1) or phase (2) of a point is known: what repeats show goes before what a file says.
/// One value alone deviates by 0 and shows nothing. Only curves that were computed here have deviations; in
/// their fields files keep other things.
PointError point_error(const Module_database::StoredReading& reading, Module_database::Field field,
                       std::size_t point);

}  // namespace Module_averaged_data
