#include "tensor/map_contents.h"

#include <algorithm>

#include "core/number_text.h"

namespace Module_tensor {

namespace {

std::string counted(std::size_t count) { return plain_text(static_cast<std::int64_t>(count)); }

std::string missing_text(const std::vector<std::string>& stations) {
  constexpr std::size_t most = 5;
  std::string text;
  for (std::size_t i = 0; i < std::min(stations.size(), most); ++i) {
    text += (i == 0 ? "" : ", ") + stations[i];
  }
  if (stations.size() > most) {
    text += " and " + counted(stations.size() - most) + " more";
  }
  return " Without a place, and not shown: " + text + ".";
}

}  // namespace

void MapContents::show_frequency(double shown) {
  frequency = shown;
  values.clear();
  values.reserve(map.sites.size());
  for (const MapSite& site : map.sites) {
    values.push_back(shown > 0.0 ? values_at(site.station, shown, look.arrows) : SiteValues{});
  }
}

std::string remarks_text(const MapContents& contents) {
  const auto with_tensor = std::ranges::count_if(
      contents.values, [](const SiteValues& values) { return values.phase_tensor.has_value(); });
  const auto with_tipper = std::ranges::count_if(
      contents.values, [](const SiteValues& values) { return values.real_arrow.has_value(); });
  std::string text;
  if (!contents.map.sites.empty()) {
    text = "Of " + counted(contents.map.sites.size()) + " sites " +
           counted(static_cast<std::size_t>(with_tensor)) + " have a phase tensor here and " +
           counted(static_cast<std::size_t>(with_tipper)) +
           " a tipper. Places: " + places_text(contents.map) + ".";
  }
  if (!contents.map.without_place.empty()) {
    text += missing_text(contents.map.without_place);
  }
  if (contents.unread_lines > 0) {
    text += " Reading was stopped: " + counted(contents.unread_lines) + " of the lines " +
            (contents.unread_lines == 1 ? "is" : "are") +
            " not shown. To read on, choose this line and then all lines again.";
  }
  return text;
}

}  // namespace Module_tensor
