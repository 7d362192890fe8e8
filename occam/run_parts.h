// run_parts.h: which files of a folder make a run of the inversion.
#pragma once
#include <filesystem>
#include <string>
#include <vector>

#include "formats/occam/iteration_file.h"

namespace Module_occam {

/// The name of a control file where it stands for one run among those of its folder: a start file other than
/// "startup", as a masked mesh has one beside that of the mesh that it was made from. Else empty: "startup"
/// and any iteration file stand for the folder.
std::string own_start(const std::string& control_file);

/// Whether an iteration in the folder of a control file belongs to its run: all do unless it has an
/// own_start(), whose iterations name its model.
/// @param control_file  without folder
bool is_of_run(const std::string& control_file, const std::string& model_file,
               const OccamIteration& iteration);

/// Whether a file says of itself that an inversion can start from it; one of an iteration says so, too.
bool is_of_start_format(const std::filesystem::path& file);

/// The names that a start or iteration file in a folder gives, and those that its model gives: of the data
/// and model file, the mesh, the statics and the prejudice file. They are as written, but for a mesh that the
/// inversion finds under another: in other letters, or beside the model. Some may be empty or of no file that
/// is there. A file that can't be read names nothing.
std::vector<std::string> names_of_run_files(const std::filesystem::path& folder,
                                            const std::filesystem::path& control_file);

}  // namespace Module_occam
