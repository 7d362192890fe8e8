#include "formats/edi/edi_reference_place.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "core/line_reader.h"
#include "core/text_fields.h"
#include "formats/edi/edi_lines.h"
#include "formats/edi/edi_tags.h"
#include "numerics/geodesy/geographic_angle.h"

namespace formats::edi {

using numerics::geodesy::GeographicAngle;
using numerics::geodesy::read_geographic_angle;

namespace {

constexpr std::string_view blanks = " \t,";

enum class Block { head, measurements, other };

struct OptionName {
  Block block;
  std::string_view key;
  GeographicAngle angle;
};

constexpr std::array<OptionName, 9> option_names{
    {{Block::head, "LAT", GeographicAngle::latitude},
     {Block::head, "LATITUDE", GeographicAngle::latitude},
     {Block::head, "LONG", GeographicAngle::longitude},
     {Block::head, "LON", GeographicAngle::longitude},
     {Block::head, "LONGITUDE", GeographicAngle::longitude},
     {Block::measurements, "REFLAT", GeographicAngle::latitude},
     {Block::measurements, "REFLONG", GeographicAngle::longitude},
     {Block::measurements, "REFLON", GeographicAngle::longitude},
     {Block::measurements, "REFLONGITUDE", GeographicAngle::longitude}}};

// Collects the angles of the options that name a place.
class PlaceOptions {
 public:
  explicit PlaceOptions(FileReport& report) : report_(report) {}

  // A line may hold several options: "LAT=-22:49:25 LONG=139:17:40". A value reaches to the next key.
  void take_line(Block block, std::string_view line, std::int64_t line_number) {
    for (std::size_t equals = line.find('='); equals != std::string_view::npos; equals = line.find('=')) {
      const std::string_view before = trimmed(line.substr(0, equals));
      const std::string_view key =
          before.substr(before.find_last_of(blanks) + 1);  // all of it without a blank
      line.remove_prefix(equals + 1);
      const std::size_t next = line.find('=');
      std::string_view value = line.substr(0, next);
      if (next != std::string_view::npos) {
        const std::size_t key_end = value.find_last_not_of(blanks);
        const std::size_t key_begin = value.find_last_of(blanks, key_end);
        value = value.substr(0, key_begin == std::string_view::npos ? 0 : key_begin);
      }
      take(block, upper_case(key), trimmed(value), line_number);
    }
  }

  [[nodiscard]] std::optional<numerics::geodesy::GeographicPlace> place() const {
    const std::optional<double> latitude = reference_latitude_ ? reference_latitude_ : head_latitude_;
    const std::optional<double> longitude = reference_longitude_ ? reference_longitude_ : head_longitude_;
    if (!latitude || !longitude) {
      return std::nullopt;
    }
    return numerics::geodesy::GeographicPlace{*latitude, *longitude};
  }

 private:
  void take(Block block, const std::string& key, std::string_view value, std::int64_t line_number) {
    for (const OptionName& name : option_names) {
      if (name.block != block || name.key != key || value.empty()) {
        continue;
      }
      std::string text(value);
      if (text.size() > 1 && text.front() == '"' && text.back() == '"') {
        text = text.substr(1, text.size() - 2);
      }
      const std::optional<double> angle = read_geographic_angle(text, name.angle);
      const bool is_latitude = name.angle == GeographicAngle::latitude;
      if (!angle) {
        remark_unreadable(
            report_, line_number,
            key + "=" + in_quotes(value) + " is not a " + (is_latitude ? "latitude" : "longitude"));
        return;
      }
      const bool is_head = block == Block::head;
      std::optional<double>& kept = is_latitude ? (is_head ? head_latitude_ : reference_latitude_)
                                                : (is_head ? head_longitude_ : reference_longitude_);
      kept = angle;
    }
  }

  FileReport& report_;
  std::optional<double> head_latitude_;
  std::optional<double> head_longitude_;
  std::optional<double> reference_latitude_;
  std::optional<double> reference_longitude_;
};

}  // namespace

std::optional<numerics::geodesy::GeographicPlace> read_edi_reference_place(const std::string& file,
                                                                           FileReport& report) {
  LineReader reader(file);
  PlaceOptions options(report);
  InfoText info;
  Block block = Block::other;
  std::string_view line;
  while (reader.next(line)) {
    line = trimmed(line);
    if (line.starts_with(">!") || line.starts_with('!')) {
      continue;
    }
    if (line.starts_with('>')) {
      const std::string tag = tag_name(line);
      if (info.holds(tag)) {
        continue;
      }
      if (tag.starts_with('=') && tag != "=DEFINEMEAS") {
        break;  // the first section of data
      }
      block = tag == "HEAD" ? Block::head : tag == "=DEFINEMEAS" ? Block::measurements : Block::other;
      line.remove_prefix(std::min(line.find_first_of(" \t"), line.size()));
    }
    if (block != Block::other) {
      options.take_line(block, line, reader.line_number());
    }
  }
  return options.place();
}

}  // namespace formats::edi
