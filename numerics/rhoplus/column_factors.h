// column_factors.h: orthogonal factors of a set of columns that gains and loses members.
#pragma once

#include <Eigen/Core>

namespace numerics::rhoplus {

/// Q R of the columns added so far and not removed, in the order of their adding. Each change updates it:
/// Daniel, Gragg, Kaufman & Stewart (1976), Math. Comput. 30, 772-795.
class ColumnFactors {
 public:
  /// @param rows         length of a column
  /// @param max_columns  at a time; add() refuses more
  ColumnFactors(Eigen::Index rows, Eigen::Index max_columns);

  /// False, and nothing changed, when the column depends on those present.
  [[nodiscard]] bool add(const Eigen::Ref<const Eigen::VectorXd>& column);
  void remove(Eigen::Index position);  // in the order of adding, from 0

  [[nodiscard]] Eigen::Index size() const { return size_; }
  /// Q^T v, length size().
  [[nodiscard]] Eigen::VectorXd components(const Eigen::VectorXd& v) const;
  /// R^-1 of components.
  [[nodiscard]] Eigen::VectorXd coefficients(const Eigen::VectorXd& components) const;
  /// Q times components, length of a column.
  [[nodiscard]] Eigen::VectorXd combination(const Eigen::VectorXd& components) const;

 private:
  Eigen::MatrixXd q_;
  Eigen::MatrixXd r_;
  Eigen::Index size_ = 0;
};

}  // namespace numerics::rhoplus
