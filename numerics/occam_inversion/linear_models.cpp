#include "numerics/occam_inversion/linear_models.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include <Eigen/Dense>
#include <Eigen/Sparse>

#include "numerics/occam_inversion/blas_threads.h"
#include "numerics/parallel_jobs.h"

namespace numerics::occam_inversion {

namespace {

using Eigen::Index;
using Matrix = Eigen::MatrixXd;
using RowMatrix = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;
using SparseMatrix = Eigen::SparseMatrix<double>;
using Vector = Eigen::VectorXd;

Index index(std::size_t value) { return static_cast<Index>(value); }

std::vector<double> to_standard(const Vector& vector) { return {vector.begin(), vector.end()}; }

// R with the prejudices' weights on its diagonal, and `ground` on that of some parameters.
SparseMatrix roughness_matrix(const Roughness& roughness, std::span<const std::size_t> grounded,
                              double ground) {
  std::vector<Eigen::Triplet<double>> entries;
  const auto add = [&](std::size_t row, std::size_t column, double value) {
    entries.emplace_back(static_cast<int>(row), static_cast<int>(column), value);
  };
  for (const Link& link : roughness.links()) {
    const double square = link.weight * link.weight;
    add(link.first, link.first, square);
    add(link.second, link.second, square);
    add(link.first, link.second, -square);
    add(link.second, link.first, -square);
  }
  for (const Prejudice& prejudice : roughness.prejudices()) {
    add(prejudice.parameter, prejudice.parameter, prejudice.weight * prejudice.weight);
  }
  for (const std::size_t parameter : grounded) {
    add(parameter, parameter, ground);
  }
  SparseMatrix matrix(index(roughness.parameters()), index(roughness.parameters()));
  matrix.setFromTriplets(entries.begin(), entries.end());
  return matrix;
}

// What the prejudices add to the right side, for a multiplier of 1.
Vector prejudice_side(const Roughness& roughness) {
  Vector side = Vector::Zero(index(roughness.parameters()));
  for (const Prejudice& prejudice : roughness.prejudices()) {
    side[index(prejudice.parameter)] += prejudice.weight * prejudice.weight * prejudice.value;
  }
  return side;
}

// Calls job(first, width) for panels of columns, on threads. @return false if stopped
template <class Job>
bool by_panels(Index columns, std::size_t threads, const Job& job,
               const std::function<bool(double)>& progress = {}) {
  constexpr Index panel = 128;  // whatever the number of threads, so that it doesn't change a sum
  return run_jobs(
      static_cast<std::size_t>((columns + panel - 1) / panel), threads,
      [&](std::size_t item, std::size_t /*thread*/) {
        use_one_blas_thread();
        const Index first = index(item) * panel;
        job(first, std::min(panel, columns - first));
      },
      progress);
}

// The lower half of left * right.
template <class Left, class Right>
Matrix lower_product(const Left& left, const Right& right, std::size_t threads) {
  Matrix product(left.rows(), right.cols());
  by_panels(product.cols(), threads, [&](Index first, Index width) {
    product.block(first, first, product.rows() - first, width).noalias() =
        left.bottomRows(left.rows() - first) * right.middleCols(first, width);
  });
  return product;
}

using Factor = Eigen::LLT<Eigen::Ref<Matrix>>;  // in the place of the matrix

Factor factorize(Matrix& system) {
  use_one_blas_thread();
  return Factor(system);
}

void require_definite(const Factor& factor) {
  if (factor.info() != Eigen::Success) {
    throw std::runtime_error("the data and the roughness don't hold all parameters at this multiplier");
  }
}

// Roots of what `squares` gives for the parameters of one panel after the other.
template <class Squares>
std::optional<std::vector<double>> roots_by_panels(Index parameters, const Squares& squares,
                                                   std::size_t threads,
                                                   const std::function<bool(double)>& progress) {
  Vector roots(parameters);
  const bool all = by_panels(
      parameters, threads,
      [&](Index first, Index width) {
        roots.segment(first, width) = squares(first, width).cwiseMax(0.0).cwiseSqrt();
      },
      progress);
  return all ? std::optional(to_standard(roots)) : std::nullopt;
}

// Solves in the space of the model.
class ModelSpace : public LinearModels {
 public:
  ModelSpace(const LinearProblem& problem, const Roughness& roughness, std::size_t threads)
      : roughness_(roughness_matrix(roughness, {}, 0.0)),
        prejudices_(prejudice_side(roughness)),
        threads_(threads) {
    const Index n = index(roughness.parameters());
    const Eigen::Map<const RowMatrix> sensitivities(problem.sensitivities.data(), index(problem.data.size()),
                                                    n);
    const Eigen::Map<const Vector> data(problem.data.data(), index(problem.data.size()));
    square_ = lower_product(sensitivities.transpose(), sensitivities, threads);
    side_ = sensitivities.transpose() * data;
  }

