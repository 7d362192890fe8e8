#include "formats/zonge/zonge_avg_end.h"

#include <algorithm>
#include <iterator>

#include "core/number_text.h"

namespace formats::zonge {

using transfer_function::Component;

void AvgEnd::note(std::size_t station_index, Component component, double frequency) {
  last_ = {station_index, component};
  std::vector<double>& frequencies = frequencies_[last_];
  if (frequencies.empty()) {
    curves_.push_back(last_);
    components_[station_index].insert(component);
  }
  frequencies.push_back(frequency);
}

std::string AvgEnd::missing() const {
  const std::string rows = missing_rows();
  return !rows.empty() || !lacks_components() ? rows : "has fewer components than the others";
}

std::string AvgEnd::missing_rows() const {
  if (curves_.size() < 2 || curves_.back() != last_) {
    return {};
  }
  const std::vector<double>& last = frequencies_.at(last_);
  const std::vector<double>& whole = frequencies_.at(curves_.front());
  const bool others_are_alike =
      std::all_of(curves_.begin(), std::prev(curves_.end()),
                  [&](const Curve& curve) { return frequencies_.at(curve) == whole; });
  if (!others_are_alike || last.size() >= whole.size() ||
      !std::equal(last.begin(), last.end(), whole.begin())) {
    return {};
  }
  return "ends after " + plain_text(static_cast<std::int64_t>(last.size())) + " of the " +
         plain_text(static_cast<std::int64_t>(whole.size())) + " frequencies of the other curves";
}

bool AvgEnd::lacks_components() const {
  constexpr std::size_t fewest_stations = 3;  // one other station says little of what all have
  if (components_.size() < fewest_stations || curves_.back() != last_) {
    return false;
  }
  const std::set<Component>& last = components_.at(last_.first);
  const auto is_other = [&](const auto& station) { return station.first != last_.first; };
  const std::set<Component>& whole = std::ranges::find_if(components_, is_other)->second;
  return last.size() < whole.size() && std::ranges::includes(whole, last) &&
         std::ranges::all_of(
             components_, [&](const auto& station) { return !is_other(station) || station.second == whole; });
}

}  // namespace formats::zonge
