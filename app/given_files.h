// given_files.h: what files and folders mean that are dropped onto the program or given to it at its start.
#pragma once
#include <string>
#include <vector>

namespace Module_Brenlox {

struct GivenFiles {
  std::vector<std::string> surveys;
  std::vector<std::string> field_paths;  // field files, and folders to search for some
};

/// A survey is a file that ends in .mdb, in any case; a folder of that name holds field files.
GivenFiles sort_given_files(const std::vector<std::string>& paths);

/// The folder that names a survey of these files: a folder that is given alone, else that of the first path.
std::string folder_of_given(const std::vector<std::string>& paths);

}  // namespace Module_Brenlox
