// switch_polish.h: moves the switches of a sheet model to the exact places of the least misfit.
#pragma once
#include <Eigen/Core>

#include "numerics/rhoplus/fit_problem.h"

namespace numerics::rhoplus {

/// Damped Newton method in gamma and the switches x_i. With d_i = +1 for an up-switch and -1 for a
/// down-switch,
///
///   d ln c / dx_i    = -d_i lambda (1 - s)/((lambda + s)(lambda + 1))
///   d2 ln c / dx_i^2 = -d_i lambda [s/(lambda + s)^2 - 1/(lambda + 1)^2],   no mixed second derivatives,
///
/// so the Hessian is J^T J plus a diagonal that is not negative at the optimum. The second derivatives also
/// bend each step along the curved valleys of nearly exact data (Transtrum and Sethna 2012, arXiv:1201.5885).
/// The misfit never rises. Switches that meet vanish in pairs; one that runs out of reach of the data, or to
/// the wall, vanishes alone.
///
/// @param good_misfit2 chi-squared at which to stop; the problem's limit stops it, too
/// @return the residuals of the polished model; its level is settled
Eigen::VectorXd polish_switches(const FitProblem& problem, SwitchModel& model, double good_misfit2);

}  // namespace numerics::rhoplus
