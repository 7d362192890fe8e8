// run_problem.h: the data and the model of a run as an inversion sees them: which responses its rows ask of
// the section, what each row is made of, and how rough its blocks are.
#pragma once
#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "formats/occam/data_file.h"
#include "formats/occam/occam_model.h"
#include "numerics/occam_inversion/inversion.h"
#include "numerics/occam_inversion/roughness.h"
#include "numerics/section/section.h"
#include "occam/inversion/site_shifts.h"
#include "occam/results/row_response.h"

namespace Module_occam {

struct RunRules {
  std::size_t threads = 0;  // 0: as many as the machine has cores
  /// Decades: each site's resistivities of each mode get a static shift as an unknown, drawn to 0 by a datum
  /// with this error.
  std::optional<double> static_shift;
  /// Whether resistivities beyond those of rocks count as such in the response.
  numerics::section::ResistivityLimits limits = numerics::section::ResistivityLimits::cut;
};

/// A run that is inverted. Parameters are the free blocks in their order and behind them the free static
/// shifts.
class RunProblem {
 public:
  /// Called with the share of the response or the sensitivities under way, 0 to 1; false stops.
  using Progress = std::function<bool(double)>;

  /// @param model, data  must outlive the problem
  /// Throws std::exception for rows that can't be inverted (data_checks.h), static shifts that can't be found
  /// (site_shifts.h), and a section without a response.
  RunProblem(const OccamModel& model, const ObservedData& data, const RunRules& rules, Progress progress);

  [[nodiscard]] std::size_t parameters() const { return block_parameters_ + shifts_.free().size(); }
  [[nodiscard]] std::size_t block_parameters() const { return block_parameters_; }
  [[nodiscard]] const SiteShifts& shifts() const { return shifts_; }
  /// Whether shifts are looked for that iteration files don't list.
  [[nodiscard]] bool looks_for_shifts() const { return shifts_.free().size() > shifts_.of_model(); }

  /// The model of what an iteration file lists. Throws std::runtime_error if it lists another number of
  /// parameters.
  /// @param found  earlier values of the shifts that the rules ask for; without one a shift begins at 0
  [[nodiscard]] std::vector<double> model_of(std::span<const double> file_parameters,
                                             std::span<const StaticShift> found = {}) const;
  /// What an iteration file lists of a model: without the shifts that the rules ask for.
  [[nodiscard]] std::vector<double> file_parameters(std::span<const double> model) const;
  /// The shifts that the rules ask for, of a model, with the fixed ones of the run.
  [[nodiscard]] StaticsFile found_shifts(std::span<const double> model) const;

  /// Blocks with their neighbours as the roughness takes them.
  [[nodiscard]] std::vector<numerics::occam_inversion::Block> blocks() const;

  /// The problem; it refers to this object.
  [[nodiscard]] numerics::occam_inversion::Problem problem() const;

  /// The data of a model, in their units, phases at the turn nearest to the datum; with derivatives if they
  /// are asked for. Throws numerics::occam_inversion::Stopped.
  [[nodiscard]] numerics::occam_inversion::Modelled modelled(
      std::span<const double> model, numerics::occam_inversion::Derivatives derivatives) const;

 private:
  const OccamModel& model_;
  const ObservedData& data_;
  RunRules rules_;
  Progress progress_;
  std::size_t block_parameters_;
  RowRequests requests_;
  SiteShifts shifts_;
  std::vector<std::size_t> parameter_of_triangle_;
};

}  // namespace Module_occam
