// calendar.h: dates as day counts.
//
// A date is the number of days since 30 December 1899, as the survey's DATETIME columns have it.
#pragma once
#include <chrono>
#include <string>

/// The day of a year, month and day; months and days beyond their range roll over into the next ones.
double day_count(int year, int month, int day);

double day_count(std::chrono::year_month_day date);

/// The current date where the computer is.
std::chrono::year_month_day today();

/// Year, month and day of a day count; a time of day is dropped. The year must be one of -32767 to 32767.
std::chrono::year_month_day calendar_date(double days);

/// "10/21/2019", as a search criterion has it between # marks.
std::string criterion_date(double days);

/// "21-Oct-2019".
std::string display_date(double days);
