// Tensors: rotation, the phase tensor, strikes and effective impedances, each over arrays of frequencies.
#include <array>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "numerics/impedance/effective_impedance.h"
#include "numerics/impedance/impedance_strike.h"
#include "numerics/impedance/phase_tensor.h"
#include "numerics/impedance/tensor.h"
#include "numerics/impedance/tipper.h"
#include "python/bindings/array_arguments.h"
#include "python/bindings/bindings.h"

namespace Python {

namespace {

using namespace numerics::impedance;

constexpr py::ssize_t parts = 3;  // of a covariance: real, imaginary, cross
constexpr std::size_t tipper_elements = 2;

PartCovariance covariance_at(const double* at) { return {at[0], at[1], at[2]}; }

/// Tensors of n frequencies: z of shape (n, 2, 2), covariance of shape (n, 2, 2, 3).
class TensorArrays {
 public:
  TensorArrays(const ComplexNumbers& z, const Numbers& covariance) : z_(z), covariance_(covariance) {
    check_shape("z", z, {any_length, 2, 2});
    check_shape("covariance", covariance, {z.shape(0), 2, 2, parts});
  }
  [[nodiscard]] std::size_t count() const { return static_cast<std::size_t>(z_.shape(0)); }
  [[nodiscard]] Tensor at(std::size_t index) const {
    Tensor tensor;
    for (std::size_t element = 0; element < element_count; ++element) {
      tensor.z[element] = z_.data()[index * element_count + element];
      tensor.covariance[element] =
          covariance_at(covariance_.data() + (index * element_count + element) * parts);
    }
    return tensor;
  }

 private:
  const ComplexNumbers& z_;
  const Numbers& covariance_;
};

/// Values and errors of named quantities, an array of shape (n,) each.
class Columns {
 public:
  /// @param names  of the quantities, in the order of the columns
  Columns(std::size_t count, const std::vector<std::string>& names) {
    for (const std::string& name : names) {
      columns_[name].assign(count, not_known);
      columns_[name + "_error"].assign(count, not_known);
    }
  }
  void put(const std::string& name, std::size_t index, const Estimate& estimate) {
    columns_.at(name)[index] = estimate.value;
    columns_.at(name + "_error")[index] = estimate.error;
  }
  [[nodiscard]] py::dict take() {
    py::dict arrays;
    for (auto& [name, numbers] : columns_) {
      arrays[py::str(name)] = array_of(std::move(numbers));
    }
    return arrays;
  }

