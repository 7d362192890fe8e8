#include "import/readers/tipper_curves.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string>
#include <string_view>

#include "core/absent_value.h"
#include "core/number_text.h"
#include "core/scope_guard.h"
#include "formats/field_values.h"
#include "import/readers/reader_steps.h"

namespace Module_data_file {

using namespace formats::edi;
using formats::FileReport;
using formats::remark_ignored;
using formats::remark_unreadable;
using formats::single_or_absent;
using Module_database::Curve;

namespace {

constexpr std::array<EdiTipper, tipper_count> components{tipper_x, tipper_y};
constexpr std::array<std::string_view, tipper_count> block_names{">TX", ">TY"};

bool is_value(float value) { return !is_absent(value) && std::isfinite(value); }

bool has_value(const EdiValues& quantity) {
  return quantity.present && std::ranges::any_of(quantity.values, is_value);
}

bool has_part(const EdiSection& section, EdiTipper element) {
  return section.get(element, quantity_real).present || section.get(element, quantity_imaginary).present;
}

bool is_zero_throughout(const EdiSection& section) {
  return std::ranges::all_of(components, [&](EdiTipper element) {
    return std::ranges::all_of(std::array{quantity_real, quantity_imaginary}, [&](EdiQuantity part) {
      return std::ranges::all_of(section.get(element, part).values,
                                 [](float value) { return !is_value(value) || value == 0.0F; });
    });
  });
}

std::vector<EdiTipper> components_with_values(const EdiSection& section) {
  std::vector<EdiTipper> found;
  std::ranges::copy_if(components, std::back_inserter(found), [&](EdiTipper element) {
    return has_value(section.get(element, quantity_real)) ||
           has_value(section.get(element, quantity_imaginary));
  });
  return found;
}

double value_of(const EdiValues& quantity, std::size_t index) {
  return quantity.present ? quantity.number(index) : double{no_data};
}

void remark_on_component(const EdiSection& section, EdiTipper element, FileReport& report) {
  const std::string block(block_names[element]);
  const std::string type(Module_database::tipper_data_types[element]);
  const bool real = has_value(section.get(element, quantity_real));
  const bool imaginary = has_value(section.get(element, quantity_imaginary));
  if (!real && !imaginary && has_part(section, element)) {
    remark_ignored(report, section.line_number,
                   "the blocks " + block + "R and " + block + "I hold no value; no reading " + type,
                   "a tipper without values");
  } else if (real != imaginary) {
    remark_unreadable(report, section.line_number,
                      "the tipper has no block " + block + (real ? "I" : "R") + " with values: the " +
                          (real ? "imaginary" : "real") + " part of " + type + " is absent");
  }
}

// ROT of the blocks names these angles. Without one the tipper has the axes of the impedances.
void remark_on_axes(const EdiSection& section, FileReport& report) {
  constexpr double same_axes = 0.5;  // degrees
  double largest = 0.0;
  for (std::size_t index = 0; index < section.TROT.size(); ++index) {
    const double tipper = section.TROT[index];
    const double impedance = index < section.ZROT.size() ? double{section.ZROT[index]} : 0.0;
    if (!is_absent(tipper) && !is_absent(impedance)) {
      const double difference = std::remainder(tipper - impedance, 360.0);
      largest = std::abs(difference) > std::abs(largest) ? difference : largest;
    }
  }
  if (std::abs(largest) > same_axes) {
    remark_ignored(report, section.line_number,
                   "by TROT and ZROT the tipper's axes are turned by " + plain_text(largest) +
                       " degrees against those of the impedances; it is stored as it stands",
                   "a tipper in other axes than the impedances");
  }
}

}  // namespace

void set_tipper_point(const TipperValue& value, Curve& curve, std::size_t index) {
  using namespace Module_database;
  curve.value(field_resistivity, index) = single_or_absent(value.real);
  curve.value(field_phase, index) = single_or_absent(value.imaginary);
  curve.value(field_impedance_real, index) = curve.value(field_resistivity, index);
  curve.value(field_impedance_imaginary, index) = curve.value(field_phase, index);
  finish_point(curve, index);
  const float error = single_or_absent(value.error);
  for (const int part : {field_resistivity, field_phase}) {
    const bool present = curve.is_present(part, index);
    curve.counts_at(part, index) = present ? 1 : 0;
    if (present && error > 0.0F) {
      curve.error_at(part, index) = error;
    }
  }
}

std::vector<EdiTipper> tipper_of(const EdiSection& section) {
  return is_zero_throughout(section) ? std::vector<EdiTipper>() : components_with_values(section);
}

bool has_tensor(const EdiSection& section) {
  return std::ranges::any_of(section.elements, [](const auto& element) {
    return std::ranges::any_of(element, &EdiValues::present);
  });
}

void fill_tipper_curve(const EdiSection& section, EdiTipper element, Curve& curve) {
  const EdiValues& variances = section.get(element, quantity_variance);
  curve.assign(section.frequencies.size());
  curve.frequencies = section.frequencies;
  for (std::size_t index = 0; index < curve.count(); ++index) {
    const double variance = value_of(variances, index);
    if (variances.present) {
      curve.value(Module_database::field_resistivity_error, index) = variances.values[index];
      curve.value(Module_database::field_phase_error, index) = variances.values[index];
    }
    set_tipper_point({value_of(section.get(element, quantity_real), index),
                      value_of(section.get(element, quantity_imaginary), index),
                      variance > 0.0 ? std::sqrt(variance / 2.0) : double{no_data}},
                     curve, index);
  }
}

void remark_on_zero_tipper(std::int64_t line_number, FileReport& report) {
  remark_ignored(report, line_number,
                 "the tipper is 0 at all frequencies, as programs write it for stations without a sensor of "
                 "Hz; no readings HzHx and HzHy",
                 "a tipper that is 0 throughout, not taken");
}

void remark_on_half_tipper(EdiTipper component, std::int64_t line_number, FileReport& report) {
  remark_unreadable(report, line_number,
                    "the tipper has the component " +
                        std::string(Module_database::tipper_data_types[component]) +
                        " only; an induction arrow takes both");
}

void remark_on_tipper(const EdiSection& section, FileReport& report) {
  if (is_zero_throughout(section) && !components_with_values(section).empty()) {
    remark_on_zero_tipper(section.line_number, report);
    return;
  }
  for (const EdiTipper element : components) {
    remark_on_component(section, element, report);
  }
  const std::vector<EdiTipper> found = tipper_of(section);
  if (found.empty()) {
    return;
  }
  if (found.size() < tipper_count) {
    remark_on_half_tipper(found.front(), section.line_number, report);
  }
  remark_on_axes(section, report);
}

bool take_tipper_reading(FileTask& task, std::size_t element) {
  const ScopedValue sign_of_ey(task.record.axes.EyTurned, Module_database::ey_not_known);
  return take_reading(task, Module_database::tipper_data_types[element]);
}

}  // namespace Module_data_file
