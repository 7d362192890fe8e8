#include "formats/zonge/zonge_avg_facts.h"

#include <array>
#include <cmath>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/field_values.h"

namespace formats::zonge {

namespace {

constexpr double metres_in_foot = 0.3048;

class FactReader {
 public:
  FactReader(AvgFacts& facts, FileReport& report, std::int64_t line_number)
      : facts_(facts), report_(report), line_number_(line_number) {}

  void take(std::string_view text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos) {
      return;
    }
    const std::string key = upper_case(trimmed(text.substr(0, equals)));
    const std::string_view value = trimmed(text.substr(equals + 1));
    if (key == "RX.STN" || key == "RX.GDPSTN") {
      begin_station(key, value);
    } else if (key == "RX.CMP") {
      facts_.component = value;
    } else if (key == "ASPACE" || key == "RX.LENGTH") {
      facts_.dipole = length(value);
    } else if (key == "UNIT.LENGTH") {
      facts_.in_feet = upper_case(value).starts_with("F");
    } else if (key == "UNIT.PHASE") {
      take_phase_unit(value);
    } else if (key == "RX.HPR") {
      take_orientation(value);
    } else if (key == "CH.AZIMUTH") {
      take_channel_azimuths(value);
    } else if (key == "GDP.DATE") {
      facts_.date = text_from_field_file(value);
    } else if (key == "GPS.LAT") {
      take_number(value, facts_.latitude);
    } else if (key == "GPS.LON") {
      take_number(value, facts_.longitude);
    } else if (key == "SURVEY.DATUM" || key == "GPS.DATUM") {
      facts_.datum = text_from_field_file(value);
    } else if (key == "SURVEY.UTMZONE") {
      facts_.utm_zone = text_from_field_file(value);
    } else if (key == "RX.CENTER") {
      take_map_place(value);
    }
  }

 private:
  void begin_station(const std::string& key, std::string_view value) {
    if (facts_.has_rows) {
      facts_.box_station.reset();
      facts_.named_station.reset();
      facts_.place.reset();
      facts_.channel_azimuth.reset();
      facts_.has_rows = false;
    }
    std::optional<double>& station = key == "RX.STN" ? facts_.named_station : facts_.box_station;
    station.reset();
    take_number(value, station);
    if (!station) {
      remark_unreadable(report_, line_number_, "the station " + in_quotes(value) + " is no number");
    }
  }

  void take_phase_unit(std::string_view unit) {
    const std::string letters = upper_case(unit);
    if (letters.starts_with("DEG")) {
      facts_.degrees_of_phase = 1.0;
    } else if (letters != "MRAD") {
      remark_unreadable(report_, line_number_,
                        "the unit of phases " + in_quotes(unit) + " isn't known, taken as mrad");
    }
  }

  /// Heading, pitch and roll of the receiver: the azimuth of x, and 180 degrees where z points down.
  void take_orientation(std::string_view text) {
    constexpr double z_down = 180.0;
    std::optional<double> ignored;
    std::optional<double> roll;
    take_number(text, facts_.receiver_azimuth);
    (void)next_token(text);
    take_number(text, ignored);
    (void)next_token(text);
    take_number(text, roll);
    if (roll && std::abs(*roll) != z_down) {
      remark_ignored(report_, line_number_,
                     "the roll of " + plain_text(*roll) + " degrees: signs are those of the file");
    }
  }

  /// Of the output and the input: the latter tells the x axis of this station where nothing else does.
  void take_channel_azimuths(std::string_view text) {
    const std::string component = upper_case(facts_.component);
    const bool is_of_x = component.size() >= 3 && component[2] == 'X' && component[0] != 'R';
    (void)next_token(text);
    if (is_of_x) {
      take_number(text, facts_.channel_azimuth);
    }
  }

  [[nodiscard]] std::optional<double> length(std::string_view text) const {
    std::string_view unit;
    const double value = numeric_value(text, unit);
    return value > 0.0 && value <= largest_value
               ? std::optional(is_in_feet(unit) ? value * metres_in_foot : value)
               : std::nullopt;
  }

  /// By the unit behind a number, or that of the file.
  [[nodiscard]] bool is_in_feet(std::string_view unit) const {
    const std::string letters = upper_case(trimmed(unit));
    return letters.starts_with("F") || (letters.empty() && facts_.in_feet);
  }

  /// The first number of a text; without one the earlier stays.
  static void take_number(std::string_view text, std::optional<double>& number) {
    const std::string_view item = next_token(text);
    const double value = numeric_value(item);
    if (is_numeric(item) && std::abs(value) <= largest_value) {
      number = value;
    }
  }

  /// East, north and elevation, with the unit of length behind them or said before.
  void take_map_place(std::string_view text) {
    AvgMapPlace place;
    std::array<double*, 3> numbers{&place.east, &place.north, &place.elevation};
    for (double* const number : numbers) {
      std::string_view rest;
      *number = numeric_value(text, rest);
      if (rest.size() == text.size() || !(std::abs(*number) <= largest_value)) {
        remark_unreadable(report_, line_number_, "the place " + in_quotes(text) + " can't be read");
        return;
      }
      text = trimmed(rest.starts_with(':') ? rest.substr(1) : rest);
    }
    const double metres = is_in_feet(text) ? metres_in_foot : 1.0;
    facts_.place = {place.east * metres, place.north * metres, place.elevation * metres, facts_.utm_zone};
  }

  AvgFacts& facts_;
  FileReport& report_;
  std::int64_t line_number_;
};

}  // namespace

void take_avg_fact(AvgFacts& facts, std::string_view text, FileReport& report, std::int64_t line_number) {
  FactReader(facts, report, line_number).take(text);
}

void take_avg_comment(AvgFacts& facts, std::string_view line) {
  constexpr std::string_view word = "Dated ";
  constexpr std::size_t date_length = 8;
  const std::size_t at = line.find(word);
  if (at == std::string_view::npos || !facts.date.empty()) {
    return;
  }
  const std::string date = text_from_field_file(line.substr(at + word.size(), date_length));
  if (date.size() == date_length && date[2] == '-' && date[5] == '-') {
    facts.date = date.substr(3, 2) + "/" + date.substr(6, 2) + "/" + date.substr(0, 2);
  }
}

}  // namespace formats::zonge