  [[nodiscard]] std::optional<std::vector<double>> at(double log10_multiplier) const override {
    const double multiplier = std::pow(10.0, log10_multiplier);
    Matrix system = system_of(multiplier);
    const Factor factor = factorize(system);
    if (factor.info() != Eigen::Success) {
      return std::nullopt;
    }
    const Vector model = factor.solve(side_ + multiplier * prejudices_);
    return model.allFinite() ? std::optional(to_standard(model)) : std::nullopt;
  }

  [[nodiscard]] std::optional<std::vector<double>> standard_errors(
      double log10_multiplier, const std::function<bool(double)>& progress) const override {
    Matrix system = system_of(std::pow(10.0, log10_multiplier));
    const Factor factor = factorize(system);
    require_definite(factor);
    const Index n = square_.cols();
    const auto squares = [&](Index first, Index width) {
      Matrix columns = Matrix::Zero(n, width);  // of B
      columns.middleRows(first, width).setIdentity();
      factor.solveInPlace(columns);
      const Matrix seen = square_.selfadjointView<Eigen::Lower>() * columns;
      return Vector(columns.cwiseProduct(seen).colwise().sum());
    };
    return roots_by_panels(n, squares, threads_, progress);
  }

 private:
  [[nodiscard]] Matrix system_of(double multiplier) const {
    Matrix system = square_;
    for (Index column = 0; column < roughness_.outerSize(); ++column) {
      for (SparseMatrix::InnerIterator entry(roughness_, column); entry; ++entry) {
        if (entry.row() >= entry.col()) {
          system(entry.row(), entry.col()) += multiplier * entry.value();
        }
      }
    }
    return system;
  }

  SparseMatrix roughness_;
  Vector prejudices_;
  Matrix square_;  // J'J, its lower half
  Vector side_;    // J'd
  std::size_t threads_;
};

// Solves in the space of the data. R + ground on one parameter of each group that nothing else holds is
// definite, and with its inverse B
//
//   [ J B J' + mu I   J V ] [lambda]   [ d - J q ]        m = V c + B J' lambda + q
//   [ (J V)'           0  ] [  c   ] = [    0    ]
//
// V: ones on each of these groups; q = B times the prejudices' side. The ground has no effect on m.
class DataSpace : public LinearModels {
 public:
  DataSpace(const LinearProblem& problem, const Roughness& roughness, std::size_t threads)
      : threads_(threads) {
    const Index n = index(roughness.parameters());
    const Index data_count = index(problem.data.size());
    const Eigen::Map<const RowMatrix> sensitivities(problem.sensitivities.data(), data_count, n);
    const Eigen::Map<const Vector> data(problem.data.data(), data_count);
    const std::vector<std::size_t> grounded = find_free_groups(roughness);
    constexpr double ground = 1.0;  // as large as a link's weight is as a rule
    const Eigen::SimplicialLDLT<SparseMatrix> inverse(roughness_matrix(roughness, grounded, ground));
    spread_.resize(n, data_count);
    by_panels(data_count, threads, [&](Index first, Index width) {
      spread_.middleCols(first, width) =
          inverse.solve(sensitivities.middleRows(first, width).transpose().eval());
    });
    square_ = lower_product(sensitivities, spread_, threads);
    constants_ = Matrix::Zero(data_count, index(grounded.size()));
    for (Index parameter = 0; parameter < n; ++parameter) {
      if (const auto group = free_group_[static_cast<std::size_t>(parameter)]) {
        constants_.col(index(*group)) += sensitivities.col(parameter);
      }
    }
    offset_ = inverse.solve(prejudice_side(roughness));
    side_ = data - sensitivities * offset_;
  }

