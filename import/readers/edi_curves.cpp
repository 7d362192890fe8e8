#include "import/readers/edi_curves.h"

#include <cmath>
#include <utility>
#include <vector>

#include "core/absent_value.h"
#include "formats/field_values.h"
#include "import/readers/reader_steps.h"
#include "import/readers/standard_errors.h"
#include "numerics/constants.h"
#include "numerics/impedance/apparent_resistivity.h"

namespace Module_data_file {

using namespace formats::edi;

namespace {

using formats::single_or_absent;
using Module_database::Curve;
using numerics::degrees_per_radian;

// The later of two blocks. A block of errors and the variance of the impedance go into one field.
const EdiValues& later(const EdiValues& errors, const EdiValues& variance) {
  return variance.block > errors.block ? variance : errors;
}

float turned_phase(double phase) {
  return is_absent(phase) ? no_data : static_cast<float>(std::remainder(phase + 180.0, 360.0));
}

// Subtracted from zero so that a zero doesn't become a negative one.
float turned_sign(float value) { return is_absent(value) ? value : 0.0F - value; }

// The errors of a computed curve, where no block of errors follows the variance.
void put_errors_for_variance(EdiSection& section, std::size_t element) {
  const EdiValues& variance = section.get(element, quantity_variance);
  const EdiValues& real = section.get(element, quantity_real);
  const EdiValues& imaginary = section.get(element, quantity_imaginary);
  const std::vector<float>& resistivities = section.get(element, quantity_resistivity).values;
  const auto put = [&](EdiQuantity quantity, const auto& error_of) {
    EdiValues& errors = section.get(element, quantity);
    if (variance.block <= errors.block) {
      return;
    }
    errors = {true, variance.block, std::vector<float>(resistivities.size(), no_data), {}};
    for (std::size_t index = 0; index < resistivities.size(); ++index) {
      const double relative =
          relative_error(variance.values[index], {real.values[index], imaginary.values[index]});
      if (!is_absent(relative) && !is_absent(resistivities[index])) {
        errors.values[index] = single_or_absent(error_of(resistivities[index], relative));
      }
    }
  };
  put(quantity_resistivity_error, [](double rho, double relative) { return 2.0 * rho * relative; });
  put(quantity_phase_error, [](double, double relative) { return relative * degrees_per_radian; });
}

}  // namespace

void compute_from_impedance(EdiSection& section, std::size_t element) {
  EdiValues& resistivity = section.get(element, quantity_resistivity);
  EdiValues& phase = section.get(element, quantity_phase);
  const EdiValues& real = section.get(element, quantity_real);
  const EdiValues& imaginary = section.get(element, quantity_imaginary);
  if (!has_impedance_only(section, element)) {
    return;
  }
  const std::size_t count = section.frequencies.size();
  resistivity.values.assign(count, no_data);
  phase.values.assign(count, no_data);
  resistivity.present = phase.present = true;
  for (std::size_t index = 0; index < count; ++index) {
    const double frequency = section.frequencies[index];
    const double r = real.values[index];
    const double i = imaginary.values[index];
    if (!is_absent(r) && !is_absent(i) && frequency > 0.0) {
      resistivity.values[index] =
          single_or_absent(numerics::impedance::apparent_resistivity({r, i}, frequency));
      phase.values[index] = single_or_absent(raised_phase(i, r));
    }
  }
  put_errors_for_variance(section, element);
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
    EdiValues& phases = section.get(element, quantity_phase);
    for (std::size_t index = 0; index < phases.values.size(); ++index) {
      phases.values[index] = turned_phase(phases.number(index));
    }
    phases.rests.clear();
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
  const auto copy = [&](const EdiValues& source, int field_number) {
    for (std::size_t index = 0; source.present && index < count; ++index) {
      curve.value(field_number, index) = source.values[index];
    }
  };
  const EdiValues& variance = section.get(element, quantity_variance);
  copy(section.get(element, quantity_resistivity), Module_database::field_resistivity);
  copy(section.get(element, quantity_phase), Module_database::field_phase);
  copy(section.get(element, quantity_real), Module_database::field_impedance_real);
  copy(section.get(element, quantity_imaginary), Module_database::field_impedance_imaginary);
  copy(later(section.get(element, quantity_resistivity_error), variance),
       Module_database::field_resistivity_error);
  copy(later(section.get(element, quantity_phase_error), variance), Module_database::field_phase_error);
  for (std::size_t index = 0; index < count; ++index) {
    finish_point(curve, index);
  }
}

}  // namespace Module_data_file
