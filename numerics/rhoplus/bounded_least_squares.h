// bounded_least_squares.h: min |A x - b| subject to 0 <= x <= 1.
#pragma once

#include <Eigen/Core>

namespace numerics::rhoplus {

struct BoundedFit {
  Eigen::VectorXd x;         // length n
  Eigen::VectorXd residual;  // b - A x, length m
  int passes = 0;
};

struct BoundedFitLimits {
  double relative_gap =
      0.0;               // done when |A x - b|^2 is proven to exceed its minimum by no more than this part
  double misfit2 = 0.0;  // done when |A x - b|^2 is no more than this
  int passes = 20000;    // a guard only; some hundreds are usual
};

/// Active-set method with a lower and an upper bound (Stark and Parker 1995, Comput. Stat. 10, 129-141, after
/// the non-negative method of Lawson and Hanson 1974): free the variable whose normalised gradient points
/// most off its bound, solve the unbounded problem in the free variables, go towards it up to the first bound
/// met. It ends in a corner with few free variables, which here means few sheets. The QR factors of the free
/// columns are updated, not computed again (Daniel, Gragg, Kaufman and Stewart 1976, Math. Comput. 30,
/// 772-795).
///
/// @param columns A, m x n, without zero columns
/// @param start   x to start from, each 0 or 1
BoundedFit bounded_least_squares(const Eigen::MatrixXd& columns, const Eigen::VectorXd& target,
                                 const Eigen::VectorXd& start, const BoundedFitLimits& limits);

}  // namespace numerics::rhoplus
