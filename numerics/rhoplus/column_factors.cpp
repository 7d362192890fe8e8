#include "numerics/rhoplus/column_factors.h"

#include <Eigen/Jacobi>

namespace numerics::rhoplus {

namespace {

/// What is left of a column when the part along the others is taken off, relative to its length: below this
/// it is rounding.
constexpr double dependence = 1e-13;

}  // namespace

ColumnFactors::ColumnFactors(Eigen::Index rows, Eigen::Index max_columns)
    : q_(rows, max_columns), r_(max_columns, max_columns) {
  r_.setZero();
}

bool ColumnFactors::add(const Eigen::Ref<const Eigen::VectorXd>& column) {
  if (size_ == q_.cols()) {
    return false;
  }
  const auto basis = q_.leftCols(size_);
  Eigen::VectorXd rest = column;
  Eigen::VectorXd along = Eigen::VectorXd::Zero(size_);
  // Gram and Schmidt twice is enough.
  for (int time = 0; time < 2; ++time) {
    const Eigen::VectorXd part = basis.transpose() * rest;
    rest.noalias() -= basis * part;
    along += part;
  }
  const double length = rest.norm();
  if (!(length > dependence * column.norm())) {
    return false;
  }
  r_.col(size_).head(size_) = along;
  r_(size_, size_) = length;
  q_.col(size_) = rest / length;
  ++size_;
  return true;
}

void ColumnFactors::remove(Eigen::Index position) {
  for (Eigen::Index column = position + 1; column < size_; ++column) {
    r_.col(column - 1).head(column + 1) = r_.col(column).head(column + 1);
  }
  --size_;
  // What is below the diagonal now is rotated away, row by row.
  for (Eigen::Index row = position; row < size_; ++row) {
    Eigen::JacobiRotation<double> turn;
    turn.makeGivens(r_(row, row), r_(row + 1, row));
    r_.middleCols(row, size_ - row).applyOnTheLeft(row, row + 1, turn.adjoint());
    r_(row + 1, row) = 0.0;
    q_.applyOnTheRight(row, row + 1, turn);
  }
}

Eigen::VectorXd ColumnFactors::components(const Eigen::VectorXd& v) const {
  return q_.leftCols(size_).transpose() * v;
}

Eigen::VectorXd ColumnFactors::coefficients(const Eigen::VectorXd& components) const {
  return r_.topLeftCorner(size_, size_).triangularView<Eigen::Upper>().solve(components);
}

Eigen::VectorXd ColumnFactors::combination(const Eigen::VectorXd& components) const {
  return q_.leftCols(size_) * components;
}

}  // namespace numerics::rhoplus
