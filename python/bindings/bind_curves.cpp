// Curves and repeats of the open survey.
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <pybind11/stl.h>

#include "python/bindings/bindings.h"
#include "python/bindings/survey_readings.h"
#include "python/bindings/survey_turn.h"

namespace Python {

namespace {

namespace py = pybind11;

using Taken = std::vector<std::unique_ptr<TakenReading>>;

CurveQuery query_of(const std::string& line, const std::string& station, const std::string& data_type,
                    std::optional<std::int32_t> reference_type, std::optional<double> dipole,
                    std::optional<double> scan_rate) {
  return {line, station, data_type, reference_type, dipole, scan_rate};
}

py::list attributes_of_all(Taken curves) {
  py::list list;
  for (std::unique_ptr<TakenReading>& taken : curves) {
    list.append(attributes_of(std::move(taken)));
  }
  return list;
}

py::dict curve(const CurveQuery& query, std::int32_t reduction) {
  return attributes_of(at_survey([&] { return find_curve(query, reduction); }));
}

py::list repeats(const CurveQuery& query) {
  return attributes_of_all(at_survey([&] { return find_repeats(query); }));
}

py::list curves(std::int32_t reduction, const std::optional<std::string>& line,
                const std::optional<std::string>& station, const std::optional<std::string>& data_type,
                std::optional<std::int32_t> reference_type, std::optional<double> dipole,
                std::optional<double> scan_rate) {
  const CurveFilter filter{line, station, data_type, reference_type, dipole, scan_rate};
  return attributes_of_all(at_survey([&] { return find_curves(filter, reduction); }));
}

py::dict reading(std::int32_t id) {
  return attributes_of(at_survey([&] { return find_reading(id); }));
}

}  // namespace

void bind_curves(py::module_& module) {
  py::class_<CurveQuery>(module, "CurveQuery")
      .def(py::init(&query_of), py::arg("line"), py::arg("station"), py::arg("data_type"),
           py::arg("reference_type"), py::arg("dipole"), py::arg("scan_rate"));
  module.def("curve", &curve, py::arg("query"), py::arg("reduction"));
  module.def("repeats", &repeats, py::arg("query"));
  module.def("curves", &curves, py::arg("reduction"), py::arg("line"), py::arg("station"),
             py::arg("data_type"), py::arg("reference_type"), py::arg("dipole"), py::arg("scan_rate"));
  module.def("reading", &reading, py::arg("id"));
}

}  // namespace Python
