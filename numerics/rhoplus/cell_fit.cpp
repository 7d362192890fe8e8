#include "numerics/rhoplus/cell_fit.h"

#include <algorithm>
#include <cmath>

#include "numerics/rhoplus/bounded_least_squares.h"
#include "numerics/rhoplus/log_ratio.h"

namespace numerics::rhoplus {

namespace {

/// How far the plain cells go beyond the band, in x.
constexpr double reach = 4.0 * 2.302585092994046;
/// Cells are few enough for any band a 32-bit frequency can span.
constexpr double max_even_cells = 600.0;
/// The cells at the ends have no width in x; a switch within one is placed as if it were this wide.
constexpr double end_cell_width = 1.5;
/// Fractions nearer to 0 or 1 than this are rounding of a bound.
constexpr double whole = 1e-10;
/// Of the width of fine cells.
constexpr double closest_edges = 0.25;
/// What a pass multiplies: the gradient takes all columns once, factors and steps about as much again.
constexpr double passes_of_system = 3.0;

double cell_end(const FitProblem& problem, const CellEdges& edges, std::size_t cell) {
  return cell < edges.size() ? edges[cell] : problem.wall;
}

/// Weighted response of each cell, m x (cells), and of nothing but the density above the wall in `target`
/// (taken off the data).
struct CellSystem {
  Eigen::MatrixXd columns;
  Eigen::VectorXd target;
};

CellSystem cell_system(const FitProblem& problem, const CellEdges& edges) {
  const auto cells = static_cast<Eigen::Index>(edges.size() + 1);
  const auto rows = static_cast<Eigen::Index>(problem.values.size());
  CellSystem system{Eigen::MatrixXd(rows, cells), Eigen::VectorXd(rows)};
  LogRatios response(problem.omega);
  double begin = 0.0;
  for (Eigen::Index cell = 0; cell < cells; ++cell) {
    const double end = std::exp(cell_end(problem, edges, static_cast<std::size_t>(cell)));
    response.between(begin, end);
    Eigen::Index row = 0;
    for (const FitValue& value : problem.values) {
      const Eigen::Index k = value.frequency_index;
      system.columns(row++, cell) =
          (value.is_phase ? response.imaginary[k] : 2.0 * response.real[k]) * value.weight;
    }
    begin = end;
  }
  SwitchModel nothing;
  system.target = -weighted_residuals(problem, nothing);
  return system;
}

/// Takes the level out of the problem: what is left is orthogonal to its column.
void project_level_out(const FitProblem& problem, CellSystem& system) {
  Eigen::VectorXd level = level_column(problem);
  const double length = level.norm();
  if (!(length > 0.0)) {
    return;
  }
  constexpr double rounding = 1e-13;
  level /= length;
  system.target -= level * level.dot(system.target);
  for (Eigen::Index cell = 0; cell < system.columns.cols(); ++cell) {
    const double before = system.columns.col(cell).norm();
    system.columns.col(cell) -= level * level.dot(system.columns.col(cell));
    if (system.columns.col(cell).norm() < rounding * before) {
      system.columns.col(cell).setZero();
    }
  }
}

Eigen::VectorXd states_of_cells(const CellEdges& edges, const SwitchModel& model) {
  Eigen::VectorXd states(static_cast<Eigen::Index>(edges.size() + 1));
  std::size_t passed = 0;
  for (std::size_t cell = 0; cell <= edges.size(); ++cell) {
    const double above = cell < edges.size() ? edges[cell] : std::numeric_limits<double>::infinity();
    while (passed < model.switches.size() && model.switches[passed] < above) {
      ++passed;
    }
    states[static_cast<Eigen::Index>(cell)] = model.state_after(passed) ? 1.0 : 0.0;
  }
  return states;
}

/// Collects stretches of 0 and 1 from below into switches.
class SwitchCollector {
 public:
  void begin(bool state) { model_.starts_at_one = state_ = state; }
  /// The state is `state` from x on.
  void change(double x, bool state) {
    if (state == state_) {
      return;
    }
    state_ = state;
    if (!model_.switches.empty() && x <= model_.switches.back()) {
      model_.switches.pop_back();  // nothing was between them
      return;
    }
    model_.switches.push_back(x);
  }
  [[nodiscard]] bool state() const { return state_; }
  [[nodiscard]] const SwitchModel& model() const { return model_; }

 private:
  SwitchModel model_;
  bool state_ = false;
};

class SwitchReader {
 public:
  SwitchReader(const FitProblem& problem, const CellEdges& edges, const Eigen::VectorXd& fractions)
      : edges_(edges), wall_(problem.wall), fractions_(fractions) {}

  SwitchModel read() {
    const Eigen::Index cells = fractions_.size();
    collector_.begin(whole_state(0) ? fractions_[0] > 0.5 : !state_above(0));
    for (Eigen::Index cell = 0; cell < cells;) {
      if (whole_state(cell)) {
        collector_.change(left(cell), fractions_[cell] > 0.5);
        ++cell;
        continue;
      }
      Eigen::Index end = cell;
      while (end < cells && !whole_state(end)) {
        ++end;
      }
      read_run(cell, end);
      cell = end;
    }
    return collector_.model();
  }

