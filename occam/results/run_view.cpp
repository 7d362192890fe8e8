#include "occam/results/run_view.h"

#include <algorithm>
#include <utility>

#include "core/scope_guard.h"
#include "core/trap_errors.h"
#include "formats/occam/response_file.h"
#include "numerics/section/mesh_warnings.h"
#include "occam/occam_files.h"
#include "occam/results/model_response.h"
#include "platform/files/safe_files.h"

namespace fs = std::filesystem;

namespace Module_occam {

namespace {

constexpr const char* response_failed = "An error occurred while calculating the response: ";

bool show_share(double share) {
  user_interface().show_progress("Calculating the response", static_cast<int>(100.0 * share));
  user_interface().process_events();
  return !user_interface().stop_requested();
}

/// The data file with the sites and frequencies of a response without a header.
fs::path header_file(const RunResults& results) {
  const fs::path usual = results.folder / response_header_file;
  return fs::exists(usual) ? usual : results.folder / results.names.data_file;
}

}  // namespace

fs::path find_response(const RunResults& results, int iteration) {
  const std::string& name = results.response_file[static_cast<std::size_t>(iteration)];
  if (name.empty()) {
    return {};
  }
  fs::path made = results.folder / derived_folder / name;
  if (fs::exists(made) && file_stamp(made).written >= file_stamp(results.file_of(iteration)).written) {
    return made;
  }
  fs::path left = results.folder / name;
  return fs::exists(left) ? left : fs::path();
}

void report_mesh_warnings(const RunResults& results, const std::vector<double>& parameters) {
  ObservedData data;
  if (read_occam_data_rows((results.folder / results.names.data_file).string(), data) != 0) {
    return;
  }
  static_cast<void>(trap_errors(response_failed, [&] {
    std::string text;
    for (const std::string& warning : numerics::section::mesh_warnings(
             response_section(results.model, parameters), data.site_offsets, data.frequencies)) {
      text += "\n" + warning;
    }
    if (!text.empty()) {
      user_interface().show_message("The mesh limits how exact the response is:" + text);
    }
  }));
}

int make_response(const RunResults& results, int iteration, const std::vector<double>& parameters) {
  ObservedData data;
  if (read_occam_data_rows((results.folder / results.names.data_file).string(), data) != 0) {
    return -1;
  }
  return trap_errors(response_failed, [&] {
    const BusyPointer busy;
    const ScopeGuard end_progress([] { user_interface().show_progress("", -1); });
    const auto modelled =
        model_data(results.model, parameters, data, show_share,
                   limits_at(results.iteration_debug_level[static_cast<std::size_t>(iteration)]));
    if (!modelled) {
      return -1;
    }
    if (modelled->other_rows > 0) {
      user_interface().show_message(std::to_string(modelled->other_rows) +
                                    " data are neither apparent resistivity nor phase; the response leaves "
                                    "them out");
    }
    const fs::path folder = results.folder / derived_folder;
    fs::create_directory(folder);
    safe_files::write_into_place(folder / results.response_file[static_cast<std::size_t>(iteration)],
                                 response_file_text(data, *modelled));
    return 0;
  });
}

RunView::RunView(RunResults results)
    : results_(std::move(results)), current_iteration_(results_.last_iteration) {}

void RunView::choose_iteration(int iteration) {
  current_iteration_ = std::clamp(iteration, 0, results_.last_iteration);
  response_ready_ = false;
}

void RunView::choose_site(int site_number) {
  current_site_ = std::clamp(site_number, 1, std::max(response_.resp_sites(), 1));
}

/// Whether the response that was read has changed and the writing has ended.
bool RunView::response_has_settled() {
  if (response_file_.empty()) {
    return false;
  }
  const FileStamp now = file_stamp(response_file_);
  return std::exchange(seen_response_stamp_, now) == now && now != response_stamp_;
}

bool RunView::refresh() {
  const bool listed = refresh_results(results_);
  const bool response_changed = response_has_settled();
  current_iteration_ = std::min(current_iteration_, results_.last_iteration);
  if (listed || response_changed) {
    response_ready_ = false;
  }
  return listed || response_changed;
}

int RunView::load_iteration() {
  if (!results_.has(current_iteration_)) {
    loaded_iteration_file_.clear();
    parameters_.clear();
    return -1;
  }
  const std::string& name = results_.iteration_file[static_cast<std::size_t>(current_iteration_)];
  const FileStamp stamp = file_stamp(results_.folder / name);
  if (name == loaded_iteration_file_ && stamp == loaded_iteration_stamp_) {
    return parameters_.empty() ? -1 : 0;  // a failure has been reported
  }
  loaded_iteration_file_ = name;
  loaded_iteration_stamp_ = stamp;
  parameters_.clear();
  OccamIteration iteration;
  if (read_occam_iteration(IterationParts::with_parameters, (results_.folder / name).string(), iteration) !=
      0) {
    return -1;
  }
  parameters_ = std::move(iteration.parameters);
  return 0;
}

SectionGeometry RunView::section(const SectionChoices& choices, PictureSize picture) {
  SectionGeometry section{.picture = picture};
  if (load_iteration() != 0) {
    return section;
  }
  if (trap_errors("An error occurred while drawing the model: ",
                  [&] { section = section_geometry(results_.model, parameters_, choices, picture); }) != 0) {
    parameters_.clear();  // reported once
  }
  return section;
}

int RunView::load_response() {
  response_ready_ = false;
  fs::path file = find_response(results_, current_iteration_);
  if (file.empty()) {
    if (load_iteration() != 0 || make_response(results_, current_iteration_, parameters_) != 0) {
      return -1;
    }
    if (!std::exchange(mesh_warnings_reported_, true)) {
      report_mesh_warnings(results_, parameters_);
    }
    file = find_response(results_, current_iteration_);
  }
  if (file.empty()) {
    user_interface().show_message("The response file does not exist");
    return -1;
  }
  const FileStamp stamp = file_stamp(file);
  if (file != response_file_ || stamp != response_stamp_) {
    response_file_ = file;
    response_stamp_ = stamp;
    response_read_ = read_occam_response(file.string(), header_file(results_).string(), response_) == 0;
  }
  if (!response_read_) {
    return -1;  // reported when it was read
  }
  response_ready_ = true;
  choose_site(current_site_);
  return 0;
}

}  // namespace Module_occam
