#include "tests/numerics/gridding/direct_plate.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include <Eigen/SparseCholesky>

namespace {

using Term = std::vector<std::pair<int, double>>;  // node and coefficient

class Terms {
 public:
  Terms(int columns, int rows) : columns_(columns), rows_(rows) {}
  void add_bending() {
    for (int j = 0; j < rows_; ++j) {
      for (int i = 0; i < columns_; ++i) {
        if (i > 0 && i + 1 < columns_) {
          add({{node(i - 1, j), 1.0}, {node(i, j), -2.0}, {node(i + 1, j), 1.0}}, 1.0);
        }
        if (j > 0 && j + 1 < rows_) {
          add({{node(i, j - 1), 1.0}, {node(i, j), -2.0}, {node(i, j + 1), 1.0}}, 1.0);
        }
        if (i + 1 < columns_ && j + 1 < rows_) {
          add({{node(i, j), 1.0}, {node(i + 1, j), -1.0}, {node(i, j + 1), -1.0}, {node(i + 1, j + 1), 1.0}},
              2.0);
        }
      }
    }
  }
  [[nodiscard]] int node(int i, int j) const { return j * columns_ + i; }
  void add(const Term& term, double weight) {
    for (const auto& [a, first] : term) {
      for (const auto& [b, second] : term) {
        entries_.emplace_back(a, b, weight * first * second);
      }
    }
  }
  // Interpolation at a position by the polynomials through the four nearest nodes each way.
  [[nodiscard]] Term at(double x, double y) const {
    const int i0 = std::clamp(static_cast<int>(x) - 1, 0, columns_ - 4);
    const int j0 = std::clamp(static_cast<int>(y) - 1, 0, rows_ - 4);
    const auto weight = [](int k, double t) {
      double product = 1.0;
      for (int other = 0; other < 4; ++other) {
        product *= other == k ? 1.0 : (t - other) / (k - other);
      }
      return product;
    };
    Term term;
    for (int j = 0; j < 4; ++j) {
      for (int i = 0; i < 4; ++i) {
        term.emplace_back(node(i0 + i, j0 + j), weight(i, x - i0) * weight(j, y - j0));
      }
    }
    return term;
  }
  [[nodiscard]] Eigen::SparseMatrix<double> matrix() const {
    const Eigen::Index nodes = Eigen::Index{columns_} * rows_;
    Eigen::SparseMatrix<double> matrix(nodes, nodes);
    matrix.setFromTriplets(entries_.begin(), entries_.end());
    return matrix;
  }

 private:
  int columns_;
  int rows_;
  std::vector<Eigen::Triplet<double>> entries_;
};

}  // namespace

std::vector<double> direct_plate(std::span<const numerics::gridding::ScatteredPoint> points,
                                 const numerics::gridding::GridFrame& frame) {
  Terms terms(static_cast<int>(frame.columns), static_cast<int>(frame.rows));
  terms.add_bending();
  std::vector<Term> pulls;
  std::vector<double> weights;
  for (const numerics::gridding::ScatteredPoint& point : points) {
    const double x = (point.x - frame.first_x) / frame.cell;
    const double y = (point.y - frame.first_y) / frame.cell;
    const bool on_node = std::hypot(x - std::round(x), y - std::round(y)) < 1e-6;
    pulls.push_back(terms.at(x, y));
    weights.push_back(on_node ? 1e8 : 100.0);
    terms.add(pulls.back(), weights.back());
  }
  Eigen::SimplicialLDLT<Eigen::SparseMatrix<double>> solver(terms.matrix());
  if (solver.info() != Eigen::Success) {
    throw std::runtime_error("the plate is not held");
  }
  Eigen::VectorXd right_side = Eigen::VectorXd::Zero(static_cast<Eigen::Index>(frame.columns * frame.rows));
  for (std::size_t k = 0; k < pulls.size(); ++k) {
    for (const auto& [node, coefficient] : pulls[k]) {
      right_side[node] += weights[k] * coefficient * points[k].z;
    }
  }
  const Eigen::VectorXd surface = solver.solve(right_side);
  return {surface.begin(), surface.end()};
}

double surface_at(const numerics::gridding::RegularGrid& grid, double x, double y) {
  const numerics::gridding::GridFrame& frame = grid.frame;
  const Terms terms(static_cast<int>(frame.columns), static_cast<int>(frame.rows));
  double value = 0.0;
  for (const auto& [node, coefficient] :
       terms.at((x - frame.first_x) / frame.cell, (y - frame.first_y) / frame.cell)) {
    value += coefficient * grid.values[static_cast<std::size_t>(node)];
  }
  return value;
}
