// linear_models.h: the models that fit a linearised problem, a smoother one for each larger multiplier.
//
//   m(mu) = (A + mu R)^-1 b      A = J'J, b = J'd; rows of J and d over the errors; R of the roughness
//
// Constable, Parker & Constable (1987), Geophysics 52, 289-300: solved for the model itself, not for a step.
// Few data and many parameters are solved in the space of the data: Siripunvaraporn & Egbert (2000),
// Geophysics 65, 791-803, with the null space of R, constants on each connected group, carried along. Dense
// algebra is LAPACK's. A result doesn't depend on the number of threads.
#pragma once
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "numerics/occam_inversion/roughness.h"

namespace numerics::occam_inversion {

/// A linearised problem of N data and n parameters.
struct LinearProblem {
  std::vector<double> sensitivities;  // N x n, row by row: derivatives of the data over their errors
  std::vector<double> data;           // N: residuals and J m_k over the errors
};

enum class Space { model, data };

class LinearModels {
 public:
  virtual ~LinearModels() = default;
  LinearModels() = default;
  LinearModels(const LinearModels&) = delete;
  LinearModels& operator=(const LinearModels&) = delete;

  /// The model of a multiplier; none where the system is not positive definite.
  [[nodiscard]] virtual std::optional<std::vector<double>> at(double log10_multiplier) const = 0;

  /// Standard errors of that model's parameters from those of the data, as far as the linearised problem
  /// goes: the roots of the diagonal of B A B, B = (A + mu R)^-1. Where the roughness alone holds a parameter
  /// they are small: what is unknown there is no longer seen.
  /// @param progress  may be empty; the share done, 0 to 1; false stops
  /// @return none if stopped. Throws std::runtime_error where the system is not positive definite
  [[nodiscard]] virtual std::optional<std::vector<double>> standard_errors(
      double log10_multiplier, const std::function<bool(double)>& progress) const = 0;
};

/// The cheaper space for so many data and parameters.
Space cheaper_space(std::size_t data, std::size_t parameters);

/// @param roughness  must outlive the result
/// @param threads    0: as many as the machine has cores
std::unique_ptr<LinearModels> linear_models(const LinearProblem& problem, const Roughness& roughness,
                                            Space space, std::size_t threads = 0);

}  // namespace numerics::occam_inversion
