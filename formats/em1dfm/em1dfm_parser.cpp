#include "formats/em1dfm/em1dfm_parser.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/field_values.h"

namespace formats::em1dfm {

namespace {

// What follows the word of a frequency line, item by item: which of the point's values it is.
constexpr std::size_t skipped = 4;
constexpr std::array<std::size_t, 7> items_of_both{skipped, skipped, 0, 1, skipped, 2, 3};
constexpr std::array<std::size_t, 4> items_of_quadrature{skipped, 0, skipped, 2};

}  // namespace

Em1dfmParser::Em1dfmParser(LineReader& reader, FileReport& report) : reader_(reader), report_(report) {
  next_line();  // the title
  next_line();
}

// Goes to the next line that isn't blank. False at the end of the file.
bool Em1dfmParser::next_line() {
  std::string_view bytes;
  while (reader_.next(bytes)) {
    line_ = upper_case(trimmed(bytes));
    if (!line_.empty()) {
      return true;
    }
  }
  line_.clear();
  at_end_ = true;
  return false;
}

bool Em1dfmParser::next_station(Station& station) {
  while (!at_end_) {
    if (line_.starts_with("STAT")) {
      if (read_station(station)) {
        return true;
      }
      continue;
    }
    if (line_.starts_with("LINE")) {
      take_line_name(line_);
    } else {
      remark_ignored(report_, reader_.line_number(),
                     in_quotes(line_) + " begins neither a line nor a station");
    }
    next_line();
  }
  return false;
}

void Em1dfmParser::take_line_name(std::string_view line) {
  next_token(line);
  line_name_ = text_from_field_file(next_token(line));
}

double Em1dfmParser::take_number(std::string_view& line, OddText odd_text) {
  const std::string_view item = next_token(line);
  double value = 0.0;
  if (item.empty()) {
    remark_unreadable(report_, reader_.line_number(), "a number is missing, taken as 0");
    return value;
  }
  take_value(item.data(), item.data() + item.size(), value, report_, reader_.line_number(), odd_text);
  return value;
}

double Em1dfmParser::take_option(std::string_view& line) {
  const double value = take_number(line, OddText::leading_number);
  return is_absent(value) ? 0.0 : value;
}

// Reads a station and goes to the line after it. False if it gives nothing, which the report explains.
bool Em1dfmParser::read_station(Station& station) {
  const std::int64_t first_line = reader_.line_number();
  std::string_view rest = line_;
  // Two words are in front of the five numbers, in some files three.
  const std::size_t words = count_items(rest) == 8 ? 3 : 2;
  for (std::size_t word = 0; word < words; ++word) {
    next_token(rest);
  }
  station.line = line_name_;
  station.station = take_option(rest);
  station.x = take_option(rest);
  station.y = take_option(rest);
  station.elevation = take_option(rest);
  const double count = std::trunc(take_option(rest));
  if (station.line.empty()) {
    remark_unreadable(report_, first_line, "the station stands before any line; its line is blank");
  }
  const double lines_read = read_points(count, station.points);
  if (lines_read < count && at_end_) {
    report_.failure = "the file ends inside the station of line " + std::to_string(first_line) +
                      "; that station is not stored";
    return false;
  }
  if (lines_read != count) {
    remark_unreadable(
        report_, first_line,
        "the station has " + plain_text(lines_read) + " of " + plain_text(count) + " frequencies");
  }
  if (station.points.empty()) {
    remark_unreadable(report_, first_line, "the station has no frequencies and is left out");
    return false;
  }
  std::vector<float> frequencies;
  std::ranges::transform(station.points, std::back_inserter(frequencies), &Point::frequency);
  remark_on_frequencies(frequencies, first_line, report_);
  return true;
}

// Reads up to `count` frequencies, but not into the next station or line. Gives the number of lines read,
// which is a double as `count` is: a damaged file may say 1e300.
double Em1dfmParser::read_points(double count, std::vector<Point>& points) {
  points.clear();
  double lines_read = 0.0;
  while (next_line() && lines_read < count && !line_.starts_with("STAT") && !line_.starts_with("LINE")) {
    append_point(line_, points);
    lines_read += 1.0;
  }
  return lines_read;
}

void Em1dfmParser::append_point(std::string_view line, std::vector<Point>& points) {
  const double frequency = take_number(line, OddText::absent);
  if (is_absent(frequency)) {
    remark_unreadable(report_, reader_.line_number(), "a line has no frequency and is left out");
    return;
  }
  Point& point = points.emplace_back();
  point.frequency = static_cast<float>(frequency);
  const auto take_items = [&](const auto& items) {
    for (const std::size_t place : items) {
      if (place == skipped) {
        next_token(line);
      } else {
        point.values.at(place) = single_or_absent(take_number(line, OddText::absent));
      }
    }
  };
  const std::string_view word = next_token(line);
  if (word.find('B') != std::string_view::npos) {
    take_items(items_of_both);
  } else if (word.find('Q') != std::string_view::npos) {
    take_items(items_of_quadrature);
  } else {
    remark_unreadable(report_, reader_.line_number(),
                      in_quotes(word) + " tells no kind of data; the values are absent");
  }
}

}  // namespace formats::em1dfm
