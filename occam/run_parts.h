// run_parts.h: which files of a folder make a run of the inversion.
#pragma once
#include <filesystem>
#include <string>
#include <vector>

namespace Module_occam {

/// Whether a file says of itself that an inversion can start from it; one of an iteration says so, too.
bool is_of_start_format(const std::filesystem::path& file);

/// The names that a start or iteration file in a folder gives, and those that its model gives: of the data and
/// model file, the mesh, the statics and the prejudice file. They are as written, but for a mesh that the
/// inversion finds under another: in other letters, or beside the model. Some may be empty or of no file that
/// is there. A file that can't be read names nothing.
std::vector<std::string> names_of_run_files(const std::filesystem::path& folder,
                                            const std::filesystem::path& control_file);

}  // namespace Module_occam
