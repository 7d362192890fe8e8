#include "display/site_names.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "core/session_state.h"

namespace Module_display_data {

namespace {

constexpr std::size_t longest_in_heading = 24;  // characters

bool begins_character(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }

std::string with_name(std::string text, const std::string& name) {
  return name.empty() ? text : std::move(text) + " (" + name + ")";
}

}  // namespace

const std::string& site_name(std::int32_t station_index) {
  static const std::string none;
  const auto& names = session().station_name;
  const auto place = static_cast<std::size_t>(station_index) - 1;
  return station_index < 1 || place >= names.size() ? none : names[place];
}

bool any_site_names() {
  return std::ranges::any_of(session().station_name, [](const std::string& name) { return !name.empty(); });
}

std::string shortened_name(const std::string& name) {
  if (static_cast<std::size_t>(std::ranges::count_if(name, begins_character)) <= longest_in_heading) {
    return name;
  }
  std::size_t end = 0;
  for (std::size_t characters = 0; end < name.size(); ++end) {
    if (begins_character(name[end]) && ++characters == longest_in_heading) {
      break;  // the last one makes room for the ellipsis
    }
  }
  return name.substr(0, end) + "\u2026";
}

std::string with_site_name(std::string text, std::int32_t station_index) {
  return with_name(std::move(text), site_name(station_index));
}

std::string with_short_site_name(std::string text, std::int32_t station_index) {
  return with_name(std::move(text), shortened_name(site_name(station_index)));
}

}  // namespace Module_display_data
