#include "formats/j_format/j_format.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "core/number_text.h"
#include "core/text_fields.h"

namespace formats::j_format {

using transfer_function::Component;
using transfer_function::component_count;
using transfer_function::not_given;
using transfer_function::Point;
using transfer_function::TransferFunction;
using transfer_function::Value;

namespace {

constexpr double absent_mark = -999.0;
constexpr double field_over_si = 795.774715459;  // mV/km/nT of one ohm: 1e-3 / mu0
constexpr std::size_t most_rows = 100000;        // of a block; more than any instrument has frequencies

enum class BlockKind : std::uint8_t { curve, impedance, tipper, other };
enum class Unit : std::uint8_t { not_said, field, si };

struct BlockType {
  BlockKind kind = BlockKind::other;
  Component component = Component::zxx;
  Unit unit = Unit::not_said;
  std::string name;
};

constexpr std::array<std::string_view, component_count> component_names{"XX", "XY", "YX", "YY", "ZX", "ZY"};
constexpr std::array<std::string_view, 4> averages{"TE", "TM", "AV", "DE"};  // curves of no tensor element

/// The type of the block that a line begins; none if it begins no block.
std::optional<BlockType> block_type(std::string_view line) {
  std::string_view rest = line;
  const std::string name = upper_case(next_token(rest));
  if (name.size() != 3) {
    return std::nullopt;
  }
  const std::string_view letters = std::string_view(name).substr(1);
  BlockType type;
  type.name = name;
  if (name[0] == 'R' && std::ranges::find(averages, letters) != averages.end()) {
    return type;
  }
  const auto found = std::ranges::find(component_names, letters);
  if (found == component_names.end()) {
    return std::nullopt;
  }
  type.component = static_cast<Component>(found - component_names.begin());
  const bool is_tipper = type.component == Component::tx || type.component == Component::ty;
  type.kind = name[0] == 'R' && !is_tipper   ? BlockKind::curve
              : name[0] == 'Z' && !is_tipper ? BlockKind::impedance
              : name[0] == 'T' && is_tipper  ? BlockKind::tipper
                                             : BlockKind::other;
  if (type.kind == BlockKind::other) {
    return std::nullopt;
  }
  const std::string unit = upper_case(rest);
  type.unit = unit.find("FIELD") != std::string::npos ? Unit::field
              : unit.find("S.I") != std::string::npos ? Unit::si
                                                      : Unit::not_said;
  return type;
}

std::optional<std::size_t> row_count(std::string_view line) {
  std::string_view rest = line;
  const std::string_view item = next_token(rest);
  const double count = numeric_value(item);
  const bool is_count = is_numeric(item) && rest.empty() && item.find('.') == std::string_view::npos &&
                        count >= 0.0 && count <= static_cast<double>(most_rows);
  return is_count ? std::optional(static_cast<std::size_t>(count)) : std::nullopt;
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::ranges::nth_element(values, middle);
  return *middle;
}

class JFormatReader {
 public:
  JFormatReader(LineReader& lines, FileReport& report) : lines_(lines), report_(report) {}

