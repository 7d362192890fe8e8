// earlier_iterations.h: the iteration files of a run directory, and what becomes of those that a new
// inversion would replace.
#pragma once
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace Module_occam {

/// The iteration files of a directory, "ITER12.iter" or as older programs name them "ITER_12", by the numbers
/// in their names. Throws std::filesystem::filesystem_error if the directory can't be read.
std::map<int, std::string> iteration_files_of(const std::filesystem::path& directory);

/// The number in the name of an iteration file; -1 for another name.
int iteration_number_of(const std::string& name);

/// The iteration that leaves a file of this name: its own, its response or, where shifts are looked for,
/// these.
std::optional<int> iteration_that_writes(const std::string& name, bool looks_for_shifts);

/// Iterations beyond a number, with their responses and static shifts, and the log where the inversion starts
/// anew.
class EarlierIterationFiles {
 public:
  /// @param last_kept  iterations up to this one stay; -1: none stays
  /// @param in_use     names of files that the run needs, which stay whatever they are called
  EarlierIterationFiles(std::filesystem::path directory, int last_kept,
                        const std::vector<std::string>& in_use = {});

  [[nodiscard]] bool empty() const { return files_.empty(); }
  /// Whether there are iterations or responses among them. Shifts alone are what a crash has left, or a new
  /// run in the folder of an earlier one.
  [[nodiscard]] bool would_be_replaced() const { return !named_.empty(); }
  /// "ITER03.iter to ITER12.iter"
  [[nodiscard]] std::string text() const;
  /// Where they would move: the first of "earlier_1", "earlier_2", ... that is free.
  [[nodiscard]] std::filesystem::path folder() const;
  /// Moves all there, the highest numbers first, so that what a crash leaves in place are iterations in a
  /// row; back again if one can't be moved, and then throws std::runtime_error. Before that, copies of the
  /// files that these iterations need come there, and of their start file: the folder is a run that can be
  /// opened. @return the folder
  std::filesystem::path move_away() const;

 private:
  [[nodiscard]] std::set<std::string> files_to_copy() const;

  std::filesystem::path directory_;
  std::vector<std::string> named_;  // iterations or, without them, responses, ascending
  std::vector<std::string> files_;  // all that move, in that order
};

}  // namespace Module_occam
