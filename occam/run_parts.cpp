#include "occam/run_parts.h"

#include <exception>
#include <string_view>

#include "core/text_fields.h"
#include "formats/occam/mesh_file.h"
#include "formats/occam/model_file.h"
#include "formats/occam/text_input.h"

namespace fs = std::filesystem;

namespace Module_occam {

std::string own_start(const std::string& control_file) {
  const bool of_folder = equal_ignoring_case(control_file, "startup") ||
                         equal_ignoring_case(std::string_view(control_file).substr(0, 4), "ITER");
  return of_folder ? std::string() : control_file;
}

bool is_of_run(const std::string& control_file, const std::string& model_file,
               const OccamIteration& iteration) {
  const auto same = [](const std::string& a, const std::string& b) {
    return equal_ignoring_case(fs::path(a).lexically_normal().string(),
                               fs::path(b).lexically_normal().string());
  };
  return own_start(control_file).empty() || iteration.model_file.empty() ||
         same(iteration.model_file, model_file);
}

bool is_of_start_format(const fs::path& file) {
  try {
    return TextInput(file.string()).line().find("OCCAMITER_") != std::string_view::npos;
  } catch (const std::exception&) {  // another kind of file
    return false;
  }
}

std::vector<std::string> names_of_run_files(const fs::path& folder, const fs::path& control_file) {
  ControlFile named;
  ModelNames of_model;
  try {
    named = read_control_file(control_file.string());
    of_model = read_model_names((folder / named.model_file).string());
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): names that were read before count
  }
  std::string mesh = of_model.mesh_file;
  const fs::path found = find_mesh_file(mesh, folder, (folder / named.model_file).string());
  if (!found.empty() && fs::path(mesh).is_relative()) {
    mesh = found.lexically_relative(folder).string();
  }
  return {named.model_file, named.data_file, mesh, of_model.statics_file, of_model.prejudice_file};
}

}  // namespace Module_occam
