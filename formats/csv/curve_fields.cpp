#include "formats/csv/curve_fields.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/number_text.h"
#include "core/text_fields.h"

namespace formats::csv {

namespace {

constexpr double not_known = std::numeric_limits<double>::quiet_NaN();

std::string count_text(std::size_t count) { return plain_text(static_cast<std::int64_t>(count)); }

}  // namespace

CurveFields::CurveFields(LineReader& lines, FileReport& report)
    : lines_(lines), report_(report), records_(lines) {
  std::string_view line;
  while (lines_.next(line) && trimmed(line).empty()) {
  }
  take_header(line);
}

void CurveFields::take_header(std::string_view line) {
  const char separator = header_separator(line);
  if (separator != ',') {
    report_.failure = std::string("the columns are separated by ") +
                      (separator == ';' ? "semicolons" : "tabs") +
                      "; a table of curves has commas between its columns and decimal points in its numbers";
    return;
  }
  const std::vector<std::string> names = csv_fields(line, separator);
  const CurveColumns columns = curve_columns(names);
  if (const std::string missing = missing_curve_column(columns); !missing.empty()) {
    report_.failure = "the table has no column " + missing;
    return;
  }
  field_count_ = names.size();
  for (std::size_t index = 0; index < columns.size(); ++index) {
    if (columns[index]) {
      places_[static_cast<std::size_t>(*columns[index])] = index;
    } else if (!trimmed(names[index]).empty()) {
      remark_ignored(report_, lines_.line_number(), "the column " + in_quotes(names[index]) + " is not used",
                     "columns of a table");
    }
  }
}

bool CurveFields::next_row() {
  while (report_.failure.empty() && records_.next(record_)) {
    if (records_.has_open_quote()) {
      report_.failure = "line " + plain_text(record_.line_number) + ": " + record_.fault +
                        "; nothing behind it could be read";
      return false;
    }
    if (record_.fault.empty() && record_.fields.size() != field_count_) {
      record_.fault = "the row has " + count_text(record_.fields.size()) + " fields where the header has " +
                      count_text(field_count_);
    }
    if (record_.fault.empty()) {
      return true;
    }
    remark_unreadable(report_, record_.line_number, record_.fault + "; it is left out");
  }
  return false;
}

std::string_view CurveFields::field(CurveColumn column) const {
  const auto& place = places_[static_cast<std::size_t>(column)];
  return place ? trimmed(record_.fields[*place]) : std::string_view();
}

std::string CurveFields::text(CurveColumn column) const {
  return text_from_field_file(csv_text(field(column)));
}

void CurveFields::remark(CurveColumn column, std::string_view what) {
  remark_unreadable(
      report_, record_.line_number,
      std::string(column_name(column)) + " " + in_quotes(field(column)) + " " + std::string(what));
}

double CurveFields::number(CurveColumn column) {
  const std::string_view item = field(column);
  if (item.empty() || equal_ignoring_case(item, "nan")) {
    return not_known;
  }
  const double value = is_numeric(item) ? numeric_value(item) : not_known;
  if (std::abs(value) <= largest_value) {
    return value;
  }
  std::string with_point(item);
  std::ranges::replace(with_point, ',', '.');
  if (with_point != item && is_numeric(with_point)) {
    report_.failure = "line " + plain_text(record_.line_number) + ": " + std::string(column_name(column)) +
                      " " + in_quotes(item) +
                      " has a decimal comma; the numbers of a table have decimal points";
  } else if (std::isnan(value)) {
    remark(column, "is not a number, taken as absent");
  }
  return not_known;
}

std::optional<double> CurveFields::number_within(CurveColumn column, double least, double most) {
  const double value = number(column);
  if (value >= least && value <= most) {
    return value;
  }
  if (!std::isnan(value)) {
    remark(column, "is out of range, taken as absent");
  }
  return std::nullopt;
}

std::optional<int> CurveFields::whole_number(CurveColumn column, int most) {
  const std::optional<double> value = number_within(column, 0.0, most);
  if (value && *value != std::floor(*value)) {
    remark(column, "is not a whole number, taken as absent");
    return std::nullopt;
  }
  return value ? std::optional(static_cast<int>(*value)) : std::nullopt;
}

std::optional<bool> CurveFields::mark(CurveColumn column) {
  const std::string_view item = field(column);
  if (item == "1" || equal_ignoring_case(item, "true")) {
    return true;
  }
  if (item == "0" || equal_ignoring_case(item, "false")) {
    return false;
  }
  if (!item.empty()) {
    remark(column, "is neither 0 nor 1, taken as absent");
  }
  return std::nullopt;
}

}  // namespace formats::csv
