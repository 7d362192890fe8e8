#include "formats/head_dates.h"

#include <charconv>

#include "core/calendar.h"
#include "core/text_fields.h"

namespace formats {

namespace {

constexpr int last_year = 9999;

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

}  // namespace

std::optional<double> head_date(std::string_view text) {
  text = trimmed(text);
  if (take_character(text, '"')) {
    text = trimmed(text.substr(0, text.find('"')));
  }
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
  const double days = year_first ? day_count(*year, *second, *third) : day_count(*year, *first, *second);
  return static_cast<int>(calendar_date(days).year()) <= last_year ? std::optional(days) : std::nullopt;
}

}  // namespace formats
