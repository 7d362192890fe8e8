// The two-dimensional inversion: making a run from the survey, and inverting one.
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <pybind11/stl.h>

#include "core/trap_errors.h"
#include "occam/inversion/run_inversion.h"
#include "occam/setup/create_inversion.h"
#include "platform/files/settled_path.h"
#include "projections/line_distances.h"
#include "projections/survey_projection.h"
#include "python/bindings/bindings.h"
#include "python/bindings/interruption.h"
#include "python/bindings/python_interface.h"
#include "python/bindings/survey_readings.h"
#include "python/bindings/texts.h"

namespace Python {

namespace py = pybind11;

namespace {

using namespace Module_occam;
using numerics::occam_inversion::Ending;

using Entries = std::map<std::string, std::string>;

/// The entries of a new run that are typed in its window, by the names that scripts give them.
void take_entries(const Entries& given, InversionInputs& inputs) {
  static const std::map<std::string, std::string InversionInputs::*> known{
      {"model_file", &InversionInputs::model_file},
      {"data_file", &InversionInputs::data_file},
      {"iterations", &InversionInputs::max_iterations},
      {"target_rms", &InversionInputs::target_RMS},
      {"resistivity_floor", &InversionInputs::res_error_floor},
      {"phase_floor", &InversionInputs::phase_error_floor},
      {"te_resistivity_floor", &InversionInputs::te_res_error_floor},
      {"te_phase_floor", &InversionInputs::te_phase_error_floor},
      {"layers", &InversionInputs::num_layers},
      {"layers_per_decade", &InversionInputs::layers_per_decade},
      {"top_layer", &InversionInputs::top_layer},
      {"block_width", &InversionInputs::block_width},
      {"doubling_threshold", &InversionInputs::doubling_threshold},
      {"initial_resistivity", &InversionInputs::initial_res},
      {"first_station", &InversionInputs::first_station},
      {"last_station", &InversionInputs::last_station},
      {"description", &InversionInputs::description},
      {"subdirectory", &InversionInputs::occam_directory}};
  for (const auto& [name, text] : given) {
    inputs.*known.at(name) = text;
  }
}

/// How a run is made, beside its entries.
struct RunSwitches {
  bool both_modes = true;
  std::optional<bool> relative_errors;  // none: as is usual for the modes
  bool by_distance = false;
  bool standard_deviation = false;
  bool rhoplus_errors = true;
  bool apply_static = true;
  bool file_errors = false;
  std::optional<double> rotation;
};

InversionInputs inputs_of(const std::string& folder, const Entries& entries, const RunSwitches& switches) {
  InversionInputs inputs;
  inputs.directory = settled_path(folder).string();
  take_entries(entries, inputs);
  inputs.modes = switches.both_modes ? ModeChoice::both : ModeChoice::current_type;
  if (switches.relative_errors) {
    inputs.errors = *switches.relative_errors ? ErrorForm::relative : ErrorForm::as_before;
  }
  inputs.positions = switches.by_distance ? PositionSource::distances : PositionSource::station_numbers;
  inputs.use_standard_error = !switches.standard_deviation;
  inputs.use_rhoplus_error = switches.rhoplus_errors;
  inputs.apply_static = switches.apply_static;
  inputs.rotate_to_strike = switches.rotation;
  return inputs;
}

void warn_of_station_numbers(const std::string& line) {
  const Module_projections::LineDistances distances = Module_projections::line_distances(line);
  if (!distances.warning.empty()) {
    user_interface().show_message(distances.warning + (distances.known() ? ": see by_distance" : ""));
  }
}

/// The folder of the run, None if the user stopped it, and what there is to be told.
py::tuple create_run(const CurveQuery& query, const std::string& folder, const Entries& entries,
                     const RunSwitches& switches, bool overwrite, py::object progress) {
  require_open();
  const Module_database::LineSelection selection = find_line_selection(query);
  const InversionInputs inputs = inputs_of(folder, entries, switches);
  Module_output::RhoplusSettings rhoplus;
  rhoplus.use_file_errors = switches.file_errors ? 1 : 0;
  CreatedInversion created;
  run_work(
      [&] {
        static_cast<void>(Module_projections::apply_survey_projection());  // a survey may have none
        if (!switches.by_distance) {
          warn_of_station_numbers(selection.line);
        }
        return create_inversion(selection, inputs, rhoplus, {}, created);
      },
      std::move(progress), overwrite);
  return py::make_tuple(created.stopped ? py::object(py::none()) : py::object(text_of(created.directory)),
                        texts_of(python_interface().messages()));
}

py::dict step_of(const InversionStep& step) {
  py::dict result;
  result["iteration"] = step.iteration;
  result["rms"] = step.rms;
  result["roughness"] = step.roughness;
  result["log10_multiplier"] = step.log10_multiplier;
  result["change"] = step.step;
  result["trials"] = step.trials;
  result["seconds"] = step.seconds;
  return result;
}

const char* name_of(Ending ending) {
  switch (ending) {
    case Ending::smooth_and_fitting:
      return "smooth_and_fitting";
    case Ending::perfectly_smooth:
      return "perfectly_smooth";
    case Ending::iterations_done:
      return "iterations_done";
    case Ending::no_better_fit:
      return "no_better_fit";
    case Ending::stopped:
      break;
  }
  return "stopped";
}

py::dict dict_of(const InversionReport& report) {
  py::dict result;
  result["ending"] = name_of(report.ending);
  result["reason"] = text_of(report.reason);
  py::list steps;
  for (const InversionStep& step : report.steps) {
    steps.append(step_of(step));
  }
  result["steps"] = steps;
  result["target_rms"] = report.target_rms;
  result["earlier_folder"] = text_of(report.earlier_folder);
  return result;
}

/// @param progress  None, or called with each step; False stops
py::dict invert(const std::string& folder, const InversionOptions& options, const py::object& progress) {
  Interruption interruption;
  InversionListener listener;
  listener.progress = [&](const InversionProgress& /*under_way*/) { return !interruption.asked(); };
  if (!progress.is_none()) {
    listener.step = [&](const InversionStep& step) {
      interruption.tell([&] { return progress(step_of(step)); });
    };
  }
  InversionReport report;
  try {
    const py::gil_scoped_release without_lock;
    report = run_inversion(settled_path(folder), options, listener);
  } catch (const EarlierIterations& earlier) {
    throw SurveyError(earlier.what() +
                      std::string(" With overwrite=True they move into a folder of their own") +
                      (options.go_on ? "." : "; go_on=True goes on from the last one."));
  } catch (const std::exception& failure) {
    interruption.rethrow();
    throw SurveyError(failure_message("The inversion failed: ", failure));
  }
  interruption.rethrow();
  return dict_of(report);
}

}  // namespace

void bind_inversion(py::module_& module) {
  py::class_<RunSwitches>(module, "RunSwitches")
      .def(py::init<>())
      .def_readwrite("both_modes", &RunSwitches::both_modes)
      .def_readwrite("relative_errors", &RunSwitches::relative_errors)
      .def_readwrite("by_distance", &RunSwitches::by_distance)
      .def_readwrite("standard_deviation", &RunSwitches::standard_deviation)
      .def_readwrite("rhoplus_errors", &RunSwitches::rhoplus_errors)
      .def_readwrite("apply_static", &RunSwitches::apply_static)
      .def_readwrite("file_errors", &RunSwitches::file_errors)
      .def_readwrite("rotation", &RunSwitches::rotation);
  py::class_<InversionOptions>(module, "InversionOptions")
      .def(py::init<>())
      .def_readwrite("start", &InversionOptions::from)
      .def_readwrite("go_on", &InversionOptions::go_on)
      .def_readwrite("may_move_earlier", &InversionOptions::may_move_earlier)
      .def_readwrite("iterations", &InversionOptions::iterations)
      .def_readwrite("target_rms", &InversionOptions::target_rms)
      .def_readwrite("roughness_type", &InversionOptions::roughness_type)
      .def("set_classic_search",
           [](InversionOptions& options) { options.search = numerics::occam_inversion::Search::classic; })
      .def_readwrite("robust", &InversionOptions::robust)
      .def_readwrite("static_shift", &InversionOptions::static_shift)
      .def_readwrite("threads", &InversionOptions::threads);
  module.def("create_run", &create_run, py::arg("query"), py::arg("folder"), py::arg("entries"),
             py::arg("switches"), py::arg("overwrite"), py::arg("progress"));
  module.def("invert_run", &invert, py::arg("folder"), py::arg("options"), py::arg("progress"));
}

}  // namespace Python
