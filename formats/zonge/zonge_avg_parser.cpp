#include "formats/zonge/zonge_avg_parser.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <numbers>

#include "core/number_text.h"
#include "core/text_fields.h"

namespace formats::zonge {

using transfer_function::Component;
using transfer_function::impedance_count;
using transfer_function::not_given;
using transfer_function::Point;
using transfer_function::Value;

namespace {

constexpr double degrees_per_milliradian = 0.18 / std::numbers::pi;
constexpr double percent = 0.01;
constexpr double error_not_known = 168.0;  // percent of the resistivity: the largest one that is written
constexpr double metres_in_foot = 0.3048;

/// What a column of a table holds.
enum class Column : std::uint8_t {
  other,
  skip,
  magnitude_weight,
  phase_weight,
  station,
  frequency,
  component,
  resistivity,
  phase,
  impedance,
  resistivity_percent,
  phase_error,
};

struct ColumnName {
  std::string_view name;  // upper case
  Column column;
};
constexpr std::array<ColumnName, 18> column_names{{{"SKP", Column::skip},
                                                   {"Z.MWGT", Column::magnitude_weight},
                                                   {"Z.PWGT", Column::phase_weight},
                                                   {"STATION", Column::station},
                                                   {"FREQ", Column::frequency},
                                                   {"COMP", Column::component},
                                                   {"RESISTIVITY", Column::resistivity},
                                                   {"PHASE", Column::phase},
                                                   {"%RHO", Column::resistivity_percent},
                                                   {"SPHZ", Column::phase_error},
                                                   {"ARES.MAG", Column::resistivity},
                                                   {"ARES", Column::resistivity},
                                                   {"Z.PHZ", Column::phase},
                                                   {"Z.MAG", Column::impedance},
                                                   {"ARES.%ERR", Column::resistivity_percent},
                                                   {"Z.PERR", Column::phase_error},
                                                   {"Z.PHASE", Column::phase},
                                                   {"RHO", Column::resistivity}}};

/// The items of a row: at commas where it has any, else at blanks.
std::vector<std::string_view> items_of(std::string_view line) {
  std::vector<std::string_view> items;
  if (line.find(',') == std::string_view::npos) {
    for (std::string_view item = next_token(line); !item.empty(); item = next_token(line)) {
      items.push_back(item);
    }
    return items;
  }
  for (std::size_t comma = line.find(','); comma != std::string_view::npos; comma = line.find(',')) {
    items.push_back(trimmed(line.substr(0, comma)));
    line.remove_prefix(comma + 1);
  }
  items.push_back(trimmed(line));
  return items;
}

Column column_of(std::string_view name) {
  const std::string upper = upper_case(name);
  const auto found = std::ranges::find(column_names, upper, &ColumnName::name);
  return found == column_names.end() ? Column::other : found->column;
}

/// The columns of a heading; empty if the line is none.
std::vector<Column> heading_of(std::string_view line) {
  std::vector<Column> columns;
  for (const std::string_view item : items_of(line)) {
    if (equal_ignoring_case(item, "skpStation")) {  // one word where the station has no room
      columns.push_back(Column::skip);
      columns.push_back(Column::station);
    } else {
      columns.push_back(column_of(item));
    }
  }
  const bool is_heading = std::ranges::find(columns, Column::frequency) != columns.end() &&
                          std::ranges::find(columns, Column::phase) != columns.end();
  return is_heading ? columns : std::vector<Column>{};
}

/// The component of a name such as "ExHy", "Zxy" or, with a remote reference, "Zxyr".
std::optional<Component> component_of(std::string_view name) {
  struct Name {
    std::string_view text;
    Component component;
  };
  constexpr std::array<Name, 10> names{{{"EXHX", Component::zxx},
                                        {"EXHY", Component::zxy},
                                        {"EYHX", Component::zyx},
                                        {"EYHY", Component::zyy},
                                        {"ZXX", Component::zxx},
                                        {"ZXY", Component::zxy},
                                        {"ZYX", Component::zyx},
                                        {"ZYY", Component::zyy},
                                        {"TZX", Component::tx},
                                        {"TZY", Component::ty}}};
  std::string upper = upper_case(trimmed(name));
  if (upper.size() == 4 && upper.back() == 'R' && (upper[0] == 'Z' || upper[0] == 'T')) {
    upper.pop_back();
  }
  const auto found = std::ranges::find(names, upper, &Name::text);
  return found == names.end() ? std::nullopt : std::optional(found->component);
}

struct Row {
  double station = not_given;
  std::string_view component;
  double frequency = not_given;
  Value value;
  double magnitude = not_given;
  double percent_error = not_given;
};

class AvgReader {
 public:
  AvgReader(LineReader& lines, FileReport& report) : lines_(lines), report_(report) {}

