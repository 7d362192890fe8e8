// A new survey, and field files into the open one.
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <pybind11/stl.h>

#include "core/number_text.h"
#include "core/session_state.h"
#include "database/survey_database.h"
#include "import/import_run.h"
#include "import/proposals/import_request.h"
#include "import/report_texts.h"
#include "python/bindings/bindings.h"
#include "python/bindings/python_interface.h"
#include "python/bindings/texts.h"

namespace Python {

namespace py = pybind11;

namespace {

using namespace Module_data_file;

void create_survey(const std::string& path) {
  if (session().database_open) {
    throw SurveyError("A survey is open in this process: " + session().database_file +
                      ". Close it first; one is open at a time.");
  }
  run_work([&] {
    session().database_file = path;
    const int status = Module_database::create_database();
    if (status != 0 && !std::filesystem::exists(path)) {
      user_interface().show_message("The survey " + path + " can't be created");
    }
    return status;
  });
}

StationsBy stations_by(std::string_view name) {
  return name == "distance"        ? StationsBy::distance
         : name == "sectid"        ? StationsBy::sectid
         : name == "sectid_digits" ? StationsBy::sectid_digits
                                   : StationsBy::count;
}

void set_turn_ey(ImportRequest& request, const std::string& name) {
  request.turn_ey_given = true;
  request.choices.turn_ey = name == "always"   ? TurnEy::always
                            : name == "needed" ? TurnEy::where_needed
                                               : TurnEy::never;
}

/// @param row  0 line, 1 event, 2 scan rate
void set_columns(ImportRequest& request, std::size_t row, std::int32_t start, std::int32_t width) {
  request.choices.decode.at(row) = {true, start, width, {}};
}

void set_typed(ImportRequest& request, std::size_t row, const std::string& text) {
  request.choices.decode.at(row) = {false, 0, 0, text};
}

py::list proposals_of(const std::vector<Proposal>& proposals) {
  py::list list;
  for (const Proposal& proposal : proposals) {
    list.append(py::make_tuple(text_of(proposed_title(proposal.choice)), text_of(proposal.value),
                               text_of(proposal.why)));
  }
  return list;
}

py::dict row_of(const PlannedSection& section, const std::string& path) {
  py::dict row;
  row["path"] = text_of(path);
  row["is_stored"] = section.is_stored;
  row["site"] = text_of(section.site);
  row["line"] = text_of(section.line);
  row["station"] = section.station;
  row["stations"] = section.own_stations > 0 ? section.own_stations : 1;
  row["event"] = section.event;
  row["scan_rate"] = section.is_merged ? 0.0 : decimal_of_single(section.rate);
  row["frequencies"] = section.frequencies;
  row["place"] = text_of(section.place);
  row["turn_ey"] = section.turn_ey;
  row["from_impedance"] = section.from_impedance;
  py::list problems;
  for (const PlanProblem problem : section.problems) {
    problems.append(text_of(problem_text(problem)));
  }
  row["problems"] = problems;
  row["remarks"] = texts_of(section.remarks);
  return row;
}

py::dict plan(const ImportRequest& request, py::object progress) {
  require_open();
  ImportRequest looking = request;
  looking.looks = true;
  FoundFiles files;
  PlannedImport planned;
  run_work(
      [&] {
        files = find_files(looking);
        if (files.paths.empty()) {
          return files.stopped ? 0 : -1;
        }
        planned = plan_import(looking, files);
        if (!planned.plan.fault.empty()) {
          user_interface().show_message(planned.plan.fault);
          return -1;
        }
        return 0;
      },
      std::move(progress));
  py::dict result;
  py::list rows;
  for (const PlannedSection& section : planned.plan.sections) {
    rows.append(row_of(section, files.paths[section.file_index]));
  }
  result["rows"] = rows;
  result["proposals"] = proposals_of(planned.proposals);
  result["left_out"] = files.left_out;
  result["summary"] = text_of(files.stopped ? std::string("Stopped") : planned.plan.summary());
  result["stopped"] = files.stopped;
  return result;
}

py::dict file_of(const formats::FileReport& file) {
  py::dict result;
  result["path"] = text_of(file.file);
  result["readings"] = file.readings;
  result["frequencies"] = file.frequencies;
  result["sections_turned"] = file.sections_turned;
  result["replaced_readings"] = file.replaced_readings;
  result["failure"] = text_of(file.failure);
  result["remarks"] = texts_of(remark_lines(file));
  return result;
}

py::dict report_of(const ImportReport& report) {
  py::dict result;
  py::list files;
  for (const formats::FileReport& file : report.files) {
    files.append(file_of(file));
  }
  result["files"] = files;
  py::list stations;
  for (const ScannedStation& found : report.stations) {
    stations.append(py::make_tuple(text_of(found.LineNumber), found.Station));
  }
  result["stations"] = stations;
  const std::vector<ReportGroup> groups = report_groups(report, OptionNames::script);
  py::list problems = texts_of(python_interface().messages());
  for (const std::string& problem : problem_texts(groups, report)) {
    problems.append(text_of(problem));
  }
  result["problems"] = problems;
  result["remarks"] = texts_of(remark_texts(groups));
  result["summary"] = text_of(counts_text(report, ImportMode::import));
  return result;
}

/// Stores what the files hold; those that can't be read are in the report.
py::dict import_files(const ImportRequest& request, py::object progress) {
  require_open();
  FoundFiles files;
  PlannedImport planned{request.choices, {}, {}};
  ImportReport report;
  run_work(
      [&] {
        files = find_files(request);
        if (files.paths.empty()) {
          return files.stopped ? 0 : -1;
        }
        if (request.proposals) {
          planned = plan_import(request, files);
          if (const std::string problems = plan_problems_text(planned.plan); !problems.empty()) {
            user_interface().show_message(problems);
          }
        }
        return run_import(planned.choices, files.paths, ImportMode::import, report, {}, SharedStations::tell,
                          request.proposals ? &planned.plan : nullptr);
      },
      std::move(progress));
  py::dict result = report_of(report);
  result["proposals"] = proposals_of(planned.proposals);
  result["left_out"] = files.left_out;
  result["stopped"] = files.stopped || report.stopped;
  return result;
}

}  // namespace

void bind_import(py::module_& module) {
  py::class_<ImportRequest>(module, "ImportRequest")
      .def(py::init([](std::vector<std::string> paths, bool proposals) {
             ImportRequest request;
             request.paths = std::move(paths);
             request.proposals = proposals;
             request.choices.ReductionType = 0;
             return request;
           }),
           py::arg("paths"), py::arg("proposals"))
      .def_readwrite("extension", &ImportRequest::extension)
      .def(
          "set_reference_type",
          [](ImportRequest& request, std::int32_t type) { request.choices.ReferenceType = type; },
          py::arg("type"))
      .def(
          "set_reduction",
          [](ImportRequest& request, std::int32_t reduction) { request.choices.ReductionType = reduction; },
          py::arg("reduction"))
      .def("set_columns", &set_columns, py::arg("row"), py::arg("start"), py::arg("width"))
      .def("set_typed", &set_typed, py::arg("row"), py::arg("text"))
      .def(
          "set_stations_by",
          [](ImportRequest& request, const std::string& name) {
            request.choices.stations_by = stations_by(name);
          },
          py::arg("name"))
      .def(
          "set_start_station",
          [](ImportRequest& request, std::string text) { request.choices.start_station = std::move(text); },
          py::arg("text"))
      .def(
          "set_station_step",
          [](ImportRequest& request, std::string text) { request.choices.station_step = std::move(text); },
          py::arg("text"))
      .def("set_line_along_north",
           [](ImportRequest& request) { request.choices.line_direction = LineDirection::local_north; })
      .def("set_turn_ey", &set_turn_ey, py::arg("name"))
      .def("set_from_impedance",
           [](ImportRequest& request) { request.choices.compute_from_impedance = true; })
      .def("set_convert_geographic",
           [](ImportRequest& request) { request.choices.convert_coordinates = true; });
  module.def("create_survey", &create_survey, py::arg("path"));
  module.def("plan_import", &plan, py::arg("request"), py::arg("progress"));
  module.def("import_files", &import_files, py::arg("request"), py::arg("progress"));
}

}  // namespace Python
