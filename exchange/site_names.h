// site_names.h: names of sites as names of files, which every system takes.
#pragma once
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Module_exchange {

/// The name of a site, or where it has none, of its line and station: "200E_100".
std::string site_or_station(std::string_view site, std::string_view line, double station);

/// A text of letters, digits and underscores: what else a name has is an underscore, a character each. What
/// Windows keeps for devices (CON, COM1) gets an underscore at its end; an empty name is one underscore.
std::string file_id(std::string_view name);

/// The ids of names, all different, letter case apart: those that come out equal get _2, _3 in their order.
std::vector<std::string> unique_ids(std::span<const std::string> names);

}  // namespace Module_exchange
