#include "formats/j_format/j_format.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/median.h"
#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/field_values.h"
#include "formats/j_format/j_blocks.h"
#include "formats/transfer_function/point_places.h"
#include "formats/transfer_function/sound_numbers.h"
#include "numerics/geodesy/geographic_angle.h"

namespace formats::j_format {

using numerics::geodesy::GeographicAngle;
using numerics::geodesy::read_geographic_angle;
using transfer_function::Component;
using transfer_function::is_frequency;
using transfer_function::not_given;
using transfer_function::Point;
using transfer_function::TransferFunction;
using transfer_function::Value;

namespace {

constexpr double absent_mark = -999.0;
constexpr double field_over_si = 795.774715459;  // mV/km/nT of one ohm: 1e-3 / mu0

class JFormatReader {
 public:
  JFormatReader(LineReader& lines, FileReport& report) : lines_(lines), report_(report) {}

  TransferFunction read() {
    std::string_view line;
    while (report_.failure.empty() && next_line(line)) {
      const std::string text = text_from_field_file(trimmed(line));
      if (text.empty()) {
        continue;
      }
      if (text[0] == '#') {
        is_birrp_ = is_birrp_ || upper_case(text).find("BIRRP") != std::string::npos;
      } else if (text[0] == '>') {
        take_option(text.substr(1));
      } else if (const auto type = block_type(text)) {
        read_block(*type);
      } else if (result_.site.id.empty()) {
        std::string_view rest = text;
        result_.site.id = next_word(rest);
        azimuth_behind_name_ = angle_in(rest);
      } else {
        remark_ignored(report_, lines_.line_number(), "a line between the blocks, " + in_quotes(text),
                       "lines between the blocks");
      }
    }
    finish();
    return std::move(result_);
  }

 private:
  /// The next line; one that was read too early comes again.
  bool next_line(std::string_view& line) {
    if (has_kept_) {
      has_kept_ = false;
      line = kept_;
      return true;
    }
    return lines_.next(line);
  }
  void keep(std::string_view line) {
    kept_ = line;
    has_kept_ = true;
  }

  void take_option(std::string_view text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos) {
      return;
    }
    const std::string key = upper_case(trimmed(text.substr(0, equals)));
    const std::string_view value = trimmed(text.substr(equals + 1));
    if (value.empty()) {
      return;
    }
    std::optional<double> number;
    if (key == "LATITUDE") {
      latitude_ = number = read_geographic_angle(value, GeographicAngle::latitude);
    } else if (key == "LONGITUDE") {
      longitude_ = number = read_geographic_angle(value, GeographicAngle::longitude);
    } else if (key == "AZIMUTH") {
      result_.site.x_azimuth = number = angle_in(value);
    } else if (key == "ELEVATION") {
      number = numeric_value(value);
      const bool is_elevation =
          is_numeric(value) && std::abs(*number) <= largest_value && *number != absent_mark;
      result_.site.elevation = is_elevation ? number : std::nullopt;
      number = is_numeric(value) ? number : std::nullopt;
    } else {
      return;
    }
    if (!number) {
      remark_unreadable(report_, lines_.line_number(), key + ": " + in_quotes(value) + " can't be taken");
    }
  }

  static std::optional<double> angle_in(std::string_view text) {
    constexpr double full_turn = 360.0;  // degrees
    const double angle = numeric_value(text);
    const bool is_angle = is_numeric(text) && std::abs(angle) <= full_turn;
    return is_angle ? std::optional(angle) : std::nullopt;
  }

  void read_block(BlockType type) {
    std::string_view line;
    const bool has_line = next_row(line);
    const auto count = has_line ? row_count(line) : std::nullopt;
    if (!count) {
      remark_unreadable(report_, lines_.line_number(),
                        "the block " + type.name + " has no count and is left out");
      skip_rows(has_line, line);
      return;
    }
    check_block(type);
    for (std::int64_t row = 0; row < *count; ++row) {
      const bool is_line = next_row(line);
      if (!is_line || block_type(line)) {
        end_early(type, plain_text(row) + " rows of " + plain_text(*count), is_line);
        if (is_line) {
          keep(line);
        }
        return;
      }
      read_row(type, line);
    }
  }

