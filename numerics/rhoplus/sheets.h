// sheets.h: from the switches of a model to conducting sheets at depth.
#pragma once
#include <complex>
#include <limits>
#include <span>
#include <vector>

#include "numerics/rhoplus/fit_problem.h"

namespace numerics::rhoplus {

/// A pile of thin sheets between insulating gaps:
///
///   c = h_0 + 1/(t_1 s + 1/(h_1 + 1/(t_2 s + ... + 1/(t_n s + 1/h_n)))),   t_k = mu0 tau_k,
///
/// with the conductances tau_k and the gaps h_k.
struct Sheet {
  double depth = 0.0;        // m
  double conductance = 0.0;  // S
};
struct SheetModel {
  std::vector<Sheet> sheets;  // from the top down
  /// Depth of the perfect conductor below, m; infinite where an insulator has no bottom.
  double conductor_depth = std::numeric_limits<double>::infinity();

  [[nodiscard]] double total_conductance() const;  // S
};

/// Rows the model takes in a table: the sheets, and one for a perfect conductor.
std::size_t row_count(const FitProblem& problem, const SwitchModel& model);

/// Poles and zeros give the residues of c, all positive because they interlace (Weidelt 1972, Z. Geophys. 38,
/// 257-289); the residues give the sheets, from the largest pole down, by a progressive quotient-difference
/// scheme (Laurie 1999, J. Comput. Appl. Math. 112, 165-180). Only positive numbers are added, multiplied and
/// divided, so neither cancellation nor the hundreds of decades between the residues cost a digit.
SheetModel sheets_of(const FitProblem& problem, const SwitchModel& model);

/// ln c of the pile from the ground up. @param omega rad/s
std::vector<std::complex<double>> log_admittance(const SheetModel& sheets, std::span<const double> omega);

}  // namespace numerics::rhoplus
