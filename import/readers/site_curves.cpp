#include "import/readers/site_curves.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>

#include "core/absent_value.h"
#include "formats/field_values.h"
#include "import/readers/reader_steps.h"
#include "import/readers/standard_errors.h"
#include "import/readers/tipper_curves.h"
#include "numerics/impedance/apparent_resistivity.h"

namespace Module_data_file {

using formats::single_or_absent;
using formats::edi::EdiElement;
using formats::edi::EdiTipper;
using formats::transfer_function::Component;
using formats::transfer_function::Point;
using formats::transfer_function::TransferFunction;
using formats::transfer_function::Value;
using Module_database::Curve;

namespace {

constexpr std::array<Component, 4> element_components{Component::zxx, Component::zxy, Component::zyx,
                                                      Component::zyy};
constexpr std::array<Component, 2> tipper_components{Component::tx, Component::ty};

bool is_given(double value) { return !std::isnan(value); }

bool has(const TransferFunction& function, Component component) {
  return std::ranges::any_of(function.points, [&](const Point& point) {
    const Value& value = point.of(component);
    return value.has_value() || is_given(value.resistivity) || is_given(value.phase);
  });
}

bool is_zero(const TransferFunction& function, Component component) {
  return std::ranges::all_of(function.points, [&](const Point& point) {
    const Value& value = point.of(component);
    return !value.has_value() || value.value == 0.0;
  });
}

double resistivity_of(const Value& value, double frequency) {
  return is_given(value.resistivity) ? value.resistivity
         : value.has_value()         ? numerics::impedance::apparent_resistivity(value.value, frequency)
                                     : double{no_data};
}

double phase_of(const Value& value) {
  return is_given(value.phase) ? value.phase
         : value.has_value()   ? raised_phase(value.value.imag(), value.value.real())
                               : double{no_data};
}

void set_errors_of(const Value& value, Curve& curve, std::size_t index) {
  if (const double relative = relative_error(value.variance, value.value); relative > 0.0) {
    set_errors(relative, curve, index);
    return;
  }
  set_resistivity_error(value.resistivity_error, curve, index);
  set_phase_error(value.phase_error, curve, index);
}

// The other sign of Ey, before anything is cut to 32 bits: a phase in the first quadrant keeps more digits.
Value turned(Value value) {
  if (const double phase = phase_of(value); !is_absent(phase)) {
    value.phase = std::remainder(phase + 180.0, 360.0);
  }
  value.value = {0.0 - value.value.real(), 0.0 - value.value.imag()};  // no zero becomes a negative one
  return value;
}

void take_values(const Value& value, double frequency, Curve& curve, std::size_t index) {
  using namespace Module_database;
  curve.value(field_resistivity, index) = single_or_absent(resistivity_of(value, frequency));
  curve.value(field_phase, index) = single_or_absent(phase_of(value));
  curve.value(field_impedance_real, index) = single_or_absent(value.value.real());
  curve.value(field_impedance_imaginary, index) = single_or_absent(value.value.imag());
  const bool has_variance = is_given(value.variance);
  curve.value(field_resistivity_error, index) =
      single_or_absent(has_variance ? value.variance : value.resistivity_error);
  curve.value(field_phase_error, index) = single_or_absent(has_variance ? value.variance : value.phase_error);
}

// What the file switches off.
void mask(const Value& value, Curve& curve, std::size_t index) {
  using namespace Module_database;
  if (!value.use_resistivity) {
    curve.counts_at(field_resistivity, index) = 0;
  }
  if (!value.use_phase) {
    curve.counts_at(field_phase, index) = 0;
  }
}

}  // namespace

SiteReadings::SiteReadings(const TransferFunction& function) {
  for (std::size_t index = 0; index < element_components.size(); ++index) {
    if (has(function, element_components[index])) {
      elements.push_back(static_cast<EdiElement>(index));
    }
  }
  for (std::size_t index = 0; index < tipper_components.size(); ++index) {
    if (has(function, tipper_components[index])) {
      tipper.push_back(static_cast<EdiTipper>(index));
    }
  }
  has_zero_tipper = !tipper.empty() && std::ranges::all_of(tipper_components, [&](Component component) {
    return is_zero(function, component);
  });
  if (has_zero_tipper) {
    tipper.clear();
  }
}

std::vector<float> frequencies_of(const TransferFunction& function) {
  std::vector<float> frequencies;
  for (const Point& point : function.points) {
    frequencies.push_back(single_or_absent(point.frequency));
  }
  return frequencies;
}

std::vector<float> own_phases_of_yx(const TransferFunction& function) {
  std::vector<float> phases;
  for (const Point& point : function.points) {
    phases.push_back(single_or_absent(point.of(Component::zyx).phase));
  }
  return phases;
}

std::vector<float> phases_of_yx(const TransferFunction& function) {
  std::vector<float> phases = own_phases_of_yx(function);
  for (std::size_t index = 0; index < phases.size(); ++index) {
    const Value& value = function.points[index].of(Component::zyx);
    if (is_absent(phases[index]) && value.has_value() && value.value != 0.0) {
      phases[index] = single_or_absent(numerics::impedance::phase_degrees(value.value));
    }
  }
  return phases;
}

void fill_site_curve(const TransferFunction& function, EdiElement element, bool turn, Curve& curve) {
  const Component component = element_components[element];
  const bool is_turned = turn && (component == Component::zyx || component == Component::zyy);
  curve.assign(function.points.size());
  curve.frequencies = frequencies_of(function);
  for (std::size_t index = 0; index < curve.count(); ++index) {
    const Point& point = function.points[index];
    const Value value = is_turned ? turned(point.of(component)) : point.of(component);
    take_values(value, point.frequency, curve, index);
    finish_point(curve, index);
    set_errors_of(value, curve, index);
    mask(value, curve, index);
  }
}

void fill_site_tipper(const TransferFunction& function, EdiTipper component, Curve& curve) {
  curve.assign(function.points.size());
  curve.frequencies = frequencies_of(function);
  for (std::size_t index = 0; index < curve.count(); ++index) {
    const Value& value = function.points[index].of(tipper_components[component]);
    const float variance = single_or_absent(value.variance);
    curve.value(Module_database::field_resistivity_error, index) = variance;
    curve.value(Module_database::field_phase_error, index) = variance;
    set_tipper_point({value.value.real(), value.value.imag(),
                      variance > 0.0F ? std::sqrt(value.variance / 2.0) : double{no_data}},
                     curve, index);
    mask(value, curve, index);
  }
}

void remark_on_site_tipper(const SiteReadings& readings, formats::FileReport& report) {
  if (readings.has_zero_tipper) {
    remark_on_zero_tipper(0, report);
  } else if (readings.tipper.size() == 1) {
    remark_on_half_tipper(readings.tipper.front(), 0, report);
  }
}

}  // namespace Module_data_file
