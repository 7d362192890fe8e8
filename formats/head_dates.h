// head_dates.h: dates as heads of field files write them.
#pragma once
#include <optional>
#include <string_view>

namespace formats {

/// A date as heads of field files write it: month/day/year, year-month-day with "-" or "/", or with the
/// month's English name in any order ("April 03, 2011", "03-Apr-11"); quotes around it and a time after it
/// are ignored. A year below 50 is 20yy, one below 100 is 19yy. Month and day of month/day/year may run over,
/// as surveys hold them from earlier imports; of the other forms each must be in the calendar.
/// @return its day count; none if the text is none of these
std::optional<double> head_date(std::string_view text);

}  // namespace formats
