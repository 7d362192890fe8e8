#include "formats/z_file/z_head.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/transfer_function/sound_numbers.h"

namespace formats::z_file {

using transfer_function::ChannelAzimuths;

namespace {

constexpr std::size_t most_channels = 5;
constexpr double full_turn = 360.0;  // degrees

class HeadReader {
 public:
  HeadReader(LineReader& lines, FileReport& report) : lines_(lines), report_(report) {}

  std::optional<ZHead> read() {
    return read_head() && check_channels() ? std::optional(std::move(head_)) : std::nullopt;
  }

 private:
  void fail(std::string reason) {
    if (report_.failure.empty()) {
      report_.failure = std::move(reason);
    }
  }

  /// The first lines vary: they are known by their words, and the name without a word stands above the place.
  bool read_head() {
    std::string_view line;
    std::string before;
    while (lines_.next(line)) {
      const std::string text = text_from_field_file(trimmed(line));
      std::string_view rest = text;
      if (equal_ignoring_case(next_word(rest), "coordinate")) {  // a title has the word, too
        take_place_of(rest);
        take_declination(text);
        if (head_.site.id.empty() && !has_station_line_) {
          head_.site.id = before;
        }
      } else if (const auto station = behind(text, "station")) {
        take_station(*station);
      } else if (const auto count = behind(text, "number of channels")) {
        channel_count_ = count_in(*count);
        const auto bands = behind(text, "number of frequencies");
        head_.band_count = bands ? count_in(*bands) : 0;
      } else if (behind(text, "orientations")) {
        return read_channels();
      }
      before = text;
    }
    fail("the file ends before the orientations of its channels");
    return false;
  }

  void take_station(std::string_view text) {
    const std::size_t colon = text.find(':');
    if (colon != std::string_view::npos) {  // a line with the word alone is the name of the method
      head_.site.id = trimmed(text.substr(colon + 1));
      has_station_line_ = true;
    }
  }

  void take_place_of(std::string_view text) {
    const std::vector<double> numbers = numbers_of(text);
    if (numbers.size() < 2 || !take_place(head_.site, numbers[0], numbers[1])) {
      remark_unreadable(report_, lines_.line_number(), "the coordinates can't be read");
    }
  }

  void take_declination(std::string_view text) {
    const auto declination = behind(text, "declination");
    const std::vector<double> numbers = declination ? numbers_of(*declination) : std::vector<double>{};
    const bool is_angle = !numbers.empty() && std::abs(numbers.front()) <= full_turn;
    if (!is_angle) {
      remark_unreadable(report_, lines_.line_number(), "the declination is missing, taken as 0");
    }
    head_.site.declination = is_angle ? numbers.front() : 0.0;
  }

  static std::size_t count_in(std::string_view text) {
    constexpr double largest_count = 1e6;
    const std::vector<double> numbers = numbers_of(text);
    return numbers.empty() || !(numbers.front() >= 0.0)
               ? 0
               : static_cast<std::size_t>(std::min(numbers.front(), largest_count));
  }

  bool read_channels() {
    if (channel_count_ <= input_count || channel_count_ > most_channels) {
      fail("the number of channels isn't 3, 4 or 5");
      return false;
    }
    std::string_view line;
    while (head_.channels.size() < channel_count_ && lines_.next(line)) {
      if (trimmed(line).empty()) {
        continue;
      }
      if (!read_channel(line)) {
        fail("the line of a channel can't be read: " + in_quotes(trimmed(line)));
        return false;
      }
    }
    return true;
  }

  /// Number, azimuth, tilt, the station's name, which may be of several words or none, and the channel's.
  bool read_channel(std::string_view line) {
    constexpr std::size_t least_items = 4;
    std::vector<std::string_view> items;
    for (std::string_view item = next_word(line); !item.empty(); item = next_word(line)) {
      items.push_back(item);
    }
    if (items.size() < least_items || !is_numeric(items[1]) ||
        !(std::abs(numeric_value(items[1])) <= full_turn)) {
      return false;
    }
    head_.channels.push_back({numeric_value(items[1]), upper_case(items.back())});
    if (is_numeric(items[2]) && numeric_value(items[2]) != 0.0) {
      remark_ignored(report_, lines_.line_number(), "the tilt of " + in_quotes(items.back()));
    }
    return true;
  }

  bool check_channels() {
    if (head_.channels.size() != channel_count_ || head_.channels[0].name != "HX" ||
        head_.channels[1].name != "HY") {
      fail("the first two channels aren't Hx and Hy");
      return false;
    }
    for (std::size_t i = input_count; i < head_.channels.size(); ++i) {
      auto* const output = head_.channels[i].name == "HZ"   ? &head_.outputs.hz
                           : head_.channels[i].name == "EX" ? &head_.outputs.ex
                           : head_.channels[i].name == "EY" ? &head_.outputs.ey
                                                            : nullptr;
      if (output == nullptr || output->has_value()) {
        fail("a channel is none of Hz, Ex and Ey: " + in_quotes(head_.channels[i].name));
        return false;
      }
      *output = i - input_count;
    }
    if (head_.outputs.ex.has_value() != head_.outputs.ey.has_value()) {
      fail("the file has one electric channel only");
      return false;
    }
    if (!to_orthogonal_axes({}, head_.azimuths())) {
      fail("two channels of a kind lie along one line");
      return false;
    }
    head_.site.x_azimuth =
        std::remainder(head_.channels[0].azimuth + head_.site.declination.value_or(0.0), full_turn);
    return true;
  }

  LineReader& lines_;
  FileReport& report_;
  ZHead head_;
  bool has_station_line_ = false;
  std::size_t channel_count_ = 0;
};

}  // namespace

ChannelAzimuths ZHead::azimuths() const {
  const double x = channels[0].azimuth;
  ChannelAzimuths azimuths;
  azimuths.magnetic = {0.0, channels[1].azimuth - x};
  if (outputs.ex) {
    azimuths.electric = {channels[input_count + *outputs.ex].azimuth - x,
                         channels[input_count + *outputs.ey].azimuth - x};
  }
  return azimuths;
}

std::optional<std::string_view> behind(std::string_view line, std::string_view word) {
  const auto upper = [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; };
  const auto is_same = [&](char a, char b) { return upper(a) == upper(b); };
  const auto found = std::search(line.begin(), line.end(), word.begin(), word.end(), is_same);
  const auto place = static_cast<std::size_t>(found - line.begin());
  return found == line.end() ? std::nullopt : std::optional(line.substr(place + word.size()));
}

std::vector<double> numbers_of(std::string_view text) {
  std::vector<double> numbers;
  for (std::string_view item = next_word(text); !item.empty(); item = next_word(text)) {
    if (!is_numeric(item)) {
      break;
    }
    numbers.push_back(numeric_value(item));
  }
  return numbers;
}

std::optional<ZHead> read_z_head(LineReader& lines, FileReport& report) {
  return HeadReader(lines, report).read();
}

}  // namespace formats::z_file
