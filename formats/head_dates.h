// head_dates.h: dates as heads of field files write them.
#pragma once
#include <optional>
#include <string_view>

namespace formats {

/// A date as heads of field files write it: month/day/year, or year-month-day with "-" or "/"; quotes around
/// it and a time after it are ignored. A year below 50 is 20yy, one below 100 is 19yy.
/// @return its day count; none if the text is neither
std::optional<double> head_date(std::string_view text);

}  // namespace formats
