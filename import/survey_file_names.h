// survey_file_names.h: the names under which the files of one import go into the survey.
//
// The survey knows a file by its name. Namesakes from different folders take as much of their path as tells
// them apart: "north/01.edi". A name has "/" between its parts whatever the system, at most as many
// characters as its column, and no apostrophe, as the programs
// that share these files can't search for one.
#pragma once
#include <string>
#include <string_view>
#include <vector>

namespace Module_data_file {

struct SurveyFileName {
  std::string name;
  bool repeated = false;  // the list has this very file before
};

/// A name for each file; no two files have one that differs in case alone. A file without namesakes keeps its
/// bare name as it is.
std::vector<SurveyFileName> survey_file_names(const std::vector<std::string>& files);

/// The names that other imports may have given a file: the tails of its path, the longest first, the bare
/// name last.
std::vector<std::string> path_tails(const std::string& file);

/// The name with " (2)" or another number behind it, cut at the left to its column.
std::string numbered_name(const std::string& name, int number);

/// The name without the " (2)" that tells it from one that differs in case alone.
std::string_view without_number(std::string_view name);

}  // namespace Module_data_file
