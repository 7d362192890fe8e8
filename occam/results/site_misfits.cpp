#include "occam/results/site_misfits.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <utility>

namespace Module_occam {

std::vector<std::optional<double>> rms_by_site(std::span<const int> site_numbers,
                                               std::span<const double> misfits, int sites) {
  std::vector<double> sums(static_cast<std::size_t>(sites));
  std::vector<std::size_t> counts(sums.size());
  for (std::size_t row = 0; row < std::min(site_numbers.size(), misfits.size()); ++row) {
    if (const int number = site_numbers[row]; number >= 1 && number <= sites) {
      sums[static_cast<std::size_t>(number - 1)] += misfits[row] * misfits[row];
      ++counts[static_cast<std::size_t>(number - 1)];
    }
  }
  std::vector<std::optional<double>> rms(sums.size());
  for (std::size_t site = 0; site < sums.size(); ++site) {
    if (counts[site] > 0) {
      rms[site] = std::sqrt(sums[site] / static_cast<double>(counts[site]));
    }
  }
  return rms;
}

std::vector<int> poorly_fitted_sites(std::span<const std::optional<double>> rms_of_sites) {
  constexpr double well_above = 1.5;  // times the median
  constexpr std::size_t most = 4;     // a longer list points at none
  std::vector<std::pair<double, int>> known;
  for (std::size_t site = 0; site < rms_of_sites.size(); ++site) {
    if (rms_of_sites[site]) {
      known.emplace_back(*rms_of_sites[site], static_cast<int>(site) + 1);
    }
  }
  if (known.size() < 3) {
    return {};  // no rest to stand out of
  }
  std::ranges::sort(known, std::greater());
  const double median = known[known.size() / 2].first;
  std::vector<int> numbers;
  for (const auto& [rms, number] : known) {
    if (numbers.size() < most && rms > well_above * median) {
      numbers.push_back(number);
    }
  }
  std::ranges::sort(numbers);
  return numbers;
}

}  // namespace Module_occam
