// certificate.h: proof of how far a model is from the best possible one.
#pragma once
#include <vector>

#include <Eigen/Core>

#include "numerics/rhoplus/fit_problem.h"

namespace numerics::rhoplus {

/// A stretch where eta is 0 but should grow, or is 1 but should shrink.
struct WrongStretch {
  double peak = 0.0;       // x of the largest |lambda g| in it
  double gap = 0.0;        // its share of the gap
  bool at_switch = false;  // a narrow one beside a switch that is not quite in its place
};

struct Certificate {
  /// chi-squared less the least chi-squared of all one-dimensional models is no more than this.
  double gap = 0.0;
  std::vector<WrongStretch> wrong_stretches;
};

/// With g(lambda) = d(chi^2/2)/d eta and the level settled, convexity gives
///
///   chi^2 - least chi^2 <= 2 Int [max(g, 0) eta + max(-g, 0) (1 - eta)] dlambda,
///
/// twice the area of g where eta contradicts its sign. The half line is cut at the switches and at the roots
/// of g, which are found by a scan of 100 points a decade that reaches 32 e-folds beyond the band; the areas
/// between are closed forms. No model that fits better has been overlooked, whatever way this one was found.
///
/// @param residuals of `model`, its level settled
Certificate certify(const FitProblem& problem, const SwitchModel& model, const Eigen::VectorXd& residuals);

}  // namespace numerics::rhoplus
