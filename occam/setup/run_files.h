// run_files.h: the run directory and the files that start the inversion in it.
#pragma once
#include <filesystem>
#include <vector>

namespace Module_occam {

inline constexpr const char* run_script_name = "occam_run.bat";
inline constexpr const char* shell_script_name = "occam_run.sh";

/// The files with the one line that starts the inversion: run_script_name and, for systems that can't run it
/// (a run may be inverted on another machine), the executable shell_script_name.
class RunScripts {
 public:
  /// Creates the folder if it is missing and writes the files. Throws if that fails, and then leaves nothing.
  explicit RunScripts(std::filesystem::path folder);
  RunScripts(const RunScripts&) = delete;
  RunScripts& operator=(const RunScripts&) = delete;
  /// Unless keep() was called, removes the files and folders that were not there before.
  ~RunScripts();

  void keep() { kept_ = true; }

 private:
  std::vector<std::filesystem::path> created_;  // folders and files that were not there before, in order
  bool kept_ = false;
};

/// True if names that differ only in case are different files in the folder of a file.
bool folder_heeds_case(const std::filesystem::path& existing_file);

}  // namespace Module_occam
