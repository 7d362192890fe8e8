// run_view.h: the iteration of a run that is on show: its parameters and its response, read when they are
// needed and again when their files have changed.
#pragma once
#include <string>
#include <vector>

#include "occam/results/run_results.h"
#include "occam/results/section_geometry.h"

namespace Module_occam {

class RunView {
 public:
  explicit RunView(RunResults results);

  [[nodiscard]] const RunResults& results() const { return results_; }
  [[nodiscard]] int current_iteration() const { return current_iteration_; }
  /// Makes an iteration from 0 to last_iteration the current one. The response is then no longer ready.
  void choose_iteration(int iteration);
  [[nodiscard]] int current_site() const { return current_site_; }
  /// Makes a site, numbered from 1, the current one; limited to those of the response.
  void choose_site(int site_number);

  /// Looks for new iterations and for changes of the response. @return true if anything has changed
  bool refresh();

  /// Reads the parameters of the current iteration unless they are loaded.
  /// @return 0; -1, after a message, or without one if the iteration has no file
  [[nodiscard]] int load_iteration();
  /// log10 ohm-m; of the iteration loaded last, empty after a failure.
  [[nodiscard]] const std::vector<double>& parameters() const { return parameters_; }

  /// The section of the current iteration; without rectangles if it can't be read.
  SectionGeometry section(const SectionChoices& choices, PictureSize picture);

  /// Reads the response of the current iteration from a file created here, one that the inversion left or,
  /// where there is neither, after computing it.
  /// @return 0, or -1 after a message or a stop
  [[nodiscard]] int load_response();
  /// What was read last; of the current iteration while response_ready().
  [[nodiscard]] const OccamResponse& response() const { return response_; }
  [[nodiscard]] bool response_ready() const { return response_ready_; }

 private:
  bool response_has_settled();

  RunResults results_;
  OccamResponse response_;
  int current_iteration_ = 0;
  int current_site_ = 1;
  std::string loaded_iteration_file_;
  FileStamp loaded_iteration_stamp_;
  std::vector<double> parameters_;
  std::filesystem::path response_file_;  // that was read last, with success or not
  FileStamp response_stamp_;             // as it was then
  FileStamp seen_response_stamp_;        // at the last look
  bool response_read_ = false;           // with success
  bool response_ready_ = false;
  bool mesh_warnings_reported_ = false;  // with the first response that was computed here
};

/// The response file of an iteration: in the folder of derived files, unless the iteration is newer, or else
/// beside the iteration's file. Empty without either.
std::filesystem::path find_response(const RunResults& results, int iteration);

/// Reports what the mesh of a run lacks for the frequencies of its data; nothing if it is good enough.
/// @param parameters  log10 ohm-m, of the free blocks
void report_mesh_warnings(const RunResults& results, const std::vector<double>& parameters);

/// Computes the response of an iteration and writes it into the folder of derived files.
/// @return 0; -1 after a message, or without one if the user stopped it
[[nodiscard]] int make_response(const RunResults& results, int iteration,
                                const std::vector<double>& parameters);

}  // namespace Module_occam
