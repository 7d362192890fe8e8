// opened_run.h: a run directory of the two-dimensional inversion as a script looks at it. It knows no session
// and shows nothing: threads may use it side by side.
#pragma once
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "formats/occam/data_file.h"
#include "formats/occam/occam_response.h"
#include "occam/results/iteration_model.h"
#include "occam/results/run_summary.h"

namespace Python {

/// Rows of a response, by what the data file numbers from 1.
struct FittedRow {
  int site_number = 0;
  int frequency_number = 0;
  Module_occam::DataType type = Module_occam::DataType::tm_resistivity;
  double datum = 0.0;
  double residual = 0.0;
  double modelled = 0.0;
  double misfit = 0.0;
};

class OpenedRun {
 public:
  /// @param control_file  that names model and data; empty: the start file or the first iteration file.
  /// Throws std::exception with a sentence
  OpenedRun(std::filesystem::path folder, const std::string& control_file);

  [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }
  [[nodiscard]] const Module_occam::RunFiles& files() const { return files_; }
  [[nodiscard]] const Module_occam::ObservedData& data() const { return data_; }

  /// Looks into the directory each time. @param remarks  as list_iterations
  [[nodiscard]] std::vector<Module_occam::ListedIteration> iterations(
      std::vector<std::string>& remarks) const;
  /// The last one without a number. Throws std::exception if there is none.
  [[nodiscard]] Module_occam::ListedIteration find_iteration(std::optional<int> number) const;
  /// The blocks of the model file that the iteration names: one over a masked mesh stands beside others.
  [[nodiscard]] Module_occam::OccamModel blocks_of(const Module_occam::ListedIteration& iteration) const;
  /// @param blocks  of the iteration
  [[nodiscard]] Module_occam::IterationModel model_of(const Module_occam::ListedIteration& iteration,
                                                      const Module_occam::OccamModel& blocks) const;

  /// As its file has it. None without a file; throws std::exception for one that can't be read.
  [[nodiscard]] std::optional<std::vector<FittedRow>> read_response(
      const Module_occam::ListedIteration& iteration) const;
  /// Computed here. None if `progress` stops it. Throws std::exception for what has no response.
  [[nodiscard]] std::optional<std::vector<FittedRow>> compute_response(
      const Module_occam::ListedIteration& iteration, const std::function<bool(double)>& progress) const;

 private:
  std::filesystem::path folder_;
  Module_occam::RunFiles files_;
  Module_occam::ObservedData data_;
};

}  // namespace Python