  [[nodiscard]] std::optional<std::vector<double>> at(double log10_multiplier) const override {
    Matrix system = system_of(log10_multiplier);
    const Factor factor = factorize(system);
    if (factor.info() != Eigen::Success) {
      return std::nullopt;
    }
    const Vector plain = factor.solve(side_);
    const Matrix solved_constants = factor.solve(constants_);
    const Vector c = (constants_.transpose() * solved_constants)
                         .completeOrthogonalDecomposition()
                         .solve(constants_.transpose() * plain);
    Vector model = offset_ + spread_ * (plain - solved_constants * c);
    for (std::size_t parameter = 0; parameter < free_group_.size(); ++parameter) {
      if (free_group_[parameter]) {
        model[index(parameter)] += c[index(*free_group_[parameter])];
      }
    }
    return model.allFinite() ? std::optional(to_standard(model)) : std::nullopt;
  }

  // The model is E d + what the prejudices give, and B A B = E E'.
  //
  //   E' = S^-1 J B + H G^-1 (V - B J' H)'        S = J B J' + mu I, H = S^-1 J V, G = (J V)' H
  [[nodiscard]] std::optional<std::vector<double>> standard_errors(
      double log10_multiplier, const std::function<bool(double)>& progress) const override {
    Matrix system = system_of(log10_multiplier);
    const Factor factor = factorize(system);
    require_definite(factor);
    const Matrix solved_constants = factor.solve(constants_);
    const Eigen::CompleteOrthogonalDecomposition<Matrix> small(constants_.transpose() * solved_constants);
    const auto squares = [&](Index first, Index width) {
      Matrix estimator = spread_.middleRows(first, width).transpose();
      Matrix constants = -solved_constants.transpose() * estimator;
      for (Index column = 0; column < width; ++column) {
        if (const auto group = free_group_[static_cast<std::size_t>(first + column)]) {
          constants(index(*group), column) += 1.0;
        }
      }
      factor.solveInPlace(estimator);
      estimator += solved_constants * small.solve(constants);
      return Vector(estimator.colwise().squaredNorm());
    };
    return roots_by_panels(spread_.rows(), squares, threads_, progress);
  }

 private:
  [[nodiscard]] Matrix system_of(double log10_multiplier) const {
    Matrix system = square_;
    system.diagonal().array() += std::pow(10.0, log10_multiplier);
    return system;
  }

  // Numbers the groups that no prejudice holds; gives the first parameter of each.
  std::vector<std::size_t> find_free_groups(const Roughness& roughness) {
    const std::vector<std::size_t> group = roughness.groups();
    std::vector<bool> is_held(roughness.parameters());
    for (const Prejudice& prejudice : roughness.prejudices()) {
      is_held[group[prejudice.parameter]] = is_held[group[prejudice.parameter]] || prejudice.weight != 0.0;
    }
    std::vector<std::optional<std::size_t>> number(roughness.parameters());
    std::vector<std::size_t> first;
    free_group_.resize(roughness.parameters());
    for (std::size_t parameter = 0; parameter < group.size(); ++parameter) {
      if (is_held[group[parameter]]) {
        continue;
      }
      if (!number[group[parameter]]) {
        number[group[parameter]] = first.size();
        first.push_back(parameter);
      }
      free_group_[parameter] = number[group[parameter]];
    }
    return first;
  }

  std::vector<std::optional<std::size_t>> free_group_;  // of each parameter
  Matrix spread_;                                       // B J'
  Matrix square_;                                       // J B J', its lower half
  Matrix constants_;                                    // J V
  Vector offset_;                                       // q
  Vector side_;                                         // d - J q
  std::size_t threads_;
};

}  // namespace

Space cheaper_space(std::size_t data, std::size_t parameters) {
  constexpr std::size_t many_parameters = 3000;  // below it a Cholesky for each multiplier is cheap enough
  return parameters > many_parameters && data < parameters ? Space::data : Space::model;
}

std::unique_ptr<LinearModels> linear_models(const LinearProblem& problem, const Roughness& roughness,
                                            Space space, std::size_t threads) {
  use_one_blas_thread();
  if (space == Space::data) {
    return std::make_unique<DataSpace>(problem, roughness, threads);
  }
  return std::make_unique<ModelSpace>(problem, roughness, threads);
}

}  // namespace numerics::occam_inversion
