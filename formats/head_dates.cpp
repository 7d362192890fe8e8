#include "formats/head_dates.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <span>
#include <string>

#include "core/calendar.h"
#include "core/text_fields.h"

namespace formats {

namespace {

constexpr int last_year = 9999;
constexpr int months = 12;
constexpr int longest_month = 31;  // days

// Takes a number of 1 to 4 digits from the start of the text.
std::optional<int> take_number(std::string_view& text) {
  int number = 0;
  const auto [after, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
  const std::size_t length = static_cast<std::size_t>(after - text.data());
  if (failure != std::errc{} || number < 0 || length > 4) {
    return std::nullopt;
  }
  text.remove_prefix(length);
  return number;
}

bool take_character(std::string_view& text, char character) {
  if (!text.starts_with(character)) {
    return false;
  }
  text.remove_prefix(1);
  return true;
}

std::optional<int> full_year(int year) {
  if (year < 50) {
    return 2000 + year;
  }
  if (year < 100) {
    return 1900 + year;
  }
  return year >= 1000 ? std::optional(year) : std::nullopt;
}

// None of a day that no calendar has, as 31 February.
std::optional<double> calendar_day(int year, int month, int day) {
  const std::chrono::year_month_day date(std::chrono::year(year),
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day)));
  return month <= months && day <= longest_month && date.ok() ? std::optional(day_count(date)) : std::nullopt;
}

constexpr std::array<std::string_view, 12> month_names{"JANUARY",   "FEBRUARY", "MARCH",    "APRIL",
                                                       "MAY",       "JUNE",     "JULY",     "AUGUST",
                                                       "SEPTEMBER", "OCTOBER",  "NOVEMBER", "DECEMBER"};
constexpr std::array<std::string_view, 7> day_names{"SUNDAY",   "MONDAY", "TUESDAY", "WEDNESDAY",
                                                    "THURSDAY", "FRIDAY", "SATURDAY"};

// The place of a name, from 1, that a word of three letters or more is or abbreviates; 0 if there is none.
int name_number(std::string_view word, std::span<const std::string_view> names) {
  const auto found =
      std::ranges::find_if(names, [&](std::string_view name) { return name.starts_with(word); });
  return word.size() < 3 || found == names.end() ? 0 : static_cast<int>(found - names.begin()) + 1;
}

// Takes the next word or number: a run of letters or of digits. What is between them doesn't count.
std::string_view take_part(std::string_view& text) {
  const auto is_digit = [](char c) { return c >= '0' && c <= '9'; };
  const auto is_letter = [](char c) { return c >= 'A' && c <= 'Z'; };
  const auto first = std::ranges::find_if(text, [&](char c) { return is_digit(c) || is_letter(c); });
  text.remove_prefix(static_cast<std::size_t>(first - text.begin()));
  const bool digits = !text.empty() && is_digit(text.front());
  const auto end =
      std::ranges::find_if_not(text, [&](char c) { return digits ? is_digit(c) : is_letter(c); });
  const std::string_view part = text.substr(0, static_cast<std::size_t>(end - text.begin()));
  text.remove_prefix(part.size());
  return part;
}

// A date with the month's name. Of its numbers the first is the day, unless it has the four digits of a year.
std::optional<double> named_date(std::string_view written) {
  const std::string upper = upper_case(written);
  std::string_view text = upper;
  int month = 0;
  std::optional<int> day;
  std::optional<int> year;
  for (std::string_view part = take_part(text); !part.empty() && !(month > 0 && day && year);
       part = take_part(text)) {
    if (text.starts_with(':')) {  // a time stands before the year: "Apr 3 12:00:01 2011"
      text.remove_prefix(std::min(text.find(' '), text.size()));
      continue;
    }
    const std::string_view digits = part;
    if (const auto number = take_number(part)) {
      const bool is_year = !year && (day || digits.size() == 4);
      (is_year ? year : day) = number;
      continue;
    }
    if (name_number(part, day_names) > 0 && month == 0) {
      continue;
    }
    const int named = name_number(part, month_names);
    if (named == 0 || month > 0) {
      return std::nullopt;
    }
    month = named;
  }
  const auto whole_year = year ? full_year(*year) : std::nullopt;
  return month > 0 && day && whole_year ? calendar_day(*whole_year, month, *day) : std::nullopt;
}

std::optional<double> numbered_date(std::string_view text) {
  const std::string_view whole = text;
  const auto first = take_number(text);
  const bool year_first = first && whole.size() - text.size() == 4;
  const char separator = year_first && text.starts_with('-') ? '-' : '/';
  if (!first || !take_character(text, separator)) {
    return std::nullopt;
  }
  const auto second = take_number(text);
  if (!second || !take_character(text, separator)) {
    return std::nullopt;
  }
  const auto third = take_number(text);
  const bool ends_here = text.empty() || text.front() == ' ' || text.front() == '\t' || text.front() == 'T' ||
                         text.front() == 't' || text.front() == '"';
  const auto year = third ? full_year(year_first ? *first : *third) : std::nullopt;
  if (!third || !ends_here || !year) {
    return std::nullopt;
  }
  if (year_first) {
    return calendar_day(*year, *second, *third);
  }
  const double days =
      day_count(*year, *first, *second);  // what is beyond a month runs over into the next one
  return static_cast<int>(calendar_date(days).year()) <= last_year ? std::optional(days) : std::nullopt;
}

}  // namespace

std::optional<double> head_date(std::string_view text) {
  text = trimmed(text);
  if (take_character(text, '"')) {
    text = trimmed(text.substr(0, text.find('"')));
  }
  const std::optional<double> days = numbered_date(text);
  return days ? days : named_date(text);
}

}  // namespace formats
