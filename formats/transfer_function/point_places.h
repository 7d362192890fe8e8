// point_places.h: the points of rows that name a frequency and one component, in the order in which
// frequencies come.
#pragma once
#include <cstddef>
#include <map>
#include <utility>
#include <vector>

#include "formats/transfer_function/transfer_function.h"

namespace formats::transfer_function {

/// Rows of several series (the blocks of a file, the components of a table) meet at their frequencies. Where
/// a series comes to a frequency again, as from two bands or two soundings, its row gets a point of its own
/// instead of replacing the earlier one.
class PointPlaces {
 public:
  Point& point_of(std::vector<Point>& points, std::size_t series, double frequency) {
    const std::size_t occurrence = met_[{series, frequency}]++;
    const auto [place, is_new] = places_.try_emplace({occurrence, frequency}, points.size());
    if (is_new) {
      points.emplace_back().frequency = frequency;
    }
    return points[place->second];
  }

 private:
  using Key = std::pair<std::size_t, double>;
  std::map<Key, std::size_t> met_;     // by series
  std::map<Key, std::size_t> places_;  // by occurrence
};

}  // namespace formats::transfer_function
