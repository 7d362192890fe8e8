// The strike that the tensors and tippers of stations have in common.
#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <pybind11/stl.h>

#include "python/bindings/array_arguments.h"
#include "python/bindings/bindings.h"
#include "python/bindings/tensor_arrays.h"
#include "tensor/line_strike.h"

namespace Python {

namespace {

using namespace numerics::impedance;
using namespace Module_tensor;

const std::map<std::string, StrikeMethod> methods{{"phase_tensor", StrikeMethod::phase_tensor_azimuth},
                                                  {"phase_tensor_alpha", StrikeMethod::phase_tensor_alpha},
                                                  {"swift", StrikeMethod::swift_sum},
                                                  {"tipper", StrikeMethod::tipper}};

void check_frequencies(const Numbers& frequency, std::size_t count) {
  check_shape("frequency", frequency, {static_cast<py::ssize_t>(count)});
  for (const double hertz : elements_of(frequency)) {
    if (!(hertz > 0.0 && std::isfinite(hertz))) {
      throw py::value_error("frequency: expected finite numbers above 0");
    }
  }
}

/// The stations whose strike is asked for, all of them in axes to the north.
class StrikeLine {
 public:
  void add_tensors(const Numbers& frequency, const ComplexNumbers& z, const Numbers& covariance,
                   double axes) {
    const TensorArrays tensors(z, covariance);
    check_frequencies(frequency, tensors.count());
    StationTensor& station = add_station(axes);
    for (std::size_t index = 0; index < tensors.count(); ++index) {
      station.points.push_back({frequency.data()[index], tensors.at(index), 0});
    }
  }

  void add_tippers(const Numbers& frequency, const ComplexNumbers& t, const Numbers& covariance,
                   double axes) {
    const TipperArrays tippers(t, covariance);
    check_frequencies(frequency, tippers.count());
    StationTensor& station = add_station(axes);
    for (std::size_t index = 0; index < tippers.count(); ++index) {
      station.tipper.push_back({frequency.data()[index], tippers.at(index)});
    }
  }

  /// The strike in a band, or in each of its decades that has data.
  [[nodiscard]] py::list strikes(double lowest, double highest, bool by_decade, const std::string& method,
                                 bool weighted, double skew_limit, double least_ellipticity) const {
    const StrikeChoices choices{methods.at(method),
                                weighted ? StrikeWeights::ellipticity_squared : StrikeWeights::none,
                                skew_limit, least_ellipticity};
    std::vector<FrequencyBand> bands;
    std::vector<BandStrike> found;
    {
      const py::gil_scoped_release without_lock;
      const std::vector<StrikeStation> stations = strike_stations(stations_);
      const FrequencyBand data = whole_band(stations).value_or(FrequencyBand{});
      const FrequencyBand band{std::max(lowest, data.lower), std::min(highest, data.upper)};
      bands = by_decade ? decades_of(stations, band) : std::vector{band};
      for (const FrequencyBand& each : bands) {
        found.push_back(line_strike(stations, each, choices));
      }
    }
    py::list list;
    for (std::size_t index = 0; index < bands.size(); ++index) {
      list.append(strike_of(bands[index], found[index]));
    }
    return list;
  }

 private:
  StationTensor& add_station(double axes) {
    StationTensor& station = stations_.emplace_back();
    station.axes = axes;
    station.axes_known = true;
    return station;
  }

  static py::dict strike_of(const FrequencyBand& band, const BandStrike& strike) {
    py::dict result;
    result["band"] = py::make_tuple(band.lower, band.upper);
    result["strike"] = strike.strike.value;
    result["error"] = strike.strike.error;
    result["alternative"] = strike.alternative;
    result["concentration"] = strike.concentration;
    result["deviation"] = strike.deviation;
    result["used"] = strike.used;
    result["left_out"] = strike.left_out;
    return result;
  }

  std::vector<StationTensor> stations_;
};

}  // namespace

void bind_strike(py::module_& module) {
  py::class_<StrikeLine>(module, "StrikeLine")
      .def(py::init<>())
      .def("add_tensors", &StrikeLine::add_tensors, py::arg("frequency"), py::arg("z"), py::arg("covariance"),
           py::arg("axes"))
      .def("add_tippers", &StrikeLine::add_tippers, py::arg("frequency"), py::arg("t"), py::arg("covariance"),
           py::arg("axes"))
      .def("strikes", &StrikeLine::strikes, py::arg("lowest"), py::arg("highest"), py::arg("by_decade"),
           py::arg("method"), py::arg("weighted"), py::arg("skew_limit"), py::arg("least_ellipticity"));
}

}  // namespace Python