  TransferFunction read() {
    std::string_view line;
    while (next_line(line)) {
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
        result_.site.id = next_token(rest);
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
    std::optional<double>* const target = key == "LATITUDE"    ? &result_.site.latitude
                                          : key == "LONGITUDE" ? &result_.site.longitude
                                          : key == "ELEVATION" ? &result_.site.elevation
                                          : key == "AZIMUTH"   ? &result_.site.x_azimuth
                                                               : nullptr;
    if (target == nullptr || value.empty()) {
      return;
    }
    if (!is_numeric(value)) {
      remark_unreadable(report_, lines_.line_number(), key + ": " + in_quotes(value) + " is not a number");
      return;
    }
    *target = numeric_value(value);
  }

  void read_block(const BlockType& type) {
    std::string_view line;
    const auto count = next_line(line) ? row_count(line) : std::nullopt;
    if (!count) {
      remark_unreadable(report_, lines_.line_number(),
                        "the block " + type.name + " has no count and is left out");
      return;
    }
    if (type.kind == BlockKind::other) {
      remark_ignored(report_, lines_.line_number(),
                     "the block " + type.name + ", which is no tensor element");
    }
    units_.push_back(type.unit);
    for (std::size_t row = 0; row < *count; ++row) {
      const bool at_end = !next_line(line);
      if (at_end || block_type(line)) {
        remark_unreadable(report_, lines_.line_number(),
                          "the block " + type.name + " has " + plain_text(static_cast<std::int64_t>(row)) +
                              " rows of " + plain_text(static_cast<std::int64_t>(*count)));
        if (!at_end) {
          keep(line);
        }
        return;
      }
      read_row(type, line);
    }
  }

  void read_row(const BlockType& type, std::string_view line) {
    std::array<double, 7> numbers{};
    const std::size_t needed = type.kind == BlockKind::curve ? numbers.size() : 4;
    std::string_view rest = line;
    std::size_t read = 0;
    for (; read < needed; ++read) {
      const std::string_view item = next_token(rest);
      if (!is_numeric(item)) {
        break;
      }
      numbers[read] = numeric_value(item);
    }
    if (type.kind == BlockKind::other ||
        (read > 0 && numbers[0] == absent_mark && numbers[1] == absent_mark)) {
      return;
    }
    if (read < 3 || numbers[0] == 0.0) {
      remark_unreadable(report_, lines_.line_number(),
                        "a row of " + type.name + " can't be read and is left out");
      return;
    }
    const double frequency = numbers[0] < 0.0 ? -numbers[0] : 1.0 / numbers[0];
    Value& value = point_of(frequency).of(type.component);
    if (type.kind == BlockKind::curve) {
      take_curve(numbers, read, value);
    } else {
      take_complex(numbers, read, value);
    }
  }

  static void take_curve(const std::array<double, 7>& numbers, std::size_t read, Value& value) {
    if (!(numbers[1] > 0.0)) {
      value.in_use = false;  // rejected; nothing tells what it was
      return;
    }
    value.resistivity = numbers[1];
    value.phase = numbers[2];
    if (read == numbers.size()) {
      const double highest = std::max(numbers[3], numbers[4]);
      const double lowest = std::min(numbers[3], numbers[4]);
      // Limits of bad points are geometric: half of the difference would be more than the value.
      const bool is_geometric = lowest > 0.0 && highest > 3.0 * lowest;
      value.resistivity_error =
          is_geometric ? numbers[1] * 0.5 * std::log(highest / lowest) : 0.5 * (highest - lowest);
      value.phase_error = 0.5 * std::abs(numbers[5] - numbers[6]);
    }
  }

  void take_complex(const std::array<double, 7>& numbers, std::size_t read, Value& value) const {
    value.value = {numbers[1], numbers[2]};
    if (read > 3 && numbers[3] >= 0.0) {
      // Of a part, or the root of the complex variance.
      value.variance = (is_birrp_ ? 2.0 : 1.0) * numbers[3] * numbers[3];
    }
  }

  Point& point_of(double frequency) {
    const auto [place, is_new] = places_.try_emplace(frequency, result_.points.size());
    if (is_new) {
      result_.points.emplace_back().frequency = frequency;
    }
    return result_.points[place->second];
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
    if (!ratios.empty()) {
      const double of_ohm = 2.0 * std::log(field_over_si);
      const double ratio = median(std::move(ratios));
      return std::abs(ratio - of_ohm) < std::abs(ratio) ? field_over_si : 1.0;
    }
    return std::ranges::find(units_, Unit::si) != units_.end() ? field_over_si : 1.0;
  }

  void finish() {
    if (result_.points.empty()) {
      report_.failure = "the file has no block of transfer functions";
      return;
    }
    const double factor = factor_to_field_units();
    for (Point& point : result_.points) {
      for (std::size_t i = 0; i < transfer_function::impedance_count; ++i) {
        point.values[i].value *= factor;
        point.values[i].variance *= factor * factor;
      }
    }
  }

  LineReader& lines_;
  FileReport& report_;
  TransferFunction result_;
  std::map<double, std::size_t> places_;
  std::vector<Unit> units_;
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
