#include "numerics/gridding/conjugate_gradients.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace numerics::gridding {

namespace {

constexpr int quiet_iterations = 4;  // one small step alone may be chance

double product(std::span<const double> a, std::span<const double> b) {
  // Four sums side by side; one alone would wait for each addition.
  std::array<double, 4> sums = {};
  const std::size_t whole = a.size() / 4 * 4;
  for (std::size_t i = 0; i < whole; i += 4) {
    for (std::size_t k = 0; k < 4; ++k) {
      sums[k] += a[i + k] * b[i + k];
    }
  }
  double sum = (sums[0] + sums[1]) + (sums[2] + sums[3]);
  for (std::size_t i = whole; i < a.size(); ++i) {
    sum += a[i] * b[i];
  }
  return sum;
}

// values += factor * step; the largest absolute value of the step
double advance(std::span<double> values, double factor, std::span<const double> step) {
  std::array<double, 4> largest = {};
  const std::size_t whole = values.size() / 4 * 4;
  for (std::size_t i = 0; i < whole; i += 4) {
    for (std::size_t k = 0; k < 4; ++k) {
      values[i + k] += factor * step[i + k];
      largest[k] = std::max(largest[k], std::abs(step[i + k]));
    }
  }
  for (std::size_t i = whole; i < values.size(); ++i) {
    values[i] += factor * step[i];
    largest[0] = std::max(largest[0], std::abs(step[i]));
  }
  return *std::max_element(largest.begin(), largest.end());
}

/// How far the iteration has come: its steps shrink by about the same factor each time.
class Progress {
 public:
  explicit Progress(double min_change) : min_change_(min_change) {}
  void step(double change) {
    first_ = std::max(first_, change);
    smallest_ = std::min(smallest_, std::max(change, min_change_));
  }
  [[nodiscard]] double share() const {
    if (!(smallest_ < first_ && min_change_ > 0.0)) {
      return 0.0;
    }
    return std::log(first_ / smallest_) / std::log(first_ / min_change_);
  }

 private:
  double min_change_;
  double first_ = 0.0;
  double smallest_ = std::numeric_limits<double>::infinity();
};

}  // namespace

IterationOutcome relax(const Plate& plate, SplineLevels& levels, std::span<const double> targets,
                       const IterationLimits& limits, std::span<double> surface) {
  IterationOutcome outcome;
  std::vector<double> residual = plate.right_side(targets);
  std::vector<double> applied(surface.size());
  std::vector<double> corrected(surface.size());
  plate.apply(surface, applied);
  advance(residual, -1.0, applied);
  levels.apply(residual, corrected);
  std::vector<double> direction = corrected;
  double fit = product(residual, corrected);
  int quiet = 0;
  Progress progress(limits.min_change);
  while (outcome.iterations < limits.iterations) {
    if (limits.progress && !limits.progress(progress.share())) {
      outcome.stopped = true;
      return outcome;
    }
    ++outcome.iterations;
    plate.apply(direction, applied);
    const double energy = product(direction, applied);
    if (!(energy > 0.0)) {
      outcome.converged = true;  // nothing is left to correct
      return outcome;
    }
    const double step = fit / energy;
    const double change = step * advance(surface, step, direction);
    progress.step(change);
    advance(residual, -step, applied);
    quiet = change < limits.min_change ? quiet + 1 : 0;
    if (quiet == quiet_iterations) {
      outcome.converged = true;
      return outcome;
    }
    levels.apply(residual, corrected);
    const double next = product(residual, corrected);
    const double kept = next / fit;
    fit = next;
    for (std::size_t i = 0; i < direction.size(); ++i) {
      direction[i] = corrected[i] + kept * direction[i];
    }
  }
  return outcome;
}

}  // namespace numerics::gridding
