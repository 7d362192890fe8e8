// Layered ground: its response, and a curve as resistivity over depth.
#include <cmath>
#include <complex>
#include <stdexcept>
#include <string>
#include <vector>

#include "numerics/impedance/bostick.h"
#include "numerics/impedance/layered_earth.h"
#include "python/bindings/array_arguments.h"
#include "python/bindings/bindings.h"
#include "python/bindings/estimate_columns.h"

namespace Python {

namespace {

using namespace numerics::impedance;

void require_positive(const char* name, const Numbers& numbers) {
  for (py::ssize_t index = 0; index < numbers.size(); ++index) {
    const double number = numbers.data()[index];
    if (!(number > 0.0 && std::isfinite(number))) {
      throw py::value_error(std::string(name) + ": expected finite numbers above 0, received " +
                            py::str(py::float_(number)).cast<std::string>() + " at index " +
                            std::to_string(index));
    }
  }
}

ComplexNumbers layered_impedance(const Numbers& resistivity, const Numbers& thickness,
                                 const Numbers& frequency) {
  check_shape("resistivity", resistivity, {any_length});
  if (resistivity.size() == 0) {
    throw py::value_error("resistivity: expected one layer at least, received none");
  }
  check_shape("thickness", thickness, {resistivity.shape(0) - 1});
  check_shape("frequency", frequency, {any_length});
  require_positive("resistivity", resistivity);
  require_positive("thickness", thickness);
  require_positive("frequency", frequency);
  std::vector<std::complex<double>> impedances(static_cast<std::size_t>(frequency.size()));
  {
    const py::gil_scoped_release without_lock;
    std::vector<Layer> layers;
    for (const double each : elements_of(resistivity)) {
      const std::size_t layer = layers.size();
      layers.push_back({each, layer < elements_of(thickness).size() ? elements_of(thickness)[layer] : 0.0});
    }
    for (std::size_t index = 0; index < impedances.size(); ++index) {
      impedances[index] = surface_impedance(layers, elements_of(frequency)[index]);
    }
  }
  return array_of(std::move(impedances));
}

py::dict niblett_bostick(const Numbers& frequency, const Numbers& resistivity, const Numbers& phase,
                         const Numbers& resistivity_error, const Numbers& phase_error) {
  check_shape("frequency", frequency, {any_length});
  const py::ssize_t count = frequency.shape(0);
  check_shape("resistivity", resistivity, {count});
  check_shape("phase", phase, {count});
  check_shape("resistivity_error", resistivity_error, {count});
  check_shape("phase_error", phase_error, {count});
  const auto rows = static_cast<std::size_t>(count);
  EstimateColumns columns(rows, {"depth", "resistivity"});
  for (std::size_t row = 0; row < rows; ++row) {
    const ApparentEarth earth{{resistivity.data()[row], resistivity_error.data()[row]},
                              {phase.data()[row], phase_error.data()[row]}};
    const double hertz = frequency.data()[row];
    if (earth.resistivity.value > 0.0 && hertz > 0.0) {
      const BostickPoint point = bostick_point(earth, hertz);
      columns.put(0, row, point.depth);
      columns.put(1, row, point.resistivity);
    }
  }
  return columns.take();
}

}  // namespace

void bind_earth(py::module_& module) {
  module.def("layered_impedance", &layered_impedance, py::arg("resistivity"), py::arg("thickness"),
             py::arg("frequency"));
  module.def("niblett_bostick", &niblett_bostick, py::arg("frequency"), py::arg("resistivity"),
             py::arg("phase"), py::arg("resistivity_error"), py::arg("phase_error"));
}

}  // namespace Python
