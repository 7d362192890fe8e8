// fit_problem.h: the data of one inversion as weighted values of ln c, and models as densities on the cut.
//
// With the time factor exp(+i omega t) the admittance c = -E/E' at the surface (metres) gives
//
//   rho_a = mu0 omega |c|^2,   phase = 90 degrees + arg c.
//
// c(s), s = i omega, of every one-dimensional conductivity has the representation
//
//   ln c(s) = gamma + Int_0^inf eta(lambda) [1/(lambda + s) - 1/(lambda + r)] dlambda,   0 <= eta <= 1
//
// and every such gamma and eta belongs to one (Aronszajn and Donoghue 1956, J. Analyse Math. 5, 321-388; its
// use for ln rho and phase: Parker and Booker 1996, Phys. Earth Planet. Inter. 98, 269-282). Both data are
// linear in (gamma, eta), so chi-squared is a convex quadratic over a convex set and has no local minima.
// Sheets are densities that are 0 or 1: where eta goes up c has a pole, where it goes down a zero.
//
// Conventions: lambda and omega in units of the reference r (rad/s), so r = 1 inside; x = ln lambda; ln c in
// ln m; phases in radians; a weight is 1/error.
#pragma once
#include <complex>
#include <limits>
#include <memory>
#include <span>
#include <vector>

#include <Eigen/Core>

#include "numerics/rhoplus/work_limit.h"

namespace numerics::rhoplus {

/// One used datum: 2 Re ln c (a resistivity) or Im ln c (a phase) at a frequency.
struct FitValue {
  int frequency_index = 0;
  bool is_phase = false;
  double target = 0.0;
  double weight = 1.0;  // > 0
};

struct FitProblem {
  double reference = 1.0;        // r, rad/s
  std::vector<double> omega;     // in units of r, ascending, each once
  std::vector<FitValue> values;  // at least one
  /// ln of the upper end of the free part of the cut; eta is 1 above it. Infinite over an insulating surface.
  /// A conducting surface asks for eta = 1 at infinity; with the end at infinity the least misfit would be
  /// that of the insulating surface and not attained, for a sheet of vanishing conductance costs nothing.
  double wall = std::numeric_limits<double>::infinity();
  /// Spent by all that works on the problem.
  std::shared_ptr<WorkLimit> limit = std::make_shared<WorkLimit>(InversionLimits{}.search);

  [[nodiscard]] bool has_resistivity() const;
};

/// A sheet model: eta is 0 or 1 and changes at each switch.
struct SwitchModel {
  double gamma = 0.0;            // ln c at s = 1, ln m
  bool starts_at_one = false;    // eta just above lambda = 0
  std::vector<double> switches;  // x, ascending, below the wall

  /// eta just above switch `count - 1`; of 0 switches the state at lambda = 0.
  [[nodiscard]] bool state_after(std::size_t count) const { return starts_at_one != (count % 2 == 1); }
};

/// eta jumps up to 1 at the wall: there is one more pole.
bool has_pole_at_wall(const FitProblem& problem, const SwitchModel& model);

/// ln c at the given frequencies (in units of r).
std::vector<std::complex<double>> log_admittance(const FitProblem& problem, const SwitchModel& model,
                                                 std::span<const double> omega);

/// (model - target) weight of every value.
Eigen::VectorXd weighted_residuals(const FitProblem& problem, const SwitchModel& model);

/// d residual / d gamma of every value: 2 weight for resistivities, 0 for phases.
Eigen::VectorXd level_column(const FitProblem& problem);

/// Moves gamma to its best value for the given switches and returns the residuals there. Without any
/// resistivity gamma stays.
Eigen::VectorXd settle_level(const FitProblem& problem, SwitchModel& model);

}  // namespace numerics::rhoplus
