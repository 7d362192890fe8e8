// Tensors: rotation, the phase tensor, strikes and effective impedances, each over arrays of frequencies.
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "numerics/impedance/effective_impedance.h"
#include "numerics/impedance/impedance_strike.h"
#include "numerics/impedance/phase_tensor.h"
#include "python/bindings/array_arguments.h"
#include "python/bindings/bindings.h"
#include "python/bindings/estimate_columns.h"
#include "python/bindings/tensor_arrays.h"

namespace Python {

namespace {

using namespace numerics::impedance;

py::tuple rotated_tensors(const ComplexNumbers& z, const Numbers& covariance, double degrees) {
  const TensorArrays tensors(z, covariance);
  ElementRows rows(tensors.count() * element_count);
  {
    const py::gil_scoped_release without_lock;
    for (std::size_t index = 0; index < tensors.count(); ++index) {
      const Tensor tensor = rotated(tensors.at(index), degrees);
      for (std::size_t element = 0; element < element_count; ++element) {
        rows.append(tensor.z[element], tensor.covariance[element]);
      }
    }
  }
  return rows.take({z.shape(0), 2, 2});
}

constexpr std::array<std::pair<const char*, Estimate PhaseTensor::*>, 14> phase_quantities{
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

py::dict phase_tensors(const ComplexNumbers& z, const Numbers& covariance) {
  const TensorArrays tensors(z, covariance);
  std::vector<std::string> names;
  names.reserve(phase_quantities.size());
  for (const auto& quantity : phase_quantities) {
    names.emplace_back(quantity.first);
  }
  EstimateColumns columns(tensors.count(), std::move(names));
  {
    const py::gil_scoped_release without_lock;
    for (std::size_t index = 0; index < tensors.count(); ++index) {
      const PhaseTensor of_point = phase_tensor(tensors.at(index)).value_or(PhaseTensor{});
      for (std::size_t quantity = 0; quantity < phase_quantities.size(); ++quantity) {
        columns.put(quantity, index, of_point.*phase_quantities[quantity].second);
      }
    }
  }
  return columns.take();
}

/// 1, 2 or 3 of each tensor, 0 of one that has no phase tensor.
py::array_t<std::int32_t> dimensions(const ComplexNumbers& z, const Numbers& covariance, double skew_limit,
                                     double least_ellipticity, bool use_errors) {
  const TensorArrays tensors(z, covariance);
  const DimensionalityLimits limits{skew_limit, least_ellipticity, use_errors};
  std::vector<std::int32_t> classes(tensors.count(), 0);
  {
    const py::gil_scoped_release without_lock;
    for (std::size_t index = 0; index < tensors.count(); ++index) {
      if (const auto of_point = phase_tensor(tensors.at(index))) {
        classes[index] = 1 + static_cast<std::int32_t>(dimensionality(*of_point, limits));
      }
    }
  }
  return array_of(std::move(classes));
}

/// Quantities of one tensor, in the order of their names.
class QuantityRow {
 public:
  QuantityRow(EstimateColumns& columns, std::size_t row) : columns_(columns), row_(row) {}
  void put(const Estimate& estimate) { columns_.put(next_++, row_, estimate); }
  void put(const ApparentEarth& earth) {
    put(earth.resistivity);
    put(earth.phase);
  }

 private:
  EstimateColumns& columns_;
  std::size_t row_;
  std::size_t next_ = 0;
};

py::dict tensor_quantities(const Numbers& frequency, const ComplexNumbers& z, const Numbers& covariance) {
  const TensorArrays tensors(z, covariance);
  check_shape("frequency", frequency, {z.shape(0)});
  std::vector<std::string> names;
  for (const char* const earth : {"xx", "xy", "yx", "yy", "determinant", "mean", "sum_of_squares"}) {
    names.push_back(std::string("resistivity_") + earth);
    names.push_back(std::string("phase_") + earth);
  }
  names.insert(names.end(), {"swift_strike", "swift_skew", "bahr_skew", "bahr_mu", "bahr_sigma"});
  EstimateColumns columns(tensors.count(), std::move(names));
  {
    const py::gil_scoped_release without_lock;
    for (std::size_t index = 0; index < tensors.count(); ++index) {
      const Tensor tensor = tensors.at(index);
      const double hertz = frequency.data()[index];
      QuantityRow row(columns, index);
      for (std::size_t element = 0; element < element_count; ++element) {
        row.put(apparent_earth(tensor.z[element], tensor.covariance[element], hertz));
      }
      row.put(determinant_earth(tensor, hertz));
      row.put(mean_earth(tensor, hertz));
      row.put(sum_of_squares_earth(tensor, hertz));
      const SwiftStrike swift = swift_strike(tensor);
      row.put(swift.strike);
      row.put(swift.skew);
      const BahrSkew bahr = bahr_skew(tensor);
      row.put(bahr.skew);
      row.put(bahr.mu);
      row.put(bahr.sigma);
    }
  }
  return columns.take();
}

}  // namespace

void bind_impedance(py::module_& module) {
  module.def("rotated_tensors", &rotated_tensors, py::arg("z"), py::arg("covariance"), py::arg("degrees"));
  module.def("phase_tensors", &phase_tensors, py::arg("z"), py::arg("covariance"));
  module.def("dimensions", &dimensions, py::arg("z"), py::arg("covariance"), py::arg("skew_limit"),
             py::arg("least_ellipticity"), py::arg("use_errors"));
  module.def("tensor_quantities", &tensor_quantities, py::arg("frequency"), py::arg("z"),
             py::arg("covariance"));
}

}  // namespace Python
