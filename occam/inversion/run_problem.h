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
#include "occam/results/row_response.h"

namespace Module_occam {

/// Whether rows of a data type, by its number in the file, can be inverted: 1 to 6, 9, 10 and 13 to 16.
bool can_be_inverted(int data_type);

struct RunRules {
  std::size_t threads = 0;  // 0: as many as the machine has cores
  /// Decades: each site's resistivities of each mode get a static shift as an unknown, drawn to 0 by a datum
  /// with this error.
  std::optional<double> static_shift;
};

/// A run that is inverted. Parameters are the free blocks in their order and behind them the free static
/// shifts.
class RunProblem {
 public:
  /// Called with the share of the response or the sensitivities under way, 0 to 1; false stops.
  using Progress = std::function<bool(double)>;

  /// @param model, data  must outlive the problem
  /// Throws std::runtime_error, with type, count and first row, for rows that can't be inverted, and for
  /// sites off the mesh; std::invalid_argument for a section without a response.
  RunProblem(const OccamModel& model, const ObservedData& data, const RunRules& rules, Progress progress);

  [[nodiscard]] std::size_t parameters() const { return block_parameters_ + free_shifts_.size(); }

  /// The model of what an iteration file lists; shifts that the rules ask for begin at 0. Throws
  /// std::runtime_error if it lists another number of parameters.
  [[nodiscard]] std::vector<double> model_of(std::span<const double> file_parameters) const;
  /// What an iteration file lists of a model: without the shifts that the rules ask for.
  [[nodiscard]] std::vector<double> file_parameters(std::span<const double> model) const;
  /// The shifts of a model as a statics file.
  [[nodiscard]] std::string shift_file_text(std::span<const double> model) const;

  /// Blocks with their neighbours as the roughness takes them.
  [[nodiscard]] std::vector<numerics::occam_inversion::Block> blocks() const;

  /// The problem; it refers to this object.
  [[nodiscard]] numerics::occam_inversion::Problem problem() const;

  /// The data of a model, in their units, phases at the turn nearest to the datum; with derivatives if they
  /// are asked for. Throws numerics::occam_inversion::Stopped.
  [[nodiscard]] numerics::occam_inversion::Modelled modelled(
      std::span<const double> model, numerics::occam_inversion::Derivatives derivatives) const;

 private:
  void take_shifts();
  void add_shifts();
  [[nodiscard]] std::size_t added_shifts() const { return free_shifts_.size() - shifts_of_model_; }

  const OccamModel& model_;
  const ObservedData& data_;
  RunRules rules_;
  Progress progress_;
  std::size_t block_parameters_;
  std::vector<std::size_t> parameter_of_triangle_;
  RowRequests requests_;
  std::vector<double> shift_of_row_;            // decades, fixed shifts
  std::vector<std::size_t> free_shift_of_row_;  // place among the free shifts; no_parameter without one
  std::vector<StaticShift> free_shifts_;        // those of the model, then those of the rules
  std::size_t shifts_of_model_ = 0;
};

}  // namespace Module_occam