  /// A count may be wrong; at the end of the file the file was cut off. Either way the rows that there are
  /// count.
  void end_early(const BlockType& type, const std::string& rows, bool has_more) {
    if (has_more) {
      remark_unreadable(report_, lines_.line_number(), "the block " + type.name + " has " + rows);
    } else {
      report_.failure = "the file ends inside the block " + type.name + ", after " + rows;
    }
  }

  /// Elements come in pairs, and curves and impedances of the same elements. What lacks its other half may
  /// have been behind the end of a file that is cut off between two blocks; a file of one mode is whole.
  void tell_missing_blocks() {
    const auto has = [this](char kind, std::string_view element) {
      return names_.contains(kind + std::string(element));
    };
    std::vector<std::string> missing;
    const auto look = [&](char kind, std::string_view element, bool wanted) {
      if (wanted && !has(kind, element)) {
        missing.push_back(kind + std::string(element));
      }
    };
    look('T', "ZX", has('T', "ZY"));
    look('T', "ZY", has('T', "ZX"));
    for (const char kind : {'R', 'Z'}) {
      const char other = kind == 'R' ? 'Z' : 'R';
      const bool is_there =
          std::ranges::any_of(names_, [&](const std::string& name) { return name[0] == kind; });
      const bool is_tensor = has(kind, "XX") || has(kind, "YY");
      for (const char* const element : {"XX", "XY", "YX", "YY"}) {
        look(kind, element, is_there && (is_tensor || has(other, element)));
      }
    }
    if (missing.empty()) {
      return;
    }
    std::string names;
    for (const std::string& name : missing) {
      names += (names.empty() ? "" : ", ") + name;
    }
    remark_unreadable(report_, lines_.line_number(),
                      "there is no block " + names + " with the others; the file may be cut off");
  }

  /// What belongs to no element, or comes a second time, is gone over without being taken.
  void check_block(BlockType& type) {
    if (type.kind == BlockKind::other) {
      remark_ignored(report_, lines_.line_number(),
                     "the block " + type.name + ", which is no tensor element");
    } else if (!names_.insert(type.name).second) {
      remark_ignored(report_, lines_.line_number(), "the block " + type.name + ", which comes again");
      type.kind = BlockKind::other;
    } else if (type.kind == BlockKind::impedance) {
      units_.push_back(type.unit);
    }
    type.series = names_.size();
  }

  /// To the next line that begins a block.
  void skip_rows(bool is_line, std::string_view line) {
    while (is_line && !block_type(line)) {
      is_line = next_row(line);
    }
    if (is_line) {
      keep(line);
    }
  }

  /// The next line that isn't blank and no comment.
  bool next_row(std::string_view& line) {
    bool is_line = next_line(line);
    while (is_line && (trimmed(line).empty() || trimmed(line).starts_with('#'))) {
      is_line = next_line(line);
    }
    return is_line;
  }

  void read_row(const BlockType& type, std::string_view line) {
    std::array<double, 7> numbers{};
    const std::size_t needed = type.kind == BlockKind::curve ? numbers.size() : 4;
    std::string_view rest = line;
    std::size_t read = 0;
    for (; read < needed; ++read) {
      const std::string_view item = next_word(rest);
      if (!is_numeric(item)) {
        break;
      }
      numbers[read] = numeric_value(item);
    }
    const bool is_absent = read > 1 && numbers[1] == absent_mark && (read < 3 || numbers[2] == absent_mark);
    if (type.kind == BlockKind::other || is_absent) {
      return;
    }
    const double frequency = numbers[0] < 0.0 ? -numbers[0] : 1.0 / numbers[0];
    if (read < 3 || !is_frequency(frequency)) {
      remark_unreadable(report_, lines_.line_number(),
                        "a row of " + type.name + " can't be read and is left out");
      return;
    }
    if (result_.points.size() >= transfer_function::most_points) {
      report_.failure = transfer_function::too_many_points_text;
      return;
    }
    Value& value = places_.point_of(result_.points, type.series, frequency).of(type.component);
    if (type.kind == BlockKind::curve) {
      take_curve(numbers, read, value);
    } else {
      take_complex(numbers, read, value);
    }
  }

  static void take_curve(const std::array<double, 7>& numbers, std::size_t read, Value& value) {
    if (!(numbers[1] > 0.0)) {
      value.use_resistivity = value.use_phase = false;  // rejected; nothing tells what it was
      return;
    }
    value.resistivity = numbers[1];
    value.phase = numbers[2] == absent_mark ? not_given : numbers[2];
    if (read == numbers.size()) {
      value.resistivity_error = half_of_limits(numbers[1], numbers[3], numbers[4]);
      value.phase_error = half_of_phase_limits(numbers[2], numbers[5], numbers[6]);
    }
  }

