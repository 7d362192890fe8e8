// Tippers: rotation and induction arrows over arrays of frequencies.
#include <string>
#include <utility>
#include <vector>

#include "numerics/impedance/tipper.h"
#include "python/bindings/array_arguments.h"
#include "python/bindings/bindings.h"
#include "python/bindings/estimate_columns.h"
#include "python/bindings/tensor_arrays.h"

namespace Python {

namespace {

using namespace numerics::impedance;

py::tuple rotated_tippers(const ComplexNumbers& t, const Numbers& covariance, double degrees) {
  const TipperArrays tippers(t, covariance);
  ElementRows rows(2 * tippers.count());
  {
    const py::gil_scoped_release without_lock;
    for (std::size_t index = 0; index < tippers.count(); ++index) {
      const Tipper tipper = rotated(tippers.at(index), degrees);
      rows.append(tipper.x, tipper.covariance_x);
      rows.append(tipper.y, tipper.covariance_y);
    }
  }
  return rows.take({t.shape(0), 2});
}

py::dict induction_arrows(const ComplexNumbers& t, const Numbers& covariance, bool wiese,
                          bool imaginary_reversed) {
  const TipperArrays tippers(t, covariance);
  const ArrowConvention convention = wiese ? ArrowConvention::wiese : ArrowConvention::parkinson;
  EstimateColumns columns(tippers.count(), {"real_length", "real_azimuth", "imaginary_length",
                                            "imaginary_azimuth", "magnitude", "strike"});
  const auto put = [&columns](std::size_t first, std::size_t index, const Arrow& arrow) {
    columns.put(first, index, arrow.length);
    columns.put(first + 1, index, arrow.azimuth);
  };
  {
    const py::gil_scoped_release without_lock;
    for (std::size_t index = 0; index < tippers.count(); ++index) {
      const Tipper tipper = tippers.at(index);
      put(0, index, real_arrow(tipper, convention));
      put(2, index, imaginary_arrow(tipper, imaginary_reversed));
      columns.put(4, index, tipper_magnitude(tipper));
      columns.put(5, index, tipper_strike(tipper));
    }
  }
  return columns.take();
}

}  // namespace

void bind_tipper(py::module_& module) {
  module.def("rotated_tippers", &rotated_tippers, py::arg("t"), py::arg("covariance"), py::arg("degrees"));
  module.def("induction_arrows", &induction_arrows, py::arg("t"), py::arg("covariance"), py::arg("wiese"),
             py::arg("imaginary_reversed"));
}

}  // namespace Python
