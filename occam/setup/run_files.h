// run_files.h: the run directory and the files that start the inversion in it.
#pragma once
#include <filesystem>
#include <vector>

namespace Module_occam {

inline constexpr const char* run_script_name = "occam_run.bat";

/// The files with the one line that starts the inversion: run_script_name and, where the system doesn't run
/// such, an executable "occam_run.sh".
class RunScripts {
 public:
  /// Makes the folder if it is missing and writes the files. Throws if that fails; nothing is left then.
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

/// True if the folder of a file tells names apart that differ in the case of their letters.
bool folder_heeds_case(const std::filesystem::path& existing_file);

}  // namespace Module_occam
