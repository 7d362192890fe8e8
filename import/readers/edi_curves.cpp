#include "import/readers/edi_curves.h"

#include <array>
#include <cmath>
#include <vector>

#include "core/absent_value.h"
#include "formats/field_values.h"
#include "import/readers/reader_steps.h"
#include "numerics/constants.h"
#include "numerics/impedance/apparent_resistivity.h"

namespace Module_data_file {

using namespace formats::edi;

namespace {

using formats::single_or_absent;
using Module_database::Curve;
using numerics::degrees_per_radian;

constexpr std::array<int, quantity_count> quantity_fields{
    Module_database::field_resistivity,       Module_database::field_phase,
    Module_database::field_impedance_real,    Module_database::field_impedance_imaginary,
    Module_database::field_resistivity_error, Module_database::field_phase_error};

float turned_phase(float phase) {
  if (is_absent(phase)) {
    return phase;
  }
  return static_cast<float>(std::remainder(static_cast<double>(phase) + 180.0, 360.0));
}

// Subtracted from zero so that a zero doesn't become a negative one.
float turned_sign(float value) { return is_absent(value) ? value : 0.0F - value; }

}  // namespace

void compute_from_impedance(EdiSection& section, std::size_t element) {
  EdiValues& resistivity = section.get(element, quantity_resistivity);
  EdiValues& phase = section.get(element, quantity_phase);
  const EdiValues& real = section.get(element, quantity_real);
  const EdiValues& imaginary = section.get(element, quantity_imaginary);
  if (!has_impedance_only(section, element)) {
    return;
  }
  EdiValues& first_error = section.get(element, quantity_first_error);
  EdiValues& second_error = section.get(element, quantity_second_error);
  const std::size_t count = section.frequencies.size();
  resistivity.values.assign(count, no_data);
  phase.values.assign(count, no_data);
  resistivity.present = phase.present = true;
  for (std::size_t index = 0; index < count; ++index) {
    const double frequency = section.frequencies[index];
    const double r = real.values[index];
    const double i = imaginary.values[index];
    const double square = r * r + i * i;
    const bool known = !is_absent(r) && !is_absent(i) && frequency > 0.0;
    const double rho = known ? numerics::impedance::apparent_resistivity({r, i}, frequency) : double{no_data};
    if (known) {
      resistivity.values[index] = single_or_absent(rho);
      phase.values[index] = single_or_absent(raised_phase(i, r));
    }
    const auto relative_error = [&](double variance) {
      return known && variance >= 0.0 && square > 0.0 ? std::sqrt(variance / square) : double{no_data};
    };
    if (first_error.is_variance) {
      const double relative = relative_error(first_error.values[index]);
      first_error.values[index] = is_absent(relative) ? no_data : single_or_absent(2.0 * rho * relative);
    }
    if (second_error.is_variance) {
      const double relative = relative_error(second_error.values[index]);
      second_error.values[index] =
          is_absent(relative) ? no_data : single_or_absent(relative * degrees_per_radian);
    }
  }
  first_error.is_variance = second_error.is_variance = false;
}

bool has_impedance_only(const EdiSection& section, std::size_t element) {
  return section.get(element, quantity_real).present && section.get(element, quantity_imaginary).present &&
         !section.get(element, quantity_resistivity).present && !section.get(element, quantity_phase).present;
}

QuadrantCount count_in_third_quadrant(std::span<const float> phases) {
  QuadrantCount count;
  for (const float phase : phases) {
    if (!is_absent(phase)) {
      const double wrapped = std::remainder(static_cast<double>(phase), 360.0);
      ++count.present;
      count.in_third += wrapped <= -90.0 || wrapped == 180.0 ? 1 : 0;  // 180 is -180
    }
  }
  return count;
}

bool mostly_in_third_quadrant(std::span<const float> phases) {
  return count_in_third_quadrant(phases).mostly_in_third();
}

std::vector<float> phases_of_yx(const EdiSection& section) {
  const EdiValues& phase = section.get(element_yx, quantity_phase);
  if (phase.present) {
    return phase.values;
  }
  const EdiValues& real = section.get(element_yx, quantity_real);
  const EdiValues& imaginary = section.get(element_yx, quantity_imaginary);
  std::vector<float> phases;
  for (std::size_t index = 0; real.present && imaginary.present && index < real.values.size(); ++index) {
    const float r = real.values[index];
    const float i = imaginary.values[index];
    const bool has_phase = !is_absent(r) && !is_absent(i) && (r != 0.0F || i != 0.0F);
    phases.push_back(has_phase ? static_cast<float>(numerics::impedance::phase_degrees({r, i})) : no_data);
  }
  return phases;
}

bool has_turned_ey(const EdiSection& section) { return mostly_in_third_quadrant(phases_of_yx(section)); }

void turn_ey(EdiSection& section) {
  for (const EdiElement element : {element_yx, element_yy}) {
    for (float& phase : section.get(element, quantity_phase).values) {
      phase = turned_phase(phase);
    }
    for (const EdiQuantity part : {quantity_real, quantity_imaginary}) {
      for (float& value : section.get(element, part).values) {
        value = turned_sign(value);
      }
    }
  }
}

void turn_sign(Curve& curve) {
  for (std::size_t index = 0; index < curve.count(); ++index) {
    float& phase = curve.value(Module_database::field_phase, index);
    phase = turned_phase(phase);
    for (const int part :
         {Module_database::field_impedance_real, Module_database::field_impedance_imaginary}) {
      curve.value(part, index) = turned_sign(curve.value(part, index));
    }
  }
}

void fill_curve(const EdiSection& section, std::size_t element, Curve& curve) {
  const std::size_t count = section.frequencies.size();
  curve.assign(count);
  curve.frequencies = section.frequencies;
  for (std::size_t quantity = 0; quantity < quantity_count; ++quantity) {
    const EdiValues& source = section.elements[element][quantity];
    if (source.present) {
      for (std::size_t index = 0; index < count; ++index) {
        curve.value(quantity_fields[quantity], index) = source.values[index];
      }
    }
  }
  for (std::size_t index = 0; index < count; ++index) {
    finish_point(curve, index);
  }
}

}  // namespace Module_data_file
