#include "formats/edi/spectra_channels.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <string_view>

namespace formats::edi {

namespace {

std::size_t mentions_before(const std::vector<NamedChannel>& named, std::size_t place) {
  const auto end = named.begin() + static_cast<std::ptrdiff_t>(place);
  return static_cast<std::size_t>(std::count_if(
      named.begin(), end, [&](const NamedChannel& channel) { return same_id(channel.ID, named[place].ID); }));
}

struct Candidate {
  std::size_t place = 0;
  const EdiChannel* channel = nullptr;  // null if the head doesn't define it
};

// The channels of one type: the station's own one first, then those that may be a reference.
class Candidates {
 public:
  void add(const Candidate& candidate) { all_.push_back(candidate); }
  void put_local_first() {
    std::stable_partition(all_.begin(), all_.end(), [](const Candidate& candidate) {
      return candidate.channel == nullptr || candidate.channel->is_local;
    });
  }
  [[nodiscard]] bool has(std::size_t rank) const { return rank < all_.size(); }
  [[nodiscard]] const Candidate& get(std::size_t rank) const { return all_[rank]; }

 private:
  std::vector<Candidate> all_;
};

// HX, HY, HZ, EX, EY of the station or a reference; RX, RY of whatever is named as reference.
std::string role_name(const NamedChannel& named, const EdiChannel* channel) {
  const std::string& type =
      channel != nullptr && !named.keyword.starts_with('R') ? channel->CHTYPE : named.keyword;
  if (type.starts_with('R') && !type.empty()) {
    return std::string("R") + type.back();
  }
  return type;
}

using CandidatesByName = std::map<std::string, Candidates, std::less<>>;

bool take_pair(CandidatesByName& candidates, std::string_view x, std::string_view y, std::size_t rank,
               numerics::impedance::SpectraChannels& places) {
  const Candidates& of_x = candidates[std::string(x)];
  const Candidates& of_y = candidates[std::string(y)];
  if (!of_x.has(rank) || !of_y.has(rank)) {
    return false;
  }
  places.reference_x = of_x.get(rank).place;
  places.reference_y = of_y.get(rank).place;
  return true;
}

}  // namespace

SpectraRoles find_roles(const std::vector<NamedChannel>& named, const std::vector<EdiChannel>& defined) {
  CandidatesByName candidates;
  SpectraRoles roles;
  for (std::size_t place = 0; place < named.size(); ++place) {
    const EdiChannel* const channel = find_channel(defined, named[place].ID, mentions_before(named, place));
    if (channel == nullptr && !named[place].ID.empty()) {
      roles.undefined.push_back(named[place]);
    }
    candidates[role_name(named[place], channel)].add({place, channel});
  }
  numerics::impedance::SpectraChannels places;
  const auto take = [&](const char* name, std::size_t& place) {
    Candidates& found = candidates[name];
    found.put_local_first();
    if (found.has(0)) {
      place = found.get(0).place;
    } else {
      roles.missing += (roles.missing.empty() ? "" : ", ") + std::string(name);
    }
  };
  take("HX", places.hx);
  take("HY", places.hy);
  take("EX", places.ex);
  take("EY", places.ey);
  Candidates& vertical = candidates["HZ"];
  vertical.put_local_first();
  if (vertical.has(0)) {
    places.hz = vertical.get(0).place;
  }
  if (candidates["HX"].has(0) && candidates["HX"].get(0).channel != nullptr) {
    roles.local_hx = *candidates["HX"].get(0).channel;
  }
  if (!roles.missing.empty()) {
    return roles;
  }
  if (!take_pair(candidates, "RX", "RY", 0, places) && !take_pair(candidates, "HX", "HY", 1, places) &&
      !take_pair(candidates, "EX", "EY", 1, places)) {
    places.reference_x = places.hx;
    places.reference_y = places.hy;
  }
  roles.places = places;
  return roles;
}

}  // namespace formats::edi