 private:
  std::map<std::string, std::vector<double>> columns_;
};

py::tuple rotated_tensors(const ComplexNumbers& z, const Numbers& covariance, double degrees) {
  const TensorArrays tensors(z, covariance);
  std::vector<std::complex<double>> turned;
  std::vector<double> known;
  turned.reserve(tensors.count() * element_count);
  known.reserve(tensors.count() * element_count * parts);
  for (std::size_t index = 0; index < tensors.count(); ++index) {
    const Tensor tensor = rotated(tensors.at(index), degrees);
    turned.insert(turned.end(), tensor.z.begin(), tensor.z.end());
    for (const PartCovariance& each : tensor.covariance) {
      known.insert(known.end(), {each.real, each.imaginary, each.cross});
    }
  }
  return py::make_tuple(array_of(std::move(turned), {z.shape(0), 2, 2}),
                        array_of(std::move(known), {z.shape(0), 2, 2, parts}));
}

py::dict phase_tensors(const ComplexNumbers& z, const Numbers& covariance) {
  const TensorArrays tensors(z, covariance);
  constexpr std::array<std::pair<const char*, Estimate PhaseTensor::*>, 14> quantities{
      {{"xx", &PhaseTensor::xx},
       {"xy", &PhaseTensor::xy},
       {"yx", &PhaseTensor::yx},
       {"yy", &PhaseTensor::yy},
       {"alpha", &PhaseTensor::alpha},
       {"beta", &PhaseTensor::beta},
       {"azimuth", &PhaseTensor::azimuth},
       {"phi_max", &PhaseTensor::phi_max},
       {"phi_min", &PhaseTensor::phi_min},
       {"phase_max", &PhaseTensor::phase_max},
       {"phase_min", &PhaseTensor::phase_min},
       {"ellipticity", &PhaseTensor::ellipticity},
       {"determinant", &PhaseTensor::determinant},
       {"geometric_phase", &PhaseTensor::geometric_phase}}};
  std::vector<std::string> names;
  for (const auto& quantity : quantities) {
    names.emplace_back(quantity.first);
  }
  Columns columns(tensors.count(), names);
  for (std::size_t index = 0; index < tensors.count(); ++index) {
    const PhaseTensor of_point = phase_tensor(tensors.at(index)).value_or(PhaseTensor{});
    for (const auto& [name, member] : quantities) {
      columns.put(name, index, of_point.*member);
    }
  }
  return columns.take();
}

py::dict tensor_quantities(const Numbers& frequency, const ComplexNumbers& z, const Numbers& covariance) {
  const TensorArrays tensors(z, covariance);
  check_shape("frequency", frequency, {z.shape(0)});
  constexpr std::array<const char*, element_count> elements{"xx", "xy", "yx", "yy"};
  std::vector<std::string> names{"swift_strike", "swift_skew", "bahr_skew"};
  for (const char* const earth : {"xx", "xy", "yx", "yy", "determinant", "mean", "sum_of_squares"}) {
    names.push_back(std::string("resistivity_") + earth);
    names.push_back(std::string("phase_") + earth);
  }
  Columns columns(tensors.count(), names);
  const auto put_earth = [&columns](const std::string& name, std::size_t index, const ApparentEarth& earth) {
    columns.put("resistivity_" + name, index, earth.resistivity);
    columns.put("phase_" + name, index, earth.phase);
  };
  for (std::size_t index = 0; index < tensors.count(); ++index) {
    const Tensor tensor = tensors.at(index);
    const double hertz = frequency.data()[index];
    for (std::size_t element = 0; element < element_count; ++element) {
      put_earth(elements[element], index,
                apparent_earth(tensor.z[element], tensor.covariance[element], hertz));
    }
    put_earth("determinant", index, determinant_earth(tensor, hertz));
    put_earth("mean", index, mean_earth(tensor, hertz));
    put_earth("sum_of_squares", index, sum_of_squares_earth(tensor, hertz));
    const SwiftStrike swift = swift_strike(tensor);
    columns.put("swift_strike", index, swift.strike);
    columns.put("swift_skew", index, swift.skew);
    columns.put("bahr_skew", index, bahr_skew(tensor).skew);
  }
  return columns.take();
}

py::tuple rotated_tippers(const ComplexNumbers& t, const Numbers& covariance, double degrees) {
  check_shape("t", t, {any_length, 2});
  check_shape("covariance", covariance, {t.shape(0), 2, parts});
  const auto count = static_cast<std::size_t>(t.shape(0));
  std::vector<std::complex<double>> turned;
  std::vector<double> known;
  for (std::size_t index = 0; index < count; ++index) {
    const std::complex<double>* const values = t.data() + index * tipper_elements;
    const double* const errors = covariance.data() + index * tipper_elements * parts;
    const Tipper tipper =
        rotated(Tipper{values[0], values[1], covariance_at(errors), covariance_at(errors + parts)}, degrees);
    turned.insert(turned.end(), {tipper.x, tipper.y});
    for (const PartCovariance& each : {tipper.covariance_x, tipper.covariance_y}) {
      known.insert(known.end(), {each.real, each.imaginary, each.cross});
    }
  }
  return py::make_tuple(array_of(std::move(turned), {t.shape(0), 2}),
                        array_of(std::move(known), {t.shape(0), 2, parts}));
}

}  // namespace

void bind_impedance(py::module_& module) {
  module.def("rotated_tensors", &rotated_tensors, py::arg("z"), py::arg("covariance"), py::arg("degrees"));
  module.def("phase_tensors", &phase_tensors, py::arg("z"), py::arg("covariance"));
  module.def("tensor_quantities", &tensor_quantities, py::arg("frequency"), py::arg("z"),
             py::arg("covariance"));
  module.def("rotated_tippers", &rotated_tippers, py::arg("t"), py::arg("covariance"), py::arg("degrees"));
}

}  // namespace Python