  std::vector<AvgStation> read() {
    std::string_view line;
    while (lines_.next(line)) {
      take_line(trimmed(line));
    }
    if (stations_.empty() && report_.failure.empty()) {
      report_.failure = "the file has no table of averaged soundings";
    }
    return std::move(stations_);
  }

 private:
  void take_line(std::string_view line) {
    if (line.starts_with('\\') && line.substr(1).starts_with('$')) {
      line.remove_prefix(1);  // some programs put facts into comments
    }
    if (line.empty() || std::string_view("\\\"/!").find(line[0]) != std::string_view::npos) {
      return;
    }
    if (line[0] == '$') {
      take_fact(line.substr(1));
    } else if (auto columns = heading_of(line); !columns.empty()) {
      columns_ = std::move(columns);
    } else if (!columns_.empty()) {
      take_row(line);
    }
  }

  void take_fact(std::string_view text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos) {
      return;
    }
    const std::string key = upper_case(trimmed(text.substr(0, equals)));
    const std::string_view value = trimmed(text.substr(equals + 1));
    if (key == "RX.STN" || key == "RX.GDPSTN") {
      begin_station(key, value);
    } else if (key == "RX.CMP") {
      component_ = value;
    } else if (key == "ASPACE" || key == "RX.LENGTH") {
      dipole_ = length(value);
    } else if (key == "UNIT.LENGTH") {
      in_feet_ = upper_case(value).starts_with("F");
    } else if (key == "RX.HPR") {
      take_number(value, heading_);
    } else if (key == "GPS.LAT") {
      take_number(value, latitude_);
    } else if (key == "GPS.LON") {
      take_number(value, longitude_);
    } else if (key == "SURVEY.DATUM" || key == "GPS.DATUM") {
      datum_ = text_from_field_file(value);
    } else if (key == "RX.CENTER") {
      take_place(value);
    }
  }

  /// The number of the station by its own name goes before that of the receiver's box, whichever comes first.
  void begin_station(const std::string& key, std::string_view value) {
    std::string_view rest = value;
    const std::string_view item = next_token(rest);
    if (!is_numeric(item)) {
      remark_unreadable(report_, lines_.line_number(), "the station " + in_quotes(value) + " is no number");
      return;
    }
    const bool by_name = key == "RX.STN";
    if (!by_name && named_at_ == lines_.line_number() - 1) {
      return;
    }
    if (by_name) {
      named_at_ = lines_.line_number();
    }
    station_ = numeric_value(item);
    place_.reset();
  }

  [[nodiscard]] std::optional<double> length(std::string_view text) const {
    std::string_view unit;
    const double value = numeric_value(text, unit);
    const std::string letters = upper_case(trimmed(unit));
    const bool feet = letters.starts_with("F") || (letters.empty() && in_feet_);
    return value > 0.0 ? std::optional(feet ? value * metres_in_foot : value) : std::nullopt;
  }

  static void take_number(std::string_view text, std::optional<double>& number) {
    std::string_view rest = text;
    const std::string_view item = next_token(rest);
    if (is_numeric(item)) {
      number = numeric_value(item);
    }
  }

  void take_place(std::string_view text) {
    AvgMapPlace place;
    std::array<double*, 3> numbers{&place.east, &place.north, &place.elevation};
    for (double* const number : numbers) {
      std::string_view rest;
      *number = numeric_value(text, rest);
      if (rest.size() == text.size()) {
        return;
      }
      text = rest.starts_with(':') ? rest.substr(1) : rest;
    }
    if (!place_) {
      place_ = place;
    }
  }

  double number_in(std::string_view item) {
    if (is_numeric(item)) {
      return numeric_value(item);
    }
    if (item != "*" && !item.empty()) {
      remark_unreadable(report_, lines_.line_number(), in_quotes(item) + " is not a number, taken as absent");
    }
    return not_given;
  }

