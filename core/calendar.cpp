#include "core/calendar.h"

#include <array>
#include <cmath>
#include <ctime>

#include "core/number_text.h"

namespace {

constexpr std::chrono::sys_days first_day = std::chrono::year(1899) / 12 / 30;

}  // namespace

double day_count(int year, int month, int day) {
  const std::chrono::year_month first_of_month = std::chrono::year(year) / 1 + std::chrono::months(month - 1);
  const std::chrono::sys_days date = std::chrono::sys_days(first_of_month / 1) + std::chrono::days(day - 1);
  return static_cast<double>((date - first_day).count());
}

double day_count(std::chrono::year_month_day date) {
  return static_cast<double>((std::chrono::sys_days(date) - first_day).count());
}

std::chrono::year_month_day today() {
  const std::time_t now = std::time(nullptr);
  const std::tm* const local = std::localtime(&now);
  return std::chrono::year(local->tm_year + 1900) / (local->tm_mon + 1) / local->tm_mday;
}

std::chrono::year_month_day calendar_date(double days) {
  return {first_day + std::chrono::days(static_cast<int>(std::floor(days)))};
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
