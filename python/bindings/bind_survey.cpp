// The open survey: opening it, what it holds, its tensors, and recalculation.
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <pybind11/functional.h>
#include <pybind11/stl.h>

#include "core/number_text.h"
#include "core/session_state.h"
#include "core/undo_stack.h"
#include "database/frequency_store.h"
#include "database/sites.h"
#include "database/survey_database.h"
#include "database/survey_lists.h"
#include "database/survey_summary.h"
#include "platform/dao/case_folding.h"
#include "python/bindings/array_arguments.h"
#include "python/bindings/bindings.h"
#include "python/bindings/python_interface.h"
#include "python/bindings/survey_readings.h"
#include "python/bindings/texts.h"
#include "reduction/averages.h"
#include "reduction/data_sets/data_sets.h"
#include "tensor/line_tensors.h"

namespace Python {

namespace {

using Module_tensor::StationTensor;

/// The session as it is before the first survey.
void forget_edits() {
  Module_Brenlox::clear_undo();
  Module_averaged_data::reset_data_sets();
}

void open_survey_file(const std::string& path, bool read_only) {
  run_work([&] {
    if (session().database_open) {
      throw SurveyError("A survey is open in this process: " + session().database_file +
                        ". Close it first; one is open at a time.");
    }
    forget_edits();
    session().database_file = path;
    return Module_database::open_database(read_only ? Module_database::OpenFor::reading
                                                    : Module_database::OpenFor::editing);
  });
}

void close_survey() {
  run_work([] {
    forget_edits();
    return session().database_open ? Module_database::close_database() : 0;
  });
}

py::object or_none(const std::optional<double>& value) {
  return value ? py::object(py::float_(*value)) : py::object(py::none());
}

py::list sites_of(const std::vector<Module_database::Site>& sites) {
  py::list list;
  for (const Module_database::Site& site : sites) {
    py::dict row;
    row["line"] = text_of(site.line);
    row["station"] = site.station;
    row["name"] = site.name.empty() ? py::object(py::none()) : py::object(text_of(site.name));
    row["latitude"] = or_none(site.latitude);
    row["longitude"] = or_none(site.longitude);
    row["elevation"] = or_none(site.elevation);
    list.append(row);
  }
  return list;
}

/// A row of FileTable.
struct ImportedFile {
  std::int32_t ID = 0;
  std::string name;
  std::string line;
  double station = 0.0;
  std::int32_t event = 0;
  std::int32_t reference_type = 0;
  std::int32_t reduction = 0;
  float scan_rate = 0.0F;  // Hz
  float dipole = 0.0F;     // m
};

std::vector<ImportedFile> imported_files() {
  std::vector<ImportedFile> files;
  dao::Recordset rows =
      Module_database::open_survey().database.open_recordset("SELECT * FROM FileTable ORDER BY ID");
  for (; !rows.eof(); rows.move_next()) {
    files.push_back({rows.get_long("ID"), rows.get_text("SurveyFile"), rows.get_text("LineNumber"),
                     rows.get_double("Station"), rows.get_long("EventNumber"), rows.get_long("ReferenceType"),
                     rows.get_long("ReductionType"), rows.get_single("SampleRate"),
                     rows.get_single("DipoleLength")});
  }
  return files;
}

struct PlacedStation {
  Module_database::ListedStation station;
  Module_database::Site site;
};

std::vector<PlacedStation> placed_stations() {
  std::map<std::pair<std::string, double>, Module_database::Site> sites;
  for (Module_database::Site& site : Module_database::listed_sites()) {
    std::pair place(dao::folded_text(site.line), site.station);
    sites.try_emplace(std::move(place), std::move(site));
  }
  std::vector<PlacedStation> stations;
  for (Module_database::ListedStation& station : Module_database::listed_stations()) {
    const auto found = sites.find({dao::folded_text(station.line), station.station});
    stations.push_back({std::move(station), found == sites.end() ? Module_database::Site() : found->second});
  }
  return stations;
}

py::list stations() {
  py::list list;
  for (const auto& [station, site] : at_survey(placed_stations)) {
    py::dict row;
    row["line"] = text_of(station.line);
    row["number"] = station.station;
    row["name"] = text_of(station.name);
    row["map_x"] = station.place.map_x;
    row["map_y"] = station.place.map_y;
    row["latitude"] = or_none(site.latitude);
    row["longitude"] = or_none(site.longitude);
    row["elevation"] = or_none(site.elevation);
    list.append(row);
  }
  return list;
}

py::list kinds(const std::string& line) {
  py::list list;
  for (const Module_tensor::LineChoice& kind :
       at_survey([&] { return Module_tensor::kinds_of_line(Module_database::spelled_line(line)); })) {
    list.append(py::make_tuple(kind.reference_type, decimal_of_single(kind.dipole)));
  }
  return list;
}

py::list station_kinds(const std::string& line, const std::string& station) {
  py::list list;
  for (const StationKind& kind : at_survey([&] { return kinds_of_station(line, station); })) {
    list.append(py::make_tuple(text_of(kind.data_type), kind.reduction, decimal_of_single(kind.scan_rate),
                               kind.reference_type, decimal_of_single(kind.dipole)));
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

/// @param query  without a station: all stations of the line
py::list tensors(const CurveQuery& query) {
  const Module_tensor::LineChoice kind = at_survey([&] { return find_kind(query); });
  const bool all = query.station.empty();
  const double only = all ? 0.0 : at_survey([&] { return find_station(kind.line, query.station); });
  Module_tensor::LineTensors line;
  Frequencies frequencies;
  run_work([&] {
    require_open();
    frequencies = Module_database::read_frequency_list(kind.reference_type);
    return Module_tensor::load_line_tensors(kind, frequencies, line);
  });
  py::list list;
  for (StationTensor& station : line.stations) {
    if (all || station.station == only) {
      leave_out_disabled(frequencies, station);
      list.append(tensor_of(station));
    }
  }
  return list;
}

py::dict info() {
  const Module_database::SurveySummary summary = at_survey(Module_database::read_survey_summary);
  py::dict tables;
  for (const auto& [table, rows] : summary.tables) {
    tables[text_of(table)] = rows;
  }
  py::list lines;
  for (const Module_database::LineSummary& line : summary.lines) {
    py::dict row;
    row["line"] = text_of(line.line);
    row["stations"] = line.stations;
    lines.append(row);
  }
  py::dict result;
  result["tables"] = tables;
  result["lines"] = lines;
  result["sites"] = sites_of(summary.sites);
  result["reference_types"] = summary.reference_types;
  result["data_types"] = texts_of(summary.data_types);
  result["dipoles"] = summary.dipoles;
  result["scan_rates"] = summary.scan_rates;
  return result;
}

py::list files() {
  py::list list;
  for (const ImportedFile& file : at_survey(imported_files)) {
    py::dict row;
    row["id"] = file.ID;
    row["name"] = text_of(file.name);
    row["line"] = text_of(file.line);
    row["station"] = file.station;
    row["event"] = file.event;
    row["reference_type"] = file.reference_type;
    row["reduction"] = file.reduction;
    row["scan_rate"] = decimal_of_single(file.scan_rate);
    row["dipole"] = decimal_of_single(file.dipole);
    list.append(row);
  }
  return list;
}

void recalculate(py::object progress) {
  run_work(
      [] {
        require_open();
        return Module_averaged_data::recalculate_merged();
      },
      std::move(progress));
}

}  // namespace

void bind_survey(py::module_& module) {
  py::register_exception<SurveyError>(module, "Error");
  module.def("open_survey", &open_survey_file, py::arg("path"), py::arg("read_only"));
  module.def("close_survey", &close_survey);
  module.def("leave_survey_to_parent", &leave_survey_to_parent);
  module.def("messages", [] { return texts_of(python_interface().messages()); });
  module.def("lines", [] { return texts_of(at_survey(Module_database::listed_lines)); });
  module.def("stations", &stations);
  module.def("info", &info);
  module.def("files", &files);
  module.def("kinds", &kinds, py::arg("line"));
  module.def("station_kinds", &station_kinds, py::arg("line"), py::arg("station"));
  module.def("tensors", &tensors, py::arg("query"));
  module.def("recalculate", &recalculate, py::arg("progress"));
}

}  // namespace Python