  Row row_of(const std::vector<std::string_view>& items) {
    Row row;
    row.station = station_.value_or(not_given);
    row.component = component_;
    for (std::size_t i = 0; i < std::min(items.size(), columns_.size()); ++i) {
      switch (columns_[i]) {
        case Column::skip:
          row.value.in_use = row.value.in_use && number_in(items[i]) >= 2.0;
          break;
        case Column::magnitude_weight:
        case Column::phase_weight:
          row.value.in_use = row.value.in_use && number_in(items[i]) != 0.0;
          break;
        case Column::station:
          row.station = number_in(items[i]);
          break;
        case Column::component:
          row.component = items[i];
          break;
        case Column::frequency:
          row.frequency = number_in(items[i]);
          break;
        case Column::resistivity:
          row.value.resistivity = number_in(items[i]);
          break;
        case Column::phase:
          row.value.phase = std::remainder(number_in(items[i]) * degrees_per_milliradian, 360.0);
          break;
        case Column::impedance:
          row.magnitude = number_in(items[i]);
          break;
        case Column::resistivity_percent:
          row.percent_error = number_in(items[i]);
          break;
        case Column::phase_error:
          row.value.phase_error = number_in(items[i]) * degrees_per_milliradian;
          break;
        case Column::other:
          break;
      }
    }
    return row;
  }

  void take_row(std::string_view line) {
    const std::vector<std::string_view> items = items_of(line);
    if (std::ranges::none_of(items, is_numeric)) {
      return;  // a rule under the heading, or a text
    }
    Row row = row_of(items);
    if (!(row.frequency > 0.0) || std::isnan(row.station)) {
      remark_unreadable(report_, lines_.line_number(),
                        "a row has no station or no frequency above 0 and is left out");
      return;
    }
    const auto component = component_of(row.component);
    if (!component) {
      remark_ignored(report_, lines_.line_number(),
                     "the component " + in_quotes(row.component) + ", which is no tensor element",
                     "components");
      return;
    }
    finish(*component, row);
    point_of(station_of(row.station), row.frequency).of(*component) = row.value;
  }

  /// Errors and complex values from what the table has.
  static void finish(Component component, Row& row) {
    Value& value = row.value;
    const bool is_tipper = static_cast<std::size_t>(component) >= impedance_count;
    if (!std::isnan(row.magnitude) && !std::isnan(value.phase)) {
      value.value = std::polar(row.magnitude, value.phase / 180.0 * std::numbers::pi);
    }
    if (row.percent_error < error_not_known) {
      value.resistivity_error = value.resistivity * row.percent_error * percent;
      const double deviation = row.magnitude * row.percent_error * percent / 2.0;
      value.variance = 2.0 * deviation * deviation;
    } else if (row.percent_error >= error_not_known) {
      value.phase_error = not_given;
    }
    if (is_tipper) {  // the table repeats its length in place of a resistivity
      value.resistivity = value.phase = value.resistivity_error = value.phase_error = not_given;
    }
  }

  std::size_t station_of(double station) {
    const auto [place, is_new] = places_.try_emplace(station, stations_.size());
    if (is_new) {
      AvgStation& added = stations_.emplace_back();
      added.station = station;
      points_.emplace_back();
    }
    AvgStation& known = stations_[place->second];
    known.dipole = known.dipole ? known.dipole : dipole_;
    known.place = known.place ? known.place : place_;
    transfer_function::Site& site = known.function.site;
    site.x_azimuth = heading_;
    site.latitude = latitude_;
    site.longitude = longitude_;
    site.datum = datum_;
    return place->second;
  }

  Point& point_of(std::size_t station, double frequency) {
    std::vector<Point>& points = stations_[station].function.points;
    const auto [place, is_new] = points_[station].try_emplace(frequency, points.size());
    if (is_new) {
      points.emplace_back().frequency = frequency;
    }
    return points[place->second];
  }

  LineReader& lines_;
  FileReport& report_;
  std::vector<AvgStation> stations_;
  std::map<double, std::size_t> places_;
  std::vector<std::map<double, std::size_t>> points_;  // by station and frequency
  std::vector<Column> columns_;                        // of the table under way
  std::optional<double> station_;
  std::int64_t named_at_ = -1;  // line
  std::string component_;
  std::optional<double> dipole_;
  std::optional<double> heading_;
  std::optional<double> latitude_;
  std::optional<double> longitude_;
  std::optional<AvgMapPlace> place_;
  std::string datum_;
  bool in_feet_ = false;
};

}  // namespace

std::vector<AvgStation> read_zonge_avg(LineReader& lines, FileReport& report) {
  return AvgReader(lines, report).read();
}

bool is_zonge_avg_line(std::string_view line) {
  const std::string_view text = trimmed(line);
  return (!text.empty() && text[0] != '$' && !heading_of(text).empty()) ||
         upper_case(text).starts_with("$RX.CMP");
}

}  // namespace formats::zonge
