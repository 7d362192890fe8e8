#include "occam/results/run_view.h"

#include <algorithm>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "core/trap_errors.h"
#include "formats/occam/model_file.h"
#include "occam/occam_files.h"
#include "occam/results/iteration_response.h"
#include "platform/files/folder_access.h"

namespace fs = std::filesystem;

namespace Module_occam {

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

void RunView::write_to(const fs::path& folder) {
  std::error_code ignored;
  const bool is_run = fs::equivalent(folder, results_.folder, ignored);
  results_.output_folder = is_run ? results_.folder / derived_folder : folder;
}

bool RunView::can_write() const { return can_write_into(results_.output_folder); }

/// @param name  of the model file that an iteration names. Throws as read_model_file
void RunView::follow_model(const std::string& name) {
  if (!name.empty() && name != results_.names.model_file) {
    results_.model = read_model_file(results_.folder, name, results_.data);
    results_.names.model_file = name;
  }
}

int RunView::load_iteration() {
  if (!results_.has(current_iteration_)) {
    loaded_iteration_file_.clear();
    iteration_ = {};
    return -1;
  }
  const std::string& name = results_.iteration_file[static_cast<std::size_t>(current_iteration_)];
  const FileStamp stamp = file_stamp(results_.folder / name);
  if (name == loaded_iteration_file_ && stamp == loaded_iteration_stamp_) {
    return iteration_.parameters.empty() ? -1 : 0;  // a failure has been reported
  }
  loaded_iteration_file_ = name;
  loaded_iteration_stamp_ = stamp;
  iteration_ = {};
  OccamIteration iteration;
  if (read_occam_iteration(IterationParts::with_parameters, (results_.folder / name).string(), iteration,
                           EmptyLines::reported) != 0) {
    return -1;
  }
  if (trap_errors("The model of " + name + " can't be read: ", [&] { follow_model(iteration.model_file); }) !=
      0) {
    return -1;
  }
  const std::string mismatch = parameter_mismatch(results_.model, name, iteration.parameter_count);
  if (!mismatch.empty()) {
    user_interface().show_message(mismatch);
    return -1;
  }
  IterationModel loaded = iteration_model(results_.model, iteration);
  if (trap_errors("The static shifts that were found can't be read: ", [&] {
        loaded.found_shifts = found_shifts(results_.folder, current_iteration_, results_.model).shifts;
      }) != 0) {
    return -1;
  }
  iteration_ = std::move(loaded);
  return 0;
}

std::vector<double> RunView::parameters_of(int iteration) const {
  if (!results_.has(iteration)) {
    throw std::runtime_error("there is no file of iteration " + std::to_string(iteration));
  }
  const OccamIteration read =
      read_iteration_file(IterationParts::with_parameters, results_.file_of(iteration).string());
  const std::string mismatch = parameter_mismatch(
      results_.model, results_.iteration_file[static_cast<std::size_t>(iteration)], read.parameter_count);
  if (!mismatch.empty()) {
    throw std::runtime_error(mismatch);
  }
  return iteration_model(results_.model, read).parameters;
}

SectionGeometry RunView::section(const SectionChoices& choices, PictureSize picture) {
  SectionGeometry section{.picture = picture};
  if (load_iteration() != 0) {
    return section;
  }
  if (trap_errors("An error occurred while drawing the model: ", [&] {
        section = section_geometry(results_.model, iteration_.parameters, choices, picture);
      }) != 0) {
    iteration_ = {};  // reported once
  }
  return section;
}

int RunView::load_response() {
  response_ready_ = false;
  const fs::path file = find_response(results_, current_iteration_);
  if ((file.empty() ? compute_current() : read_response(file)) != 0) {
    return -1;
  }
  response_ready_ = true;
  choose_site(current_site_);
  return 0;
}

int RunView::compute_current() {
  if (load_iteration() != 0) {
    return -1;
  }
  if (!can_write()) {
    const auto computed = compute_response(results_, iteration_);
    if (!computed) {
      return -1;
    }
    response_ = as_read(*computed);
    response_file_.clear();
  } else if (make_response(results_, current_iteration_, iteration_) != 0 ||
             read_response(find_response(results_, current_iteration_)) != 0) {
    return -1;
  }
  if (!std::exchange(mesh_warnings_reported_, true)) {
    report_mesh_warnings(results_, iteration_);
  }
  return 0;
}

int RunView::read_response(const fs::path& file) {
  if (file.empty()) {
    user_interface().show_message("The response file does not exist");
    return -1;
  }
  const FileStamp stamp = file_stamp(file);
  if (file != response_file_ || stamp != response_stamp_) {
    response_file_ = file;
    response_stamp_ = stamp;
    response_read_ = read_occam_response(file.string(), response_header(results_).string(), response_,
                                         EmptyLines::reported) == 0;
  }
  return response_read_ ? 0 : -1;  // reported when it was read
}

}  // namespace Module_occam