  static double half_of_limits(double resistivity, double first, double second) {
    const double highest = std::max(first, second);
    const double lowest = std::min(first, second);
    if (!(lowest > 0.0)) {
      return not_given;  // -999, or no limit of a resistivity
    }
    // Limits of bad points are geometric: half of the difference would be more than the value.
    constexpr double widest = 3.0;
    return highest > widest * lowest ? resistivity * 0.5 * std::log(highest / lowest)
                                     : 0.5 * (highest - lowest);
  }

  /// Limits at both sides of 180 degrees are written as 179 and -179: the phase isn't between these.
  static double half_of_phase_limits(double phase, double first, double second) {
    if (first == absent_mark || second == absent_mark) {
      return not_given;
    }
    constexpr double full_turn = 360.0;  // degrees
    const double width = std::abs(first - second);
    const bool is_between = phase >= std::min(first, second) && phase <= std::max(first, second);
    return 0.5 * (is_between ? width : std::min(width, std::abs(full_turn - width)));
  }

  void take_complex(const std::array<double, 7>& numbers, std::size_t read, Value& value) const {
    value.value = {numbers[1], numbers[2]};
    if (read > 3 && numbers[3] >= 0.0) {
      // Of a part, or the root of the complex variance.
      value.variance = (is_birrp_ ? 2.0 : 1.0) * numbers[3] * numbers[3];
    }
  }

  /// Where resistivities and impedances are both there, they tell the unit, whatever is written.
  [[nodiscard]] double factor_to_field_units() const {
    std::vector<double> ratios;
    for (const Point& point : result_.points) {
      for (const Value& value : point.values) {
        const double computed = 0.2 * std::norm(value.value) / point.frequency;
        if (value.has_curve() && computed > 0.0) {
          ratios.push_back(std::log(value.resistivity / computed));
        }
      }
    }
    const bool says_ohm = std::ranges::find(units_, Unit::si) != units_.end();
    if (ratios.empty()) {
      return says_ohm ? field_over_si : 1.0;
    }
    const double of_ohm = 2.0 * std::log(field_over_si);
    const double ratio = median(std::move(ratios));
    return std::abs(ratio - of_ohm) < std::abs(ratio) ? field_over_si : 1.0;
  }

  /// The unit that was taken, where the file doesn't say it or is contradicted by its own resistivities.
  void tell_unit(bool in_ohm) {
    const bool said = std::ranges::find(units_, in_ohm ? Unit::si : Unit::field) != units_.end();
    if (!units_.empty() && !said) {
      add_to_account(report_, std::string("impedances were taken as ") + (in_ohm ? "ohm" : "mV/km/nT") +
                                  ", which the file doesn't say");
    }
  }

  void finish() {
    if (result_.points.empty()) {
      report_.failure = "the file has no block of transfer functions";
      return;
    }
    if (latitude_ && longitude_) {
      take_place(result_.site, *latitude_, *longitude_);
    }
    if (!result_.site.x_azimuth) {
      result_.site.x_azimuth = azimuth_behind_name_;
    }
    if (report_.failure.empty()) {
      tell_missing_blocks();
    }
    const double factor = factor_to_field_units();
    tell_unit(factor != 1.0);
    for (Point& point : result_.points) {
      for (std::size_t i = 0; i < transfer_function::impedance_count; ++i) {
        point.values[i].value *= factor;
        point.values[i].variance *= factor * factor;
      }
    }
    drop_unsound_numbers(result_);
  }

  LineReader& lines_;
  FileReport& report_;
  TransferFunction result_;
  transfer_function::PointPlaces places_;
  std::set<std::string> names_;  // of the blocks met
  std::vector<Unit> units_;      // of the impedances
  std::optional<double> latitude_;
  std::optional<double> longitude_;
  std::optional<double> azimuth_behind_name_;
  std::string kept_;
  bool has_kept_ = false;
  bool is_birrp_ = false;
};

}  // namespace

TransferFunction read_j_format(LineReader& lines, FileReport& report) {
  return JFormatReader(lines, report).read();
}

bool begins_block(std::string_view line, std::string_view following) {
  return block_type(line) && row_count(following);
}

}  // namespace formats::j_format
