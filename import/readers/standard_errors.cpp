#include "import/readers/standard_errors.h"

#include <algorithm>
#include <cmath>

#include "core/absent_value.h"
#include "formats/field_values.h"
#include "numerics/constants.h"

namespace Module_data_file {

namespace {

using Module_database::Curve;
using Module_database::field_phase;
using Module_database::field_resistivity;

constexpr double largest_phase_error = 90.0;  // degrees

void set_error(int field_number, double error, Curve& curve, std::size_t index) {
  if (const float stored = formats::single_or_absent(error); stored > 0.0F) {
    curve.error_at(field_number, index) = stored;
  }
}

}  // namespace

double relative_error(double variance, std::complex<double> impedance) {
  const bool has_impedance = !is_absent(impedance.real()) && !is_absent(impedance.imag());
  const double magnitude = std::abs(impedance);
  return variance >= 0.0 && has_impedance && magnitude > 0.0 ? std::sqrt(variance / 2.0) / magnitude
                                                             : double{no_data};
}

void set_errors(double relative_error, Curve& curve, std::size_t index) {
  set_resistivity_error(2.0 * curve.value(field_resistivity, index) * relative_error, curve, index);
  set_phase_error(relative_error * numerics::degrees_per_radian, curve, index);
}

void set_resistivity_error(double error, Curve& curve, std::size_t index) {
  if (curve.value(field_resistivity, index) > 0.0F) {
    set_error(field_resistivity, error, curve, index);
  }
}

void set_phase_error(double error, Curve& curve, std::size_t index) {
  if (curve.is_present(field_phase, index)) {
    set_error(field_phase, std::min(error, largest_phase_error), curve, index);
  }
}

}  // namespace Module_data_file
