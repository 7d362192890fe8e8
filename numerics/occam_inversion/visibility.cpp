#include "numerics/occam_inversion/visibility.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace numerics::occam_inversion {

namespace {

constexpr double unseen_part = 0.05;  // of the parameters
constexpr double seen_part = 0.20;

// Between the values beside it where the part falls between two.
double percentile(std::span<const double> ascending, double part) {
  const double place = part * static_cast<double>(ascending.size() - 1);
  const auto below = static_cast<std::size_t>(place);
  const std::size_t above = std::min(below + 1, ascending.size() - 1);
  const double share = place - static_cast<double>(below);
  return (1.0 - share) * ascending[below] + share * ascending[above];
}

}  // namespace

std::vector<double> sensitivities_by_area(const LinearProblem& problem, std::size_t parameters,
                                          std::span<const double> areas) {
  std::vector<double> result(areas.size(), 0.0);
  for (std::size_t row = 0; row < problem.data.size(); ++row) {
    const double* const derivatives = problem.sensitivities.data() + row * parameters;
    for (std::size_t p = 0; p < areas.size(); ++p) {
      result[p] += derivatives[p] * derivatives[p];
    }
  }
  for (std::size_t p = 0; p < areas.size(); ++p) {
    result[p] = std::sqrt(result[p] / areas[p]);
  }
  return result;
}

std::vector<double> visibilities(std::span<const double> sensitivities) {
  std::vector<double> logarithms;
  for (const double sensitivity : sensitivities) {
    logarithms.push_back(std::log10(std::max(sensitivity, std::numeric_limits<double>::min())));
  }
  std::vector<double> ascending = logarithms;
  std::ranges::sort(ascending);
  if (ascending.empty()) {
    return {};
  }
  const double unseen = percentile(ascending, unseen_part);
  const double seen = percentile(ascending, seen_part);
  for (double& value : logarithms) {
    value = value >= seen ? 1.0 : std::clamp((value - unseen) / (seen - unseen), 0.0, 1.0);
  }
  return logarithms;
}

}  // namespace numerics::occam_inversion
