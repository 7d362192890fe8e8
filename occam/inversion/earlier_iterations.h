// earlier_iterations.h: the iteration files of a run directory, and what becomes of those that a new
// inversion would replace.
#pragma once
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace Module_occam {

/// The iteration files of a directory by their numbers, which stand behind "ITER" in their names. Throws
/// std::filesystem::filesystem_error if the directory can't be read.
std::map<int, std::string> iteration_files_of(const std::filesystem::path& directory);

/// Iterations beyond a number, with their responses, and the log where the inversion starts anew.
class EarlierIterationFiles {
 public:
  /// @param last_kept  iterations up to this one stay; -1: none stays
  EarlierIterationFiles(std::filesystem::path directory, int last_kept);

  [[nodiscard]] bool found() const { return !files_.empty(); }
  /// "ITER03.iter to ITER12.iter"
  [[nodiscard]] std::string text() const;
  /// Where they would move: the first of "earlier_1", "earlier_2", ... that is free.
  [[nodiscard]] std::filesystem::path folder() const;
  /// Moves all into the first of "earlier_1", "earlier_2", ... that is free; back again if one can't be
  /// moved, and then throws. @return the folder
  std::filesystem::path move_away() const;

 private:
  std::filesystem::path directory_;
  std::vector<std::string> iterations_;
  std::vector<std::string> files_;  // all that move
};

}  // namespace Module_occam
