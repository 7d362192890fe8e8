// run_view.h: the iteration of a run that is on show: its parameters and its response, read when they are
// needed and again when their files have changed.
#pragma once
#include <string>
#include <vector>

#include "formats/occam/occam_response.h"
#include "occam/results/iteration_model.h"
#include "occam/results/run_results.h"
#include "occam/results/section_geometry.h"

namespace Module_occam {

class RunView {
 public:
  explicit RunView(RunResults results);

  /// Its model is that of the iteration loaded last: a run over a masked mesh has another than "startup".
  [[nodiscard]] const RunResults& results() const { return results_; }
  [[nodiscard]] int current_iteration() const { return current_iteration_; }
  /// Makes an iteration from 0 to last_iteration the current one. The response is then no longer ready.
  void choose_iteration(int iteration);
  [[nodiscard]] int current_site() const { return current_site_; }
  /// Makes a site, numbered from 1, the current one; limited to those of the response.
  void choose_site(int site_number);

  /// Looks for new iterations and for changes of the response. @return true if anything has changed
  bool refresh();

  /// Whether files that are derived from the run can be written into their folder.
  [[nodiscard]] bool can_write() const;
  /// Chooses another folder for them. The run's own one stands for its folder of derived files: beside the
  /// run's files they would be taken for iterations or replace its responses.
  void write_to(const std::filesystem::path& folder);

  /// Reads the parameters of the current iteration unless they are loaded. An iteration that isn't of the
  /// model is refused.
  /// @return 0; -1, after a message, or without one if the iteration has no file
  [[nodiscard]] int load_iteration();
  /// log10 ohm-m; of the iteration loaded last, empty after a failure.
  [[nodiscard]] const std::vector<double>& parameters() const { return iteration_.parameters; }
  /// The same with the static shifts.
  [[nodiscard]] const IterationModel& iteration() const { return iteration_; }

  /// log10 ohm-m, of any iteration that has a file; not kept. Throws std::exception.
  [[nodiscard]] std::vector<double> parameters_of(int iteration) const;

  /// The section of the current iteration; without rectangles if it can't be read.
  SectionGeometry section(const SectionChoices& choices, PictureSize picture);

  /// Reads the response of the current iteration from a file created here, one that the inversion left or,
  /// where there is neither, after computing it. A computed one is written, or kept in memory where the
  /// folder of derived files can't be written.
  /// @return 0, or -1 after a message or a stop
  [[nodiscard]] int load_response();
  /// What was read last; of the current iteration while response_ready().
  [[nodiscard]] const OccamResponse& response() const { return response_; }
  [[nodiscard]] bool response_ready() const { return response_ready_; }

 private:
  bool response_has_settled();
  void follow_model(const std::string& name);
  int compute_current();
  int read_response(const std::filesystem::path& file);

  RunResults results_;
  OccamResponse response_;
  int current_iteration_ = 0;
  int current_site_ = 1;
  std::string loaded_iteration_file_;
  FileStamp loaded_iteration_stamp_;
  IterationModel iteration_;
  std::filesystem::path response_file_;  // that was read last, with success or not
  FileStamp response_stamp_;             // as it was then
  FileStamp seen_response_stamp_;        // at the last look
  bool response_read_ = false;           // with success
  bool response_ready_ = false;
  bool mesh_warnings_reported_ = false;  // with the first response that was computed here
};

}  // namespace Module_occam
