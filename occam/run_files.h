// run_files.h: the files of a run directory, put into place together or not at all.
#pragma once
#include <filesystem>
#include <string>
#include <vector>

namespace Module_occam {

/// The files with the one line that starts the inversion: "occam_run.bat" and, where the system doesn't run
/// such, an executable "occam_run.sh".
class RunScripts {
 public:
  /// Makes the folder if it is missing and writes the files. Throws if that fails.
  explicit RunScripts(std::filesystem::path folder);
  RunScripts(const RunScripts&) = delete;
  RunScripts& operator=(const RunScripts&) = delete;
  /// Takes everything back that keep() was not called for: the files that were not there before, and the
  /// folders.
  ~RunScripts();

  void keep() { kept_ = true; }

 private:
  std::vector<std::filesystem::path> made_;  // folders and files that were not there before, in their order
  bool kept_ = false;
};

/// Files that are written beside their places first.
class StagedFiles {
 public:
  explicit StagedFiles(std::filesystem::path folder);
  StagedFiles(const StagedFiles&) = delete;
  StagedFiles& operator=(const StagedFiles&) = delete;
  /// Removes what has not been moved into place.
  ~StagedFiles();

  /// The path to write the file of this name to. Throws std::runtime_error if the set has it already, or a
  /// folder of that name stands in its place.
  std::string add(const std::string& name);
  /// Moves all files into place.
  void move_into_place();

 private:
  struct File {
    std::filesystem::path neighbour;
    std::filesystem::path place;
  };
  std::filesystem::path folder_;
  std::vector<File> files_;
};

/// True if the folder of a file tells names apart that differ in the case of their letters.
bool folder_heeds_case(const std::filesystem::path& existing_file);

}  // namespace Module_occam
