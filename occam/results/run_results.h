// run_results.h: what an inversion has left in its directory so far: its iterations with their three numbers.
#pragma once
#include <array>
#include <cstddef>
#include <filesystem>
#include <map>
#include <string>

#include "formats/occam/iteration_file.h"
#include "formats/occam/occam_data.h"
#include "formats/occam/occam_model.h"

namespace Module_occam {

inline constexpr int max_iteration = 512;  // the highest number of an iteration
inline constexpr const char* derived_folder =
    "Brenlox";  // in a run directory, for all that is derived from it

/// Shows whether a file has changed.
struct FileStamp {
  std::filesystem::file_time_type written;
  std::uintmax_t size = 0;
  friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

/// The stamp of a file; the default one if there is no such file.
FileStamp file_stamp(const std::filesystem::path& file);

/// A run's sites and model, and its iterations by their numbers, 0 to last_iteration. An iteration that has
/// no file has no names and no_data.
struct RunResults {
  template <class T>
  using ByIteration = std::array<T, max_iteration + 1>;

  std::filesystem::path folder;  // absolute
  std::filesystem::path
      output_folder;  // of derived files: derived_folder in its own, or another that the user has chosen
  std::string control_file;  // that it was read from, without folder
  ControlFile names;         // of model and data file
  OccamData data;
  OccamModel model;
  ByIteration<std::string> iteration_file;  // without folder
  ByIteration<std::string> response_file;   // likewise; there may be no such file
  ByIteration<float> iteration_multiplier;
  ByIteration<float> iteration_roughness;
  ByIteration<float> iteration_misfit;  // RMS
  int last_iteration = 0;

  int of_other_runs = 0;  // iteration files of another start file in the folder, which have no number here
  std::map<std::string, FileStamp> seen;     // the iteration files that were read, as of then
  std::map<std::string, FileStamp> refused;  // those of them that couldn't be read
  std::map<std::string, FileStamp> waiting;  // all iteration files at the last look

  RunResults();
  /// Whether there is an iteration file of the run, be it one that can't be read.
  [[nodiscard]] bool has_iterations() const { return seen.size() > static_cast<std::size_t>(of_other_runs); }
  /// Whether iteration 0 is the model that the inversion begins with, which has no numbers: there is no
  /// iteration yet.
  [[nodiscard]] bool has_start_only() const { return !has_iterations() && has(0); }
  [[nodiscard]] bool has(int iteration) const {
    return !iteration_file[static_cast<std::size_t>(iteration)].empty();
  }
  [[nodiscard]] std::filesystem::path file_of(int iteration) const {
    return folder / iteration_file[static_cast<std::size_t>(iteration)];
  }
  /// The path of a derived file: the base name of the iteration's file and what follows it.
  [[nodiscard]] std::filesystem::path derived_file(int iteration, const std::string& ending) const;
};

/// Whether a run must have iterations to be opened.
enum class Iterations { needed, may_come };

/// Reads a run from its control file: sites, model, the heads of all iterations. File names in it are meant
/// from its folder. The iterations of another start file in it are left out (is_of_run). A run without
/// iterations has its start model as iteration 0. An iteration file that can't be read is reported and left
/// out. A folder for derived files is created beside the control file, if that may be written.
/// @return 0, or -1 after a message; `results` is then not to be used
[[nodiscard]] int open_results(const std::filesystem::path& control_file, RunResults& results,
                               Iterations iterations = Iterations::needed);

inline constexpr const char* no_iterations_message =
    "No iteration files were found at the specified location";

/// This message, with the model's name where the folder has iterations of other models.
std::string lack_of_iterations(const RunResults& results);

/// Looks at the directory again, for an inversion that is still running. A new or changed iteration file is
/// read once a second look finds it unchanged, so that none is read while it is being written; files that no
/// longer exist are dropped.
/// @return true if `results` has changed
bool refresh_results(RunResults& results);

/// Asks for the control file of a run. @return its path, empty when cancelled
std::string ask_for_control_file();

}  // namespace Module_occam
