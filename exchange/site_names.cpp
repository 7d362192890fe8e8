#include "exchange/site_names.h"

#include <algorithm>
#include <array>
#include <set>

#include "core/number_text.h"
#include "core/text_fields.h"

namespace Module_exchange {

namespace {

bool is_plain(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

/// A byte of a character in UTF-8 that isn't its first.
bool continues_character(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

/// What Windows takes for a device, whatever stands behind a point.
bool is_device(std::string_view id) {
  constexpr std::array<std::string_view, 4> devices{"CON", "PRN", "AUX", "NUL"};
  const std::string name = upper_case(id);
  const bool is_port = name.size() == 4 && (name.starts_with("COM") || name.starts_with("LPT")) &&
                       name.back() >= '0' && name.back() <= '9';
  return is_port || std::ranges::find(devices, name) != devices.end();
}

}  // namespace

std::string site_or_station(std::string_view site, std::string_view line, double station) {
  return site.empty() ? std::string(line) + "_" + plain_text(station) : std::string(site);
}

std::string file_id(std::string_view name) {
  std::string id;
  for (const char c : trimmed(name)) {
    if (is_plain(c)) {
      id += c;
    } else if (!continues_character(c)) {
      id += '_';
    }
  }
  return id.empty() || is_device(id) ? id + '_' : id;
}

std::vector<std::string> unique_ids(std::span<const std::string> names) {
  std::set<std::string> taken;
  std::vector<std::string> ids;
  ids.reserve(names.size());
  for (const std::string& name : names) {
    const std::string id = file_id(name);
    std::string unique = id;
    for (int number = 2; !taken.insert(upper_case(unique)).second; ++number) {
      unique = id + "_" + plain_text(number);
    }
    ids.push_back(std::move(unique));
  }
  return ids;
}

}  // namespace Module_exchange
