// zonge_avg_set.h: the files that stand beside one of averaged soundings, and what the name of a set tells.
#pragma once
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "formats/zonge/zonge_stn_file.h"

namespace formats::zonge {

/// The file of the same name, letter case apart, with another ending. None if there is none.
/// @param ending without its point: "stn"
std::optional<std::string> find_beside(const std::string& avg_file, std::string_view ending);

/// The place of a station: its own, or between the two next ones on both sides of it, as for dipoles between
/// stakes, if these are no farther apart than `longest_gap` of their numbers.
/// @param stations by ascending number
std::optional<ZongeStation> place_among(std::span<const ZongeStation> stations, double station,
                                        double longest_gap);

/// The data type that the name of a set ends with: "ExHy" of "200E_0_ExHy.avg". None if it ends with none.
std::optional<std::string> data_type_in_name(std::string_view file_name);

/// The line that the head of a set names in its ".mde" file; empty if it names none. Throws
/// std::runtime_error if the file can't be read.
std::string line_of_mde(const std::string& mde_file);

}  // namespace formats::zonge
