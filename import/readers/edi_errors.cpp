#include "import/readers/edi_errors.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <limits>
#include <numbers>
#include <optional>
#include <vector>

#include "core/absent_value.h"
#include "core/median.h"
#include "import/readers/standard_errors.h"
#include "numerics/constants.h"
#include "numerics/impedance/tensor.h"

namespace Module_data_file {

using namespace formats::edi;

namespace {

using Module_database::Curve;

constexpr double largest_log_error = 1.0;     // decades
constexpr double uninformative_phase = 90.0;  // degrees; some programs print up to 1e9 for diagonal elements

double value_of(const EdiValues& values, std::size_t index) {
  return values.present ? values.number(index) : double{no_data};
}

/// How far the numbers of >RHOxx.ERR are from the phase errors, in natural logarithms.
struct Distances {
  std::vector<double> of_logarithm;
  std::vector<double> ohm_m;
  std::vector<double> numbers;  // all of them

  void add(const EdiSection& section, std::size_t element, std::size_t index) {
    const double number = value_of(section.get(element, quantity_resistivity_error), index);
    const double resistivity = value_of(section.get(element, quantity_resistivity), index);
    const double phase_error = value_of(section.get(element, quantity_phase_error), index);
    if (!(number > 0.0)) {
      return;
    }
    numbers.push_back(number);
    if (resistivity > 0.0 && phase_error > 0.0 && phase_error < uninformative_phase) {
      const double p = phase_error * numerics::radians_per_degree;
      of_logarithm.push_back(std::abs(std::log(number * std::numbers::ln10 / 2.0 / p)));
      ohm_m.push_back(std::abs(std::log(number / (2.0 * resistivity) / p)));
    }
  }
};

// The variance that the errors of the blocks give, those of resistivity taken as errors of the logarithm,
// over that of the file; none where neither of them is known. Where one is, it counts for both parts of the
// impedance.
std::optional<double> variance_ratio(const EdiSection& section, std::size_t element, std::size_t index) {
  const double variance = value_of(section.get(element, quantity_variance), index);
  const std::complex<double> z(value_of(section.get(element, quantity_real), index),
                               value_of(section.get(element, quantity_imaginary), index));
  const double logarithm = value_of(section.get(element, quantity_resistivity_error), index);
  const double phase = value_of(section.get(element, quantity_phase_error), index);
  const auto is_usable = [](double error) { return error > 0.0 || is_absent(error); };
  const bool has_error = logarithm > 0.0 || phase > 0.0;
  if (!(variance > 0.0 && has_error && is_usable(logarithm) && is_usable(phase)) || is_absent(z.real()) ||
      is_absent(z.imag())) {
    return std::nullopt;
  }
  constexpr double not_known = std::numeric_limits<double>::quiet_NaN();
  const numerics::impedance::PartCovariance parts = numerics::impedance::covariance_of(
      z, 1.0, logarithm > 0.0 ? logarithm * std::numbers::ln10 : not_known, phase > 0.0 ? phase : not_known);
  return parts.is_known() ? std::optional((parts.real + parts.imaginary) / variance) : std::nullopt;
}

bool has_both_errors(const EdiSection& section, std::size_t element, std::size_t index) {
  return value_of(section.get(element, quantity_resistivity_error), index) > 0.0 &&
         value_of(section.get(element, quantity_phase_error), index) > 0.0;
}

// Whether the blocks of errors make the variance, at all points that have both of these or, where none has,
// at all that have one. Then they say more than it: how far each of resistivity and phase is known, also
// where the other one is absent.
bool blocks_make_variance(const EdiSection& section, std::size_t element) {
  constexpr double printed =
      1e-5;  // relative; numbers of fewer digits than that say no more than the variance
  if (!section.get(element, quantity_resistivity_error).present ||
      !section.get(element, quantity_phase_error).present) {
    return false;
  }
  std::size_t of_both = 0;
  std::size_t of_one = 0;
  bool one_differs = false;
  for (std::size_t index = 0; index < section.frequencies.size(); ++index) {
    const auto ratio = variance_ratio(section, element, index);
    if (!ratio) {
      continue;
    }
    const bool is_made = std::abs(*ratio - 1.0) < printed;
    if (!has_both_errors(section, element, index)) {
      ++of_one;
      one_differs = one_differs || !is_made;
    } else if (!is_made) {
      return false;
    } else {
      ++of_both;
    }
  }
  return of_both > 0 || (of_one > 0 && !one_differs);
}

// False if it gives none.
bool set_errors_from_variance(const EdiSection& section, std::size_t element, Curve& curve) {
  const EdiValues& variance = section.get(element, quantity_variance);
  const bool has_phase = section.get(element, quantity_phase).present;
  for (std::size_t index = 0; variance.present && index < curve.count(); ++index) {
    const double relative =
        relative_error(variance.values[index], {value_of(section.get(element, quantity_real), index),
                                                value_of(section.get(element, quantity_imaginary), index)});
    if (has_phase) {
      set_errors(relative, curve, index);
    } else {
      set_resistivity_error(2.0 * curve.value(Module_database::field_resistivity, index) * relative, curve,
                            index);
    }
  }
  return !curve.errors.empty();
}

}  // namespace

ResistivityErrorKind resistivity_error_kind(const EdiSection& section) {
  Distances distances;
  for (std::size_t element = 0; element < element_count; ++element) {
    if (blocks_make_variance(section, element)) {
      return ResistivityErrorKind::of_logarithm;
    }
    for (std::size_t index = 0; index < section.frequencies.size(); ++index) {
      distances.add(section, element, index);
    }
  }
  const bool is_ohm_m = distances.ohm_m.empty()
                            ? !distances.numbers.empty() && median(distances.numbers) > largest_log_error
                            : median(distances.ohm_m) < median(distances.of_logarithm);
  return is_ohm_m ? ResistivityErrorKind::ohm_m : ResistivityErrorKind::of_logarithm;
}

void fill_errors(const EdiSection& section, std::size_t element, ResistivityErrorKind kind, Curve& curve) {
  if (!blocks_make_variance(section, element) && set_errors_from_variance(section, element, curve)) {
    return;
  }
  const bool has_phase = section.get(element, quantity_phase).present;
  for (std::size_t index = 0; index < curve.count(); ++index) {
    const double number = value_of(section.get(element, quantity_resistivity_error), index);
    const double resistivity = curve.value(Module_database::field_resistivity, index);
    set_resistivity_error(
        kind == ResistivityErrorKind::ohm_m ? number : number * std::numbers::ln10 * resistivity, curve,
        index);
    if (has_phase) {
      set_phase_error(value_of(section.get(element, quantity_phase_error), index), curve, index);
    }
  }
}

}  // namespace Module_data_file
