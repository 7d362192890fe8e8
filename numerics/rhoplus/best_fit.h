// best_fit.h: the sheet model of the least chi-squared, with the proof.
#pragma once
#include <Eigen/Core>

#include "numerics/rhoplus/certificate.h"
#include "numerics/rhoplus/fit_problem.h"

namespace numerics::rhoplus {

struct BestFit {
  SwitchModel model;
  Eigen::VectorXd residuals;  // of each value, in units of its error
  double misfit2 = 0.0;       // chi-squared
  double gap = 0.0;           // misfit2 exceeds the least possible by no more than this
  Certificate certificate;
  int rounds = 0;  // of cells, polish and certificate
  bool fits_exactly =
      false;  // misfit2 is nothing beside the errors; many models do that, this is a simple one
};

/// chi-squared that is nothing beside the errors.
double exact_misfit2(const FitProblem& problem);

/// The gap that is good enough.
double accepted_gap(double misfit2);

/// Index of the lower one of the two switches that are closest. There are at least two.
std::size_t closest_switches(const SwitchModel& model);

/// Fills misfit, certificate and gap of a fit from its model and residuals.
void certify_fit(const FitProblem& problem, BestFit& fit);

/// Rounds of three steps until the certificate is small: best density in cells, exact places of its switches,
/// certificate; where it says so, the next round adds switches. A fit is accepted for its
/// certificate, never because the numbers have stopped changing; unless the problem's limit is met.
BestFit find_best_fit(const FitProblem& problem);

}  // namespace numerics::rhoplus
