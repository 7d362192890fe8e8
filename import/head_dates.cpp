#include "import/head_dates.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>

#include "core/number_text.h"
#include "core/text_fields.h"

namespace Module_data_file {

namespace {

constexpr std::chrono::sys_days first_day = std::chrono::year(1899) / 12 / 30;
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

std::chrono::year_month_day calendar_date(double days) {
  return {first_day + std::chrono::days(static_cast<int>(std::floor(days)))};
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

double day_count(int year, int month, int day) {
  const std::chrono::year_month first_of_month = std::chrono::year(year) / 1 + std::chrono::months(month - 1);
  const std::chrono::sys_days date = std::chrono::sys_days(first_of_month / 1) + std::chrono::days(day - 1);
  return static_cast<double>((date - first_day).count());
}

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

std::string criterion_date(double days) {
  const std::chrono::year_month_day date = calendar_date(days);
  return format_number(static_cast<int>(static_cast<unsigned>(date.month())), "00") + "/" +
         format_number(static_cast<int>(static_cast<unsigned>(date.day())), "00") + "/" +
         format_number(static_cast<int>(date.year()), "0000");
}

std::string display_date(double days) {
  constexpr std::array<const char*, 12> months{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                               "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  const std::chrono::year_month_day date = calendar_date(days);
  return format_number(static_cast<int>(static_cast<unsigned>(date.day())), "00") + "-" +
         months.at(static_cast<unsigned>(date.month()) - 1) + "-" +
         format_number(static_cast<int>(date.year()), "0000");
}

}  // namespace Module_data_file
