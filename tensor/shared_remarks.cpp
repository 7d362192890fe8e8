#include "tensor/shared_remarks.h"

#include <map>
#include <string_view>
#include <utility>

#include "core/text_lists.h"

namespace Module_tensor {
namespace {

struct NamedRemark {
  std::string station;  // as the remark names it; empty if it is of none
  std::string words;
};

NamedRemark parts_of(const std::string& remark) {
  constexpr std::string_view beginning = "Station ";
  constexpr std::string_view end_of_name = ": ";
  const std::size_t end = remark.starts_with(beginning) ? remark.find(end_of_name) : std::string::npos;
  if (end == std::string::npos) {
    return {{}, remark};
  }
  return {remark.substr(beginning.size(), end - beginning.size()), remark.substr(end + end_of_name.size())};
}

/// Remarks of the same words: all of stations, or all of none.
struct Group {
  std::string first;  // the whole of the first one
  std::string words;
  std::vector<std::string> stations;
  std::size_t count = 0;
};

std::string text_of(const Group& group) {
  if (group.count == 1) {
    return group.first;
  }
  const std::string count = std::to_string(group.count);
  return group.stations.empty() ? group.words + " (" + count + " times)"
                                : count + " stations, " + listed_first(group.stations) + ": " + group.words;
}

}  // namespace

std::vector<SharedRemark> shared_remarks(const std::vector<std::string>& remarks) {
  std::vector<Group> groups;
  std::map<std::pair<bool, std::string>, std::size_t> place_of;
  for (const std::string& remark : remarks) {
    const NamedRemark parts = parts_of(remark);
    const bool of_station = !parts.station.empty();
    const auto [place, is_new] = place_of.try_emplace({of_station, parts.words}, groups.size());
    if (is_new) {
      groups.push_back({remark, parts.words, {}, 0});
    }
    Group& group = groups[place->second];
    ++group.count;
    if (of_station) {
      group.stations.push_back(parts.station);
    }
  }
  std::vector<SharedRemark> shared;
  shared.reserve(groups.size());
  for (const Group& group : groups) {
    shared.push_back({text_of(group), group.count});
  }
  return shared;
}

}  // namespace Module_tensor
