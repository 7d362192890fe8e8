#include "occam/inversion/block_resolution.h"

#include <utility>

#include "numerics/occam_inversion/inversion.h"
#include "numerics/occam_inversion/linear_models.h"
#include "numerics/occam_inversion/visibility.h"
#include "occam/inversion/inversion_input.h"
#include "occam/inversion/run_problem.h"

namespace Module_occam {

namespace inversion = numerics::occam_inversion;

namespace {

using Progress = std::function<bool(double)>;

constexpr double response_share = 0.5;  // of the time, about

// One part of the work.
Progress part_of(const Progress& whole, double begin, double end) {
  return [&whole, begin, end](double share) { return !whole || whole(begin + share * (end - begin)); };
}

// Of the free triangles of each block, m^2.
std::vector<double> block_areas(const OccamModel& model) {
  std::vector<double> areas(static_cast<std::size_t>(model.num_free_params), 0.0);
  const std::size_t columns = model.node_x.size() - 1;
  for (std::size_t cell = 0; cell < model.cell_code.size(); ++cell) {
    const std::size_t row = cell / columns;
    const std::size_t column = cell % columns;
    const double area =
        (model.node_x[column + 1] - model.node_x[column]) * (model.node_z[row + 1] - model.node_z[row]);
    for (const std::int32_t code : model.cell_code[cell]) {
      if (code >= model.param_table_index(1)) {
        areas[static_cast<std::size_t>(code - model.param_table_index(1))] += area / triangles;
      }
    }
  }
  return areas;
}

}  // namespace

std::optional<BlockResolution> block_resolution(const std::filesystem::path& directory,
                                                const std::string& iteration_file, std::size_t threads,
                                                const Progress& progress) {
  const InversionInput input = read_inversion_input(directory, iteration_file);
  const StaticsFile shifts = earlier_shifts(directory, iteration_file, input);
  const RunProblem run(input.model, input.data, rules_of(input, shifts, threads),
                       part_of(progress, 0.0, response_share));
  const inversion::Roughness roughness = roughness_of(input, run);
  const inversion::Problem problem = run.problem();
  const std::vector<double> model = run.model_of(input.start.parameters, shifts.shifts);
  inversion::require_soluble(problem, roughness, model);
  try {
    inversion::LinearProblem linear = inversion::linearise(problem, model, false);
    BlockResolution result;
    result.sensitivity = inversion::sensitivities_by_area(linear, model.size(), block_areas(input.model));
    result.visibility = inversion::visibilities(result.sensitivity);
    const auto space = inversion::cheaper_space(problem.data.size(), model.size());
    const auto models = inversion::linear_models(linear, roughness, space, threads);
    linear = {};  // its memory is wanted
    auto errors =
        models->standard_errors(input.start.log10_multiplier, part_of(progress, response_share, 1.0));
    if (!errors) {
      return std::nullopt;
    }
    errors->resize(result.sensitivity.size());  // behind the blocks are static shifts
    result.standard_errors = std::move(*errors);
    return result;
  } catch (const inversion::Stopped&) {
    return std::nullopt;
  }
}

}  // namespace Module_occam
