#include "formats/zonge/zonge_avg_parser.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <map>
#include <numbers>
#include <utility>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/field_values.h"
#include "formats/transfer_function/point_places.h"
#include "formats/transfer_function/sound_numbers.h"
#include "formats/zonge/zonge_avg_columns.h"
#include "formats/zonge/zonge_avg_end.h"
#include "formats/zonge/zonge_avg_facts.h"

namespace formats::zonge {

using transfer_function::Component;
using transfer_function::impedance_count;
using transfer_function::is_frequency;
using transfer_function::not_given;
using transfer_function::Point;
using transfer_function::Value;

namespace {

constexpr double percent = 0.01;
// Percent of a resistivity and degrees of a phase that stand together for errors that aren't known, in the
// layout with keywords: the arc sine that makes the one of the other ends there, at 997 milliradians.
constexpr double percent_not_known = 168.0;
constexpr double degrees_not_known = 57.12;
constexpr double as_written = 0.05;  // of both, of which one decimal may be written

bool stand_for_unknown(double percent_error, double phase_error) {
  return std::abs(percent_error - percent_not_known) < as_written &&
         std::abs(phase_error - degrees_not_known) < as_written;
}

struct Row {
  double station = not_given;
  std::string_view component;
  double frequency = not_given;
  Value value;
  bool is_kept = true;  // its skip flag switches off both halves
  double magnitude = not_given;
  double percent_error = not_given;
};

class AvgReader {
 public:
  AvgReader(LineReader& lines, FileReport& report) : lines_(lines), report_(report) {}

  std::vector<AvgStation> read() {
    std::string_view line;
    while (report_.failure.empty() && lines_.next(line)) {
      cut_line_ = trimmed(line).empty() ? cut_line_ : 0;
      take_line(trimmed(line));
    }
    const bool has_read_all = report_.failure.empty();
    if (stations_.empty() && report_.failure.empty()) {
      report_.failure = "the file has no table of averaged soundings";
    }
    if (!report_.failure.empty()) {
      return {};
    }
    take_phases_of_set();
    for (AvgStation& station : stations_) {
      drop_unsound_numbers(station.function);
    }
    if (has_read_all && cut_line_ > 0) {
      report_.failure = "the file is cut off in line " + plain_text(cut_line_);
    } else if (const std::string missing = end_.missing(); !missing.empty()) {
      remark_unreadable(report_, lines_.line_number(),
                        "station " + plain_text(last_station_) + " " + missing + "; the file may be cut off");
    }
    return std::move(stations_);
  }

 private:
  void take_line(std::string_view line) {
    if (line.starts_with('\\') && line.substr(1).starts_with('$')) {
      line.remove_prefix(1);  // some programs put facts into comments
    }
    if (line.empty() || std::string_view("\\\"/!").find(line[0]) != std::string_view::npos) {
      take_avg_comment(facts_, line);
      return;
    }
    if (line[0] == '$') {
      told_component_.reset();
      take_avg_fact(facts_, line.substr(1), report_, lines_.line_number());
    } else if (auto columns = avg_heading(line); !columns.empty()) {
      columns_ = std::move(columns);
      has_commas_ = line.find(',') != std::string_view::npos;
      has_short_rows_ = false;
      in_set_ = is_avg_set_heading(line);
    } else if (!columns_.empty()) {
      take_row(line);
    }
  }

  /// Older programs wrote milliradians into the same columns; no angle is beyond a turn.
  void take_phases_of_set() {
    constexpr double turn = 360.0;
    const auto each_phase = [&](const auto& take) {
      for (AvgStation& station : stations_) {
        for (Point& point : station.function.points) {
          if (!station.names_component) {
            take(point.of(Component::zxy).phase);
          }
        }
      }
    };
    double largest = 0.0;
    each_phase([&](double phase) { largest = std::abs(phase) > largest ? std::abs(phase) : largest; });
    if (largest > turn) {
      each_phase([&](double& phase) { phase = std::remainder(phase * facts_.degrees_of_phase, turn); });
      remark_ignored(
          report_, 0,
          "phases up to " + plain_text(largest) + " are no degrees; they are taken as milliradians");
    }
  }

  double number_in(std::string_view item) {
    if (is_numeric(item)) {
      const double value = numeric_value(item);
      return std::abs(value) <= largest_value ? value : not_given;
    }
    if (item != "*" && !item.empty()) {
      remark_unreadable(report_, lines_.line_number(), in_quotes(item) + " is not a number, taken as absent");
    }
    return not_given;
  }

  Row row_of(const std::vector<std::string_view>& items) {
    Row row;
    row.station = facts_.station().value_or(not_given);
    row.component = in_set_ ? std::string_view("ExHy") : facts_.component;
    for (std::size_t i = 0; i < std::min(items.size(), columns_.size()); ++i) {
      switch (columns_[i]) {
        case AvgColumn::skip:
          row.is_kept = number_in(items[i]) >= 2.0;
          break;
        case AvgColumn::magnitude_weight:
          row.value.use_resistivity = number_in(items[i]) != 0.0;
          break;
        case AvgColumn::phase_weight:
          row.value.use_phase = number_in(items[i]) != 0.0;
          break;
        case AvgColumn::station:
          row.station = number_in(items[i]);
          break;
        case AvgColumn::component:
          row.component = items[i];
          break;
        case AvgColumn::frequency:
          row.frequency = number_in(items[i]);
          break;
        case AvgColumn::resistivity:
          row.value.resistivity = number_in(items[i]);
          break;
        case AvgColumn::phase:
          row.value.phase = in_set_ ? number_in(items[i])
                                    : std::remainder(number_in(items[i]) * facts_.degrees_of_phase, 360.0);
          break;
        case AvgColumn::impedance:
          row.magnitude = number_in(items[i]);
          break;
        case AvgColumn::resistivity_percent:
          row.percent_error = number_in(items[i]);
          break;
        case AvgColumn::phase_error:
          row.value.phase_error = number_in(items[i]) * facts_.degrees_of_phase;
          break;
        case AvgColumn::other:
          break;
      }
    }
    return row;
  }