 private:
  [[nodiscard]] bool whole_state(Eigen::Index cell) const {
    return fractions_[cell] < whole || fractions_[cell] > 1.0 - whole;
  }
  /// State of the first whole cell above; of none, the other one, so that there is a switch between.
  [[nodiscard]] bool state_above(Eigen::Index cell) const {
    while (cell < fractions_.size() && !whole_state(cell)) {
      ++cell;
    }
    return cell < fractions_.size() ? fractions_[cell] > 0.5 : !collector_.state();
  }
  [[nodiscard]] double left(Eigen::Index cell) const {
    return cell == 0 ? right(0) - end_cell_width : edges_[static_cast<std::size_t>(cell - 1)];
  }
  [[nodiscard]] double right(Eigen::Index cell) const {
    const auto place = static_cast<std::size_t>(cell);
    if (place < edges_.size()) {
      return edges_[place];
    }
    return std::isfinite(wall_) ? wall_ : edges_.back() + end_cell_width;
  }

  void read_run(Eigen::Index first, Eigen::Index end) {
    const bool below = collector_.state();
    const bool above = state_above(first);
    double mass = 0.0;
    double moment_one = 0.0;
    double moment_zero = 0.0;
    for (Eigen::Index cell = first; cell < end; ++cell) {
      const double width = right(cell) - left(cell);
      const double middle = 0.5 * (right(cell) + left(cell));
      mass += fractions_[cell] * width;
      moment_one += fractions_[cell] * width * middle;
      moment_zero += (1.0 - fractions_[cell]) * width * middle;
    }
    const double run_width = right(end - 1) - left(first);
    if (end - first > 2) {
      pulse_for_each(first, end);
    } else if (below != above) {
      collector_.change(above ? right(end - 1) - mass : left(first) + mass, above);
    } else {
      const double odd_width = below ? run_width - mass : mass;
      const double centre = (below ? moment_zero : moment_one) / odd_width;
      collector_.change(std::max(left(first), centre - 0.5 * odd_width), !below);
      collector_.change(std::min(right(end - 1), centre + 0.5 * odd_width), below);
    }
  }

  /// Each cell of a long run keeps its mass, on the side of its larger neighbour.
  void pulse_for_each(Eigen::Index first, Eigen::Index end) {
    for (Eigen::Index cell = first; cell < end; ++cell) {
      const double before = cell > 0 ? fractions_[cell - 1] : 0.0;
      const double after = cell + 1 < fractions_.size() ? fractions_[cell + 1] : 0.0;
      const double mass = fractions_[cell] * (right(cell) - left(cell));
      if (after > before) {
        collector_.change(left(cell), false);
        collector_.change(right(cell) - mass, true);
      } else {
        collector_.change(left(cell), true);
        collector_.change(left(cell) + mass, false);
      }
    }
  }

  const CellEdges& edges_;
  const double wall_;
  const Eigen::VectorXd& fractions_;
  SwitchCollector collector_;
};

}  // namespace

CellEdges even_edges(const FitProblem& problem, double cells_per_decade) {
  const double low = std::log(problem.omega.front()) - reach;
  const double high = std::min(std::log(problem.omega.back()) + reach, problem.wall);
  const double wanted = std::ceil((high - low) / std::log(10.0) * cells_per_decade);
  const auto count = static_cast<int>(std::min(wanted, max_even_cells));
  CellEdges edges;
  for (int i = 0; i <= count; ++i) {
    const double x = low + (high - low) * i / count;
    if (x < problem.wall) {
      edges.push_back(x);
    }
  }
  return edges;
}

CellEdges edges_around(const FitProblem& problem, const SwitchModel& model, double width) {
  constexpr int cells_to_each_side = 4;
  CellEdges edges;
  for (const double x : model.switches) {
    for (int i = 1; i <= cells_to_each_side; ++i) {
      edges.push_back(x - i * width);
      edges.push_back(x + i * width);
    }
  }
  // A switch keeps its exact place; edges next to it are dropped.
  std::sort(edges.begin(), edges.end());
  CellEdges spaced = model.switches;
  for (const double x : edges) {
    const auto above = std::lower_bound(spaced.begin(), spaced.end(), x);
    const bool near_above = above != spaced.end() && *above - x < closest_edges * width;
    const bool near_below = above != spaced.begin() && x - *std::prev(above) < closest_edges * width;
    if (!near_above && !near_below && x < problem.wall - closest_edges * width) {
      spaced.insert(above, x);
    }
  }
  return spaced;
}

SwitchModel fit_cells(const FitProblem& problem, const CellEdges& edges, const SwitchModel& start,
                      const CellFitLimits& limits) {
  CellSystem system = cell_system(problem, edges);
  project_level_out(problem, system);
  BoundedFitLimits search{.relative_gap = limits.relative_gap, .misfit2 = limits.misfit2};
  const double work_of_pass = passes_of_system * static_cast<double>(system.columns.size());
  search.passes = static_cast<int>(
      std::clamp(problem.limit->left() / work_of_pass, 0.0, static_cast<double>(search.passes)));
  const BoundedFit fit =
      bounded_least_squares(system.columns, system.target, states_of_cells(edges, start), search);
  problem.limit->spend(work_of_pass * (fit.passes + 1));
  SwitchModel model = SwitchReader(problem, edges, fit.x).read();
  settle_level(problem, model);
  return model;
}

}  // namespace numerics::rhoplus
