// head_dates.h: dates of field files as day counts.
//
// A date is the number of days since 30 December 1899, as the survey's DATETIME columns have it.
#pragma once
#include <optional>
#include <string>
#include <string_view>

namespace Module_data_file {

/// The day of a year, month and day; months and days beyond their range roll over into the next ones.
double day_count(int year, int month, int day);

/// A date as heads of field files write it: month/day/year, or year-month-day with "-" or "/"; quotes around
/// it and a time behind it are passed over. A year below 50 is 20yy, one below 100 is 19yy.
/// @return none if the text is neither
std::optional<double> head_date(std::string_view text);

/// "10/21/2019", as a search criterion has it between # marks.
std::string criterion_date(double days);

/// "21-Oct-2019".
std::string display_date(double days);

}  // namespace Module_data_file