  void take_row(std::string_view line) {
    const std::vector<std::string_view> items = avg_items(line);
    if (std::ranges::none_of(items, is_numeric)) {
      return;  // a rule under the heading, or a text
    }
    facts_.has_rows = true;
    if (items.size() < columns_.size() && !take_short_row(items.size())) {
      return;
    }
    Row row = row_of(items);
    if (!is_frequency(row.frequency) || std::isnan(row.station)) {
      remark_unreadable(report_, lines_.line_number(),
                        "a row has no station or no frequency above 0 and is left out");
      return;
    }
    const auto component = avg_component(row.component);
    if (!component) {
      remark_on_component(row.component);
      return;
    }
    if (++row_count_ > transfer_function::most_points) {
      report_.failure = transfer_function::too_many_points_text;
      return;
    }
    finish(*component, row);
    const std::size_t station = station_of(row.station);
    end_.note(station, *component, row.frequency);
    last_station_ = row.station;
    points_[station]
        .point_of(stations_[station].function.points, static_cast<std::size_t>(*component), row.frequency)
        .of(*component) = row.value;
  }

  /// The last value of a row that is cut may be half a number.
  /// @return false if that value, or one of those that are missing, is asked for
  bool take_short_row(std::size_t count) {
    const bool is_whole =
        std::all_of(columns_.begin() + static_cast<std::ptrdiff_t>(count - 1), columns_.end(),
                    [](AvgColumn column) { return column == AvgColumn::other; });
    cut_line_ = is_whole && has_short_rows_ ? 0 : lines_.line_number();
    has_short_rows_ = true;
    remark_unreadable(report_, lines_.line_number(),
                      std::string("a row has fewer values than its table has columns") +
                          (is_whole ? "" : " and is left out"));
    return is_whole;
  }

  /// Once for the rows that follow one another.
  void remark_on_component(std::string_view component) {
    if (told_component_ != component) {
      told_component_ = component;
      remark_ignored(report_, lines_.line_number(),
                     "the component " + in_quotes(component) + ", which is no tensor element", "components");
    }
  }

  /// Errors and complex values from what the table has.
  void finish(Component component, Row& row) const {
    Value& value = row.value;
    value.use_resistivity = value.use_resistivity && row.is_kept;
    value.use_phase = value.use_phase && row.is_kept;
    const bool is_tipper = static_cast<std::size_t>(component) >= impedance_count;
    if (row.magnitude >= 0.0 && !std::isnan(value.phase)) {
      value.value = std::polar(row.magnitude, value.phase / 180.0 * std::numbers::pi);
    }
    if (has_commas_ && stand_for_unknown(row.percent_error, value.phase_error)) {
      value.phase_error = not_given;
    } else {
      value.resistivity_error = value.resistivity * row.percent_error * percent;
      const double deviation = row.magnitude * row.percent_error * percent / 2.0;
      value.variance = 2.0 * deviation * deviation;
    }
    if (is_tipper) {  // both parts take length and angle
      value.use_resistivity = value.use_phase = value.use_resistivity && value.use_phase;
      // The table repeats its length in place of a resistivity.
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
    known.names_component = known.names_component && !in_set_;
    known.dipole = known.dipole ? known.dipole : facts_.dipole;
    known.place = known.place ? known.place : facts_.place;
    transfer_function::Site& site = known.function.site;
    if (facts_.latitude && facts_.longitude) {  // once: it isn't the place of the next station as well
      take_place(site, *facts_.latitude, *facts_.longitude);
      facts_.latitude.reset();
      facts_.longitude.reset();
    }
    const std::optional<double> x_azimuth = facts_.x_azimuth();
    site.x_azimuth = x_azimuth ? x_azimuth : site.x_azimuth;
    site.datum = facts_.datum;
    site.date = facts_.date;
    return place->second;
  }

  LineReader& lines_;
  FileReport& report_;
  std::vector<AvgStation> stations_;
  std::map<double, std::size_t> places_;
  std::vector<transfer_function::PointPlaces> points_;  // by station
  AvgEnd end_;
  double last_station_ = 0.0;       // of the last row
  std::vector<AvgColumn> columns_;  // of the table under way
  AvgFacts facts_;                  // of the table under way
  bool in_set_ = false;             // it is one that this program writes
  bool has_commas_ = false;         // it is of the layout with keywords
  bool has_short_rows_ = false;     // it has had
  std::int64_t cut_line_ = 0;       // a short row, if nothing has come after it
  std::optional<std::string> told_component_;
  std::size_t row_count_ = 0;
};

}  // namespace

std::vector<AvgStation> read_zonge_avg(LineReader& lines, FileReport& report) {
  return AvgReader(lines, report).read();
}

bool is_zonge_avg_line(std::string_view line) {
  const std::string_view text = trimmed(line);
  return (!text.empty() && text[0] != '$' && !avg_heading(text).empty()) ||
         upper_case(text).starts_with("$RX.CMP");
}

}  // namespace formats::zonge
