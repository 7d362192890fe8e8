#include "projections/value_fields.h"

#include <cmath>
#include <limits>

#include "core/number_text.h"
#include "core/text_fields.h"

namespace Module_projections {

using numerics::geodesy::CoordinateSystemValues;

std::string field_text(const CoordinateSystemValues& values, ValueField field) {
  if (const auto* const whole = std::get_if<WholeNumber>(&field)) {
    return std::to_string(values.**whole);
  }
  return criterion_text(values.*std::get<Number>(field));
}

bool read_field(std::string_view text, ValueField field, CoordinateSystemValues& values) {
  const bool empty = trimmed(text).empty();
  const double value = empty ? 0.0 : numeric_value(text);
  if ((!empty && !is_numeric(text)) || !std::isfinite(value)) {
    return false;
  }
  if (const auto* const number = std::get_if<Number>(&field)) {
    values.** number = value;
    return true;
  }
  using Limits = std::numeric_limits<std::int32_t>;
  if (value != std::trunc(value) || value < Limits::min() || value > Limits::max()) {
    return false;
  }
  values.*std::get<WholeNumber>(field) = static_cast<std::int32_t>(value);
  return true;
}

}  // namespace Module_projections
