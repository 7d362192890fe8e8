// The open survey: what it holds, its readings, tensors, and recalculation.
#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <pybind11/functional.h>
#include <pybind11/stl.h>

#include "core/number_text.h"
#include "core/session_state.h"
#include "database/frequency_store.h"
#include "database/sites.h"
#include "database/survey_database.h"
#include "database/survey_lists.h"
#include "python/bindings/array_arguments.h"
#include "python/bindings/bindings.h"
#include "python/bindings/python_interface.h"
#include "python/bindings/survey_readings.h"
#include "python/bindings/texts.h"
#include "reduction/averages.h"
#include "tensor/line_tensors.h"

namespace Python {

namespace {

using Module_tensor::StationTensor;

void open_survey_file(const std::string& path, bool read_only) {
  if (session().database_open) {
    throw SurveyError("A survey is open in this process: " + session().database_file +
                      ". Close it first; one is open at a time.");
  }
  run_work([&] {
    session().database_file = path;
    return Module_database::open_database(read_only ? Module_database::OpenFor::reading
                                                    : Module_database::OpenFor::editing);
  });
}

void close_survey() {
  if (session().database_open) {
    run_work([] { return Module_database::close_database(); });
  }
}

py::object or_none(const std::optional<double>& value) {
  return value ? py::object(py::float_(*value)) : py::object(py::none());
}

py::list stations() {
  require_open();
  py::list list;
  const std::vector<Module_database::Site> sites = Module_database::listed_sites();
  for (const Module_database::ListedStation& station : Module_database::listed_stations()) {
    py::dict row;
    row["line"] = text_of(station.line);
    row["station"] = station.station;
    row["name"] = text_of(station.name);
    row["map_x"] = station.place.map_x;
    row["map_y"] = station.place.map_y;
    const auto site = std::ranges::find_if(sites, [&](const Module_database::Site& each) {
      return each.line == station.line && each.station == station.station;
    });
    const bool has_site = site != sites.end();
    row["latitude"] = or_none(has_site ? site->latitude : std::nullopt);
    row["longitude"] = or_none(has_site ? site->longitude : std::nullopt);
    row["elevation"] = or_none(has_site ? site->elevation : std::nullopt);
    list.append(row);
  }
  return list;
}

py::list kinds(const std::string& line) {
  require_open();
  py::list list;
  for (const Module_tensor::LineChoice& kind :
       Module_tensor::kinds_of_line(Module_database::spelled_line(line))) {
    list.append(py::make_tuple(kind.reference_type, decimal_of_single(kind.dipole)));
  }
  return list;
}

CurveQuery query_of(const std::string& line, const std::string& station, const std::string& data_type,
                    std::optional<std::int32_t> reference_type, std::optional<double> dipole,
                    std::optional<double> scan_rate) {
  return {line, station, data_type, reference_type, dipole, scan_rate};
}

py::dict curve(const CurveQuery& query, std::int32_t reduction) {
  require_open();
  return attributes_of(find_curve(query, reduction));
}

py::list repeats(const CurveQuery& query) {
  require_open();
  py::list list;
  for (std::unique_ptr<TakenReading>& taken : find_repeats(query)) {
    list.append(attributes_of(std::move(taken)));
  }
  return list;
}

void append(const numerics::impedance::PartCovariance& known, std::vector<double>& covariance) {
  covariance.insert(covariance.end(), {known.real, known.imaginary, known.cross});
}

py::dict tensor_arrays(const StationTensor& station) {
  constexpr py::ssize_t parts = 3;
  std::vector<double> frequencies;
  std::vector<std::complex<double>> z;
  std::vector<double> covariance;
  for (const Module_tensor::TensorPoint& point : station.points) {
    frequencies.push_back(point.frequency);
    z.insert(z.end(), point.tensor.z.begin(), point.tensor.z.end());
    for (const auto& known : point.tensor.covariance) {
      append(known, covariance);
    }
  }
  const auto count = static_cast<py::ssize_t>(station.points.size());
  py::dict arrays;
  arrays["frequency"] = array_of(std::move(frequencies));
  arrays["z"] = array_of(std::move(z), {count, 2, 2});
  arrays["covariance"] = array_of(std::move(covariance), {count, 2, 2, parts});
  return arrays;
}

py::dict tipper_arrays(const StationTensor& station) {
  constexpr py::ssize_t parts = 3;
  std::vector<double> frequencies;
  std::vector<std::complex<double>> t;
  std::vector<double> covariance;
  for (const Module_tensor::TipperPoint& point : station.tipper) {
    frequencies.push_back(point.frequency);
    t.insert(t.end(), {point.tipper.x, point.tipper.y});
    append(point.tipper.covariance_x, covariance);
    append(point.tipper.covariance_y, covariance);
  }
  const auto count = static_cast<py::ssize_t>(station.tipper.size());
  py::dict arrays;
  arrays["frequency"] = array_of(std::move(frequencies));
  arrays["t"] = array_of(std::move(t), {count, 2});
  arrays["covariance"] = array_of(std::move(covariance), {count, 2, parts});
  return arrays;
}

py::dict tensor_of(const StationTensor& station) {
  py::dict result;
  result["station"] = station.station;
  result["name"] = text_of(station.name);
  result["axes"] = station.axes;
  result["axes_known"] = station.axes_known;
  result["ey_turned"] = station.ey_turned;
  result["refusal"] = text_of(station.refusal);
  result["remarks"] = texts_of(station.remarks);
  result["tensor"] = tensor_arrays(station);
  result["tipper"] = tipper_arrays(station);
  return result;
}

/// @param station  empty: all stations of the line
py::list tensors(const CurveQuery& query) {
  require_open();
  const Module_tensor::LineChoice kind = find_kind(query);
  const bool all = query.station.empty();
  const double only = all ? 0.0 : find_station(kind.line, query.station);
  Module_tensor::LineTensors line;
  const Frequencies frequencies = Module_database::read_frequency_list(kind.reference_type);
  run_work([&] { return Module_tensor::load_line_tensors(kind, frequencies, line); });
  py::list list;
  for (StationTensor& station : line.stations) {
    if (all || station.station == only) {
      leave_out_disabled(frequencies, station);
      list.append(tensor_of(station));
    }
  }
  return list;
}

void recalculate(py::object progress) {
  require_open();
  run_work([] { return Module_averaged_data::recalculate_merged(); }, std::move(progress));
}

}  // namespace

void bind_survey(py::module_& module) {
  py::register_exception<SurveyError>(module, "Error");
  py::class_<CurveQuery>(module, "CurveQuery")
      .def(py::init(&query_of), py::arg("line"), py::arg("station"), py::arg("data_type"),
           py::arg("reference_type"), py::arg("dipole"), py::arg("scan_rate"));
  module.def("open_survey", &open_survey_file, py::arg("path"), py::arg("read_only"));
  module.def("close_survey", &close_survey);
  module.def("messages", [] { return texts_of(python_interface().messages()); });
  module.def("lines", [] {
    require_open();
    return texts_of(Module_database::listed_lines());
  });
  module.def("stations", &stations);
  module.def("kinds", &kinds, py::arg("line"));
  module.def("curve", &curve, py::arg("query"), py::arg("reduction"));
  module.def("repeats", &repeats, py::arg("query"));
  module.def("tensors", &tensors, py::arg("query"));
  module.def("recalculate", &recalculate, py::arg("progress"));
}

}  // namespace Python
