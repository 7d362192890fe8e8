// earlier_run.h: the inversion that a folder holds already. It is somebody's work: before another one is
// created there, it moves as a whole into a folder of its own, where it still opens.
#pragma once
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace Module_occam {

class EarlierRun {
 public:
  /// Looks for a run in a folder, which may be missing: a start file or any iteration file.
  /// @param new_files  names that the new run gives to its files; what has one of them moves, too
  /// Throws std::runtime_error if the run needs a file that wouldn't be found from the other folder.
  EarlierRun(std::filesystem::path folder, const std::vector<std::string>& new_files);
  EarlierRun(const EarlierRun&) = delete;
  EarlierRun& operator=(const EarlierRun&) = delete;
  /// Unless keep() was called, moves everything back.
  ~EarlierRun();

  [[nodiscard]] bool found() const { return !files_.empty(); }

  /// Where the run moves: the first of "earlier_1", "earlier_2", ... in the folder that is free.
  [[nodiscard]] const std::filesystem::path& destination() const { return destination_; }

  /// Moves the run. Throws if a file can't be moved; the destructor then moves the others back.
  void move_away();

  void keep() { moved_.clear(); }

 private:
  std::filesystem::path folder_;
  std::filesystem::path destination_;
  std::vector<std::filesystem::path> files_;  // and folders, from the folder
  std::vector<std::filesystem::path> moved_;
};

/// A name for the folder of a new run in `parent`, "occam_200E_ExHy", that nothing has: with "_2", "_3", ...
/// behind it where it is taken.
/// @param type  data type of the curves
std::string free_run_name(const std::filesystem::path& parent, const std::string& line,
                          const std::string& type);

}  // namespace Module_occam
