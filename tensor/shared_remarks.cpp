#include "tensor/shared_remarks.h"

#include <algorithm>
#include <string_view>

#include "core/user_interface.h"

namespace Module_tensor {

namespace {

constexpr std::size_t most_named = 3;

struct Group {
  std::string_view words;                  // without the stations
  std::vector<std::string_view> stations;  // empty: of none
  std::size_t count = 0;
};

/// Takes "300 (ET003)" off the front of "Station 300 (ET003): words"; empty where no station is named.
std::string_view take_station(std::string_view& remark) {
  constexpr std::string_view station = "Station ";
  constexpr std::string_view end_of_name = ": ";
  const std::size_t end = remark.starts_with(station) ? remark.find(end_of_name) : std::string_view::npos;
  if (end == std::string_view::npos) {
    return {};
  }
  const std::string_view name = remark.substr(station.size(), end - station.size());
  remark.remove_prefix(end + end_of_name.size());
  return name;
}

std::vector<Group> groups_of(const std::vector<std::string>& remarks) {
  std::vector<Group> groups;
  for (std::string_view words : remarks) {
    const std::string_view station = take_station(words);
    auto same = std::ranges::find_if(groups, [&](const Group& other) {
      return other.words == words && other.stations.empty() == station.empty();
    });
    if (same == groups.end()) {
      same = groups.insert(groups.end(), {words, {}, 0});
    }
    ++same->count;
    if (!station.empty()) {
      same->stations.push_back(station);
    }
  }
  return groups;
}

std::string text_of(const Group& group) {
  const std::vector<std::string_view>& stations = group.stations;
  const std::string words(group.words);
  if (stations.empty()) {
    return group.count == 1 ? words : words + " (" + std::to_string(group.count) + " times)";
  }
  const std::size_t named = std::min(stations.size(), most_named);
  const std::size_t more = stations.size() - named;
  std::string text = stations.size() == 1 ? "Station " : "Stations ";
  for (std::size_t i = 0; i < named; ++i) {
    const bool ends = i > 0 && i + 1 == named && more == 0;
    text.append(i == 0 ? "" : ends ? " and " : ", ").append(stations[i]);
  }
  return text + (more > 0 ? " and " + std::to_string(more) + " more" : "") + ": " + words;
}

}  // namespace

std::vector<SharedRemark> shared_remarks(const std::vector<std::string>& remarks) {
  std::vector<SharedRemark> shared;
  for (const Group& group : groups_of(remarks)) {
    shared.push_back({text_of(group), group.count});
  }
  return shared;
}

void tell_shared(const std::vector<std::string>& remarks) {
  for (const SharedRemark& remark : shared_remarks(remarks)) {
    user_interface().show_message(remark.text);
  }
}

}  // namespace Module_tensor
