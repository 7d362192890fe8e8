// Files that other programs read, of the open survey.
#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <pybind11/stl.h>

#include "exchange/asked_lines.h"
#include "exchange/export_files.h"
#include "output/rhoplus.h"
#include "output/rhoplus_settings.h"
#include "output/zonge.h"
#include "output/zonge_files.h"
#include "projections/survey_projection.h"
#include "python/bindings/bindings.h"
#include "python/bindings/python_interface.h"
#include "python/bindings/survey_readings.h"
#include "python/bindings/texts.h"

namespace Python {

namespace py = pybind11;

namespace {

using Module_exchange::ExportChoices;
using Module_exchange::ExportResult;
using Module_output::RhoplusSettings;

/// What a caller asks an export for; the lines are looked up in the survey.
struct ExportRequest {
  Module_exchange::AskedLines lines;
  ExportChoices choices;
};

ExportRequest export_request(const std::string& format, std::vector<std::string> lines,
                             std::optional<std::int32_t> reference_type, std::optional<double> dipole,
                             const std::string& folder) {
  ExportRequest request;
  request.lines.lines = std::move(lines);
  request.lines.reference_type = reference_type;
  if (dipole) {
    request.lines.dipole = static_cast<float>(*dipole);
  }
  request.lines.option_names = "reference_type and dipole";
  const auto* const name = std::ranges::find(Module_exchange::export_format_names, format);
  request.choices.format =
      static_cast<Module_exchange::ExportFormat>(name - Module_exchange::export_format_names.begin());
  request.choices.folder = folder;
  return request;
}

py::dict export_survey(ExportRequest request, bool overwrite, py::object progress) {
  require_open();
  ExportChoices& choices = request.choices;
  choices.lines.resize(1);  // for those that are looked up below
  if (const std::string fault = fault_of(choices); !fault.empty()) {
    throw py::value_error(fault);
  }
  ExportResult result;
  run_work(
      [&] {
        static_cast<void>(Module_projections::apply_survey_projection());  // a survey may have none
        choices.lines = choose_lines(request.lines, Module_exchange::line_kinds(choices.format));
        if (choices.lines.empty()) {
          return -1;
        }
        const auto show_share = [](double share) {
          constexpr double percents = 100.0;
          user_interface().show_progress("", static_cast<int>(percents * share));
          return !user_interface().stop_requested();
        };
        const int status = export_files(choices, show_share, result);
        return result.declined ? -1 : status;
      },
      std::move(progress), overwrite);
  py::dict report;
  report["files"] = texts_of(result.files);
  py::list remarks = texts_of(python_interface().messages());
  for (const std::string& remark : result.remarks) {
    remarks.append(text_of(remark));
  }
  report["remarks"] = remarks;
  report["stopped"] = result.stopped;
  return report;
}

/// The paths and the number of rows; none if the user stopped it.
py::object write_zonge(const CurveQuery& query, const std::string& path, bool overwrite,
                       py::object progress) {
  require_open();
  const Module_database::LineSelection selection = find_line_selection(query);
  const Module_output::ZongePaths paths = Module_output::zonge_paths(path);
  int rows = 0;
  run_work(
      [&] { return may_write_zonge(paths) ? Module_output::output_zonge(selection, path, {}, rows) : -1; },
      std::move(progress), overwrite);
  if (rows == Module_output::nothing_written) {
    return py::none();
  }
  return py::make_tuple(text_of(paths.avg), text_of(paths.mde), text_of(paths.stn), rows);
}

py::dict write_rhoplus(const CurveQuery& query, const std::string& folder, const RhoplusSettings& settings,
                       std::optional<double> rotation, py::object progress) {
  require_open();
  const Module_database::LineSelection selection = find_line_selection(query);
  Module_output::RhoplusCounts counts;
  run_work([&] { return Module_output::output_rhoplus(selection, folder, settings, {}, counts, rotation); },
           std::move(progress));
  py::dict result;
  result["stations"] = counts.stations;
  result["rows"] = counts.rows;
  result["stopped"] = counts.stopped;
  result["summary"] = text_of(Module_output::rhoplus_summary(counts, settings, folder));
  return result;
}

}  // namespace

void bind_export(py::module_& module) {
  py::class_<RhoplusSettings>(module, "RhoplusSettings")
      .def(py::init<>())
      .def_readwrite("root_name", &RhoplusSettings::root_name)
      .def_readwrite("surface", &RhoplusSettings::surface)
      .def_readwrite("resistivity_error_floor", &RhoplusSettings::resistivity_error_floor)
      .def_readwrite("phase_error_floor", &RhoplusSettings::phase_error_floor)
      .def_readwrite("resistivity_scale", &RhoplusSettings::resistivity_scale)
      .def_readwrite("exclude_data", &RhoplusSettings::exclude_data)
      .def_readwrite("apply_static", &RhoplusSettings::apply_static)
      .def_readwrite("exclude_negative_phase", &RhoplusSettings::exclude_negative_phase)
      .def_readwrite("use_file_errors", &RhoplusSettings::use_file_errors);
  py::class_<ExportRequest>(module, "ExportRequest")
      .def(py::init(&export_request), py::arg("format"), py::arg("lines"), py::arg("reference_type"),
           py::arg("dipole"), py::arg("folder"))
      .def(
          "set_rotation", [](ExportRequest& request, double azimuth) { request.choices.rotation = azimuth; },
          py::arg("azimuth"))
      .def(
          "set_reduction",
          [](ExportRequest& request, std::int32_t reduction) { request.choices.reduction = reduction; },
          py::arg("reduction"))
      .def(
          "set_rhoplus",
          [](ExportRequest& request, const RhoplusSettings& settings) { request.choices.rhoplus = settings; },
          py::arg("settings"))
      .def(
          "set_plot_link",
          [](ExportRequest& request, std::string link) { request.choices.plot_link = std::move(link); },
          py::arg("link"));
  module.def("export_survey", &export_survey, py::arg("request"), py::arg("overwrite"), py::arg("progress"));
  module.def("write_zonge", &write_zonge, py::arg("query"), py::arg("path"), py::arg("overwrite"),
             py::arg("progress"));
  module.def("write_rhoplus", &write_rhoplus, py::arg("query"), py::arg("folder"), py::arg("settings"),
             py::arg("rotation"), py::arg("progress"));
}

}  // namespace Python
