#include "occam/ground/masked_run.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "core/finished_work.h"
#include "core/number_text.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "formats/occam/iteration_file.h"
#include "occam/occam_files.h"
#include "occam/results/iteration_model.h"
#include "occam/results/run_summary.h"
#include "platform/files/safe_files.h"

namespace fs = std::filesystem;

namespace Module_occam {

namespace {

std::string contents_of(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) {
    throw std::runtime_error(file.string() + " can't be read");
  }
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// Where the value of a header line begins and where the line ends, without its line end.
struct ValuePlace {
  std::size_t begin = 0;
  std::size_t end = 0;
};

std::optional<ValuePlace> value_of(const std::string& text, std::string_view key) {
  std::size_t line = 0;
  while (line < text.size()) {
    const std::size_t end = std::min(text.find('\n', line), text.size());
    const std::size_t colon = text.find(':', line);
    if (colon < end && equal_ignoring_case(trimmed(text.substr(line, colon - line)), key)) {
      return ValuePlace{colon + 1, end > line && text[end - 1] == '\r' ? end - 1 : end};
    }
    line = end + 1;
  }
  return std::nullopt;
}

void replace_value(std::string& text, std::string_view key, const std::string& value) {
  const auto place = value_of(text, key);
  if (!place) {
    throw std::runtime_error("the file has no line \"" + std::string(key) + ":\"");
  }
  constexpr std::size_t column = 18;  // where the values of a header begin
  const std::size_t line = text.rfind('\n', place->begin) + 1;
  const std::size_t used = place->begin - line;
  text.replace(place->begin, place->end - place->begin,
               std::string(used < column ? column - used : 1, ' ') + value);
}

/// The start values of the blocks that the mask leaves free, and of the free static shifts behind them.
std::vector<double> kept_parameters(const TopoMask& mask, const std::vector<double>& parameters) {
  std::vector<double> kept;
  for (const OccamBlock& block : mask.model.blocks) {
    if (is_free(block, mask.masked)) {
      kept.push_back(parameters.at(static_cast<std::size_t>(block.parameter_number) - 1));
    }
  }
  kept.insert(kept.end(), parameters.begin() + mask.model.num_free_params, parameters.end());
  return kept;
}

std::string start_text(std::string text, const std::string& model_file,
                       const std::vector<double>& parameters) {
  constexpr std::size_t in_line = 4;
  constexpr std::size_t width = 15;
  replace_value(text, "MODEL FILE", model_file);
  const char* const key = value_of(text, "NO. PARMS") ? "NO. PARMS" : "PARAM COUNT";
  replace_value(text, key, std::to_string(parameters.size()));
  text.erase(std::min(text.find('\n', value_of(text, key)->begin), text.size()));
  const std::string line_end = text.ends_with('\r') ? "\n" : "\r\n";
  text += line_end;
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    text += pad_field(format_number(parameters[i], "0.0000"), width);
    text += (i + 1) % in_line == 0 || i + 1 == parameters.size() ? "\r\n" : "";
  }
  return text;
}

/// Model and start file of a masked mesh, not yet written.
struct PlannedRun {
  MaskedRun run;
  std::vector<safe_files::NewFile> files;
};

/// Nothing where there is no run to make them from. Throws std::runtime_error if its files can't be read.
PlannedRun plan_run(const std::string& mesh_path, const TopoMask& mask) {
  if (mask.model_path.empty()) {
    return {};  // a model that came from no file
  }
  const fs::path mesh = fs::absolute(mesh_path);
  const fs::path model = fs::absolute(mask.model_path);
  const fs::path folder = model.parent_path();
  std::error_code ignored;
  if (!fs::equivalent(folder, mesh.parent_path(), ignored)) {
    return {};
  }
  const fs::path control = control_file_of(folder, model.filename().string());
  if (control.empty()) {
    return {};
  }
  const OccamIteration start = read_iteration_file(IterationParts::with_parameters, control.string());
  if (std::string mismatch =
          parameter_mismatch(mask.model, control.filename().string(), start.parameter_count);
      !mismatch.empty()) {
    throw std::runtime_error(mismatch);
  }
  const std::vector<double> parameters = kept_parameters(mask, start.parameters);
  PlannedRun planned{{mesh.stem().string() + "_model", mesh.stem().string() + "_startup",
                      static_cast<int>(parameters.size())},
                     {}};
  std::string model_text = contents_of(model);
  replace_value(model_text, "MESH FILE", mesh.filename().string());
  planned.files = {{folder / planned.run.model_file, std::move(model_text)},
                   {folder / planned.run.start_file,
                    start_text(contents_of(control), planned.run.model_file, parameters)}};
  return planned;
}

/// Asks once, by their names, for those that exist.
bool may_replace(const std::vector<safe_files::NewFile>& files) {
  std::string existing;
  for (const safe_files::NewFile& file : files) {
    std::error_code ignored;
    if (fs::exists(file.destination, ignored)) {
      existing += (existing.empty() ? " " : ", ") + file.destination.string();
    }
  }
  return existing.empty() ||
         user_interface().ask_yes_no("The specified file already exists. Overwrite?" + existing);
}

std::string report_of(const std::string& path, const TopoMask& mask, const MaskedRun& run) {
  std::string text = "Number of free parameters: " + std::to_string(free_triangles(mask.masked)) +
                     " (triangles of the mesh). The mesh is written to " + path;
  if (!run.start_file.empty()) {
    text += ", with the model " + run.model_file + " and the start file " + run.start_file + " of " +
            std::to_string(run.parameters) + " parameters (blocks and static shifts that stay free)";
  }
  return text;
}

}  // namespace

int write_masked_mesh(const std::string& path, const TopoMask& mask, MaskedRun& run) {
  if (const std::string report = wall_report(wall_stations(mask)); !report.empty()) {
    user_interface().show_message(report);
  }
  return trap_errors("An error occurred while creating the start file of the mesh: ", [&] {
    PlannedRun planned = plan_run(path, mask);
    if (!may_replace(planned.files)) {
      return -1;
    }
    OccamMesh mesh = mask.model.mesh;
    mesh.mesh_code = mask.masked;
    if (write_occam_mesh(path, mesh, MeshCodes::from_mesh) != 0) {
      return -1;
    }
    if (!planned.files.empty()) {
      safe_files::write_together(planned.files);
    }
    run = std::move(planned.run);
    user_interface().show_message(report_of(path, mask, run));
    Module_Brenlox::tell_finished("The masked mesh is written to " + path, path);
    return 0;
  });
}

}  // namespace Module_occam
