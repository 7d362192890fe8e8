#include "formats/edi/edi_reference_place.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/line_reader.h"
#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/edi/edi_lines.h"
#include "formats/edi/edi_tags.h"
#include "formats/field_values.h"
#include "numerics/geodesy/geographic_angle.h"

namespace formats::edi {

using numerics::geodesy::GeographicAngle;
using numerics::geodesy::GeographicPlace;

namespace {

constexpr std::string_view blanks = " \t,";
constexpr std::size_t longest_value = 100;  // bytes; more is damage

enum class Meaning { latitude, longitude, elevation, datum, none };

struct OptionName {
  bool in_head;  // else in the definition of the measurements
  std::string_view key;
  Meaning meaning;
};

constexpr std::array<OptionName, 14> option_names{{{true, "LAT", Meaning::latitude},
                                                   {true, "LATITUDE", Meaning::latitude},
                                                   {true, "LONG", Meaning::longitude},
                                                   {true, "LON", Meaning::longitude},
                                                   {true, "LONGITUDE", Meaning::longitude},
                                                   {true, "ELEV", Meaning::elevation},
                                                   {true, "ELEVATION", Meaning::elevation},
                                                   {true, "DATUM", Meaning::datum},
                                                   {false, "REFLAT", Meaning::latitude},
                                                   {false, "REFLONG", Meaning::longitude},
                                                   {false, "REFLON", Meaning::longitude},
                                                   {false, "REFLONGITUDE", Meaning::longitude},
                                                   {false, "REFELEV", Meaning::elevation},
                                                   {false, "DATUM", Meaning::datum}}};

Meaning meaning_of(bool in_head, std::string_view key) {
  const auto name = std::ranges::find_if(option_names, [&](const OptionName& candidate) {
    return candidate.in_head == in_head && candidate.key == key;
  });
  return name == option_names.end() ? Meaning::none : name->meaning;
}

std::string without_quotes(std::string_view value) {
  const bool quoted = value.size() > 1 && value.front() == '"' && value.back() == '"';
  return std::string(quoted ? value.substr(1, value.size() - 2) : value);
}

std::optional<double> read_elevation(std::string_view text) {
  const std::string_view item = next_token(text);
  const double elevation = numeric_value(item);
  return is_numeric(item) && std::abs(elevation) <= largest_value ? std::optional(elevation) : std::nullopt;
}

bool is_filled_with_zeros(const GeographicPlace& place) {
  return place.latitude == 0.0 && place.longitude == 0.0;
}

}  // namespace

// What the head, or the definition of the measurements, says.
struct EdiPlaceOptions::Values {
  std::optional<double> latitude;
  std::optional<double> longitude;
  std::optional<double> elevation;
  std::string datum;

  void take(const Option& option, FileReport& report) {
    const auto keep = [&](std::optional<double>& kept, std::optional<double> value, const char* what) {
      if (value) {
        kept = value;
      } else {
        remark_unreadable(report, option.line_number,
                          option.key + "=" + in_quotes(option.value) + " is not " + what);
      }
    };
    const std::string text = without_quotes(option.value);
    const Meaning meaning = meaning_of(option.block == Block::head, option.key);
    if (meaning == Meaning::latitude) {
      keep(latitude, read_geographic_angle(text, GeographicAngle::latitude), "a latitude");
    } else if (meaning == Meaning::longitude) {
      keep(longitude, read_geographic_angle(text, GeographicAngle::longitude), "a longitude");
    } else if (meaning == Meaning::elevation) {
      keep(elevation, read_elevation(text), "an elevation");
    } else {
      datum = text_from_field_file(trimmed(text));
    }
  }
};

void EdiPlaceOptions::take_line(std::string_view line, std::int64_t line_number) {
  if (line.starts_with('>')) {
    const std::string tag = tag_name(line);
    block_ = tag == "HEAD" ? Block::head : tag == "=DEFINEMEAS" ? Block::measurements : Block::other;
    line.remove_prefix(std::min(line.find_first_of(" \t"), line.size()));
  }
  if (block_ == Block::other) {
    return;
  }
  // A line may hold several options: "LAT=-22:49:25 LONG=139:17:40". A value reaches to the next key.
  for (std::size_t equals = line.find('='); equals != std::string_view::npos; equals = line.find('=')) {
    const std::string_view before = trimmed(line.substr(0, equals));
    const std::string key =
        upper_case(before.substr(before.find_last_of(blanks) + 1));  // all of it without a blank
    line.remove_prefix(equals + 1);
    const std::size_t next = line.find('=');
    std::string_view value = line.substr(0, next);
    if (next != std::string_view::npos) {
      const std::size_t key_end = value.find_last_not_of(blanks);
      const std::size_t key_begin = value.find_last_of(blanks, key_end);
      value = value.substr(0, key_begin == std::string_view::npos ? 0 : key_begin);
    }
    value = trimmed(value);
    if (!value.empty() && meaning_of(block_ == Block::head, key) != Meaning::none) {
      std::erase_if(options_, [&](const Option& other) { return other.block == block_ && other.key == key; });
      options_.push_back({block_, key, std::string(value.substr(0, longest_value)), line_number});
    }
  }
}

EdiPlace EdiPlaceOptions::read(FileReport& report) const {
  Values head;
  Values reference;
  for (const Option& option : options_) {
    (option.block == Block::head ? head : reference).take(option, report);
  }
  EdiPlace place;
  const auto take_place = [&](std::optional<double> latitude, std::optional<double> longitude) {
    const GeographicPlace given{latitude.value_or(0.0), longitude.value_or(0.0)};
    if (!place.geographic && latitude && longitude && !is_filled_with_zeros(given)) {
      place.geographic = given;
    }
  };
  take_place(reference.latitude ? reference.latitude : head.latitude,
             reference.longitude ? reference.longitude : head.longitude);
  take_place(head.latitude, head.longitude);
  place.elevation = reference.elevation;
  if (place.elevation.value_or(0.0) == 0.0 && head.elevation) {
    place.elevation = head.elevation;
  }
  if (!place.geographic && place.elevation == 0.0) {
    place.elevation.reset();  // a head filled with zeros
  }
  place.datum = head.datum.empty() ? reference.datum : head.datum;
  return place;
}

EdiPlace read_edi_place(const std::string& file, FileReport& report) {
  LineReader reader(file);
  EdiLines lines(reader);
  EdiPlaceOptions options;
  InfoText info;
  while (lines.next()) {
    const std::string tag = lines.at_tag() ? tag_name(lines.line()) : std::string();
    if (lines.at_tag() && info.holds(tag)) {
      continue;
    }
    if (tag.starts_with('=') && tag != "=DEFINEMEAS") {
      break;  // the first section of data
    }
    options.take_line(lines.line(), lines.line_number());
  }
  return options.read(report);
}

std::optional<GeographicPlace> read_edi_reference_place(const std::string& file, FileReport& report) {
  return read_edi_place(file, report).geographic;
}

}  // namespace formats::edi
