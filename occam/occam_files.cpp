#include "occam/occam_files.h"

#include <utility>

#include "core/trap_errors.h"
#include "formats/occam/model_blocks.h"
#include "formats/occam/model_file.h"
#include "formats/occam/response_file.h"
#include "formats/occam/text_input.h"
#include "platform/files/safe_files.h"

namespace Module_occam {

namespace {

// The model's readers speak of the iteration file, too: users know the messages by these words.
constexpr const char* control_failed = "An error occurred while reading the control file: ";
constexpr const char* iteration_failed = "An error occurred while reading the iteration file: ";
constexpr const char* response_failed = "An error occurred while reading the response file: ";

/// Runs a reader of a file. A Refusal is shown as it stands, another failure behind `fixed_text`.
template <class Record, class Reader>
int read_into(Record& record, const std::filesystem::path& file, const char* fixed_text,
              EmptyLines empty_lines, Reader&& read) {
  return trap_errors(fixed_text, [&] {
    try {
      record = std::forward<Reader>(read)();
      return 0;
    } catch (const EmptyLine&) {
      if (empty_lines == EmptyLines::reported) {
        user_interface().show_message(file.filename().string() + " has an empty line in place of a text");
      }
    } catch (const Refusal& refusal) {
      user_interface().show_message(refusal.what());
    }
    return -1;
  });
}

}  // namespace

int read_occam_control_file(const std::string& path, ControlFile& names, EmptyLines empty_lines) {
  return read_into(names, path, control_failed, empty_lines, [&] { return read_control_file(path); });
}

int read_occam_data_file(const std::string& path, OccamData& data, EmptyLines empty_lines) {
  return read_into(data, path, control_failed, empty_lines, [&] { return read_data_file_sites(path); });
}

int read_occam_data_rows(const std::string& path, ObservedData& data, EmptyLines empty_lines) {
  // The fixed text is that of the control file, which names this one.
  return read_into(data, path, control_failed, empty_lines,
                   [&] { return read_named_file(path, [&] { return read_data_file(path); }); });
}

int read_occam_model(const std::filesystem::path& run_folder, const std::string& name, const OccamData& sites,
                     OccamModel& model, EmptyLines empty_lines) {
  if (read_into(model, name, iteration_failed, empty_lines,
                [&] { return read_model_file(run_folder, name, sites); }) != 0) {
    return -1;
  }
  report_shared_node(model);
  return 0;
}

void report_shared_node(const OccamModel& model) {
  if (sites_share_node(model.site_node)) {
    user_interface().show_message("Two stations are located on the same node");
  }
}

int read_occam_iteration(IterationParts parts, const std::string& path, OccamIteration& iteration,
                         EmptyLines empty_lines) {
  return read_into(iteration, path, iteration_failed, empty_lines,
                   [&] { return read_iteration_file(parts, path); });
}

int read_occam_response(const std::string& path, const std::string& header_file, OccamResponse& response,
                        EmptyLines empty_lines) {
  return read_into(response, path, response_failed, empty_lines,
                   [&] { return read_response_file(path, header_file); });
}

int write_occam_mesh(const std::string& path, const OccamMesh& mesh, MeshCodes codes) {
  return trap_errors("An error occurred while creating the Occam mesh file: ",
                     [&] { safe_files::write_into_place(path, mesh_file_text(mesh, codes)); });
}

}  // namespace Module_occam
