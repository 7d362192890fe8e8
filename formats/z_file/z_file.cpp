#include "formats/z_file/z_file.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/transfer_function/channel_axes.h"
#include "formats/transfer_function/sound_numbers.h"

namespace formats::z_file {

using transfer_function::ChannelAzimuths;
using transfer_function::ChannelFunctions;
using transfer_function::Complex;
using transfer_function::Component;
using transfer_function::is_frequency;
using transfer_function::OrthogonalFunctions;
using transfer_function::Point;
using transfer_function::TransferFunction;
using transfer_function::Value;

namespace {

constexpr std::size_t input_count = 2;
constexpr std::size_t most_channels = 5;
constexpr double full_turn = 360.0;  // degrees

/// The text behind a word of a line, whatever the case; none if the line doesn't have the word.
std::optional<std::string_view> behind(std::string_view line, std::string_view word) {
  const std::string upper = upper_case(line);
  const std::size_t at = upper.find(upper_case(word));
  return at == std::string::npos ? std::nullopt : std::optional(line.substr(at + word.size()));
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

struct Channel {
  double azimuth = 0.0;  // degrees from magnetic north
  std::string name;      // upper case: HX, HY, HZ, EX, EY
};

/// Where the output channels stand among the rows of a band.
struct Outputs {
  std::optional<std::size_t> hz;
  std::optional<std::size_t> ex;
  std::optional<std::size_t> ey;
};

/// The numbers of a band as the file has them.
struct Band {
  double period = 0.0;  // s
  std::vector<std::vector<double>> functions;
  std::vector<std::vector<double>> power;
  std::vector<std::vector<double>> residuals;

  [[nodiscard]] bool is_whole() const { return !functions.empty() && !power.empty() && !residuals.empty(); }
};

class ZFileReader {
 public:
  ZFileReader(LineReader& lines, FileReport& report) : lines_(lines), report_(report) {}

  TransferFunction read() {
    if (!read_head() || !check_channels()) {
      return {};
    }
    read_bands();
    tell_what_is_missing();
    drop_unsound_numbers(result_);
    return std::move(result_);
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
        if (result_.site.id.empty() && !has_station_line_) {
          result_.site.id = before;
        }
      } else if (const auto station = behind(text, "station")) {
        take_station(*station);
      } else if (const auto count = behind(text, "number of channels")) {
        channel_count_ = count_in(*count);
        const auto bands = behind(text, "number of frequencies");
        band_count_ = bands ? count_in(*bands) : 0;
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
      result_.site.id = trimmed(text.substr(colon + 1));
      has_station_line_ = true;
    }
  }

  void take_place_of(std::string_view text) {
    const std::vector<double> numbers = numbers_of(text);
    if (numbers.size() < 2 || !take_place(result_.site, numbers[0], numbers[1])) {
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
    result_.site.declination = is_angle ? numbers.front() : 0.0;
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
    while (channels_.size() < channel_count_ && lines_.next(line)) {
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
    channels_.push_back({numeric_value(items[1]), upper_case(items.back())});
    if (is_numeric(items[2]) && numeric_value(items[2]) != 0.0) {
      remark_ignored(report_, lines_.line_number(), "the tilt of " + in_quotes(items.back()));
    }
    return true;
  }

  bool check_channels() {
    if (channels_.size() != channel_count_ || channels_[0].name != "HX" || channels_[1].name != "HY") {
      fail("the first two channels aren't Hx and Hy");
      return false;
    }
    for (std::size_t i = input_count; i < channels_.size(); ++i) {
      auto* const output = channels_[i].name == "HZ"   ? &outputs_.hz
                           : channels_[i].name == "EX" ? &outputs_.ex
                           : channels_[i].name == "EY" ? &outputs_.ey
                                                       : nullptr;
      if (output == nullptr || output->has_value()) {
        fail("a channel is none of Hz, Ex and Ey: " + in_quotes(channels_[i].name));
        return false;
      }
      *output = i - input_count;
    }
    if (outputs_.ex.has_value() != outputs_.ey.has_value()) {
      fail("the file has one electric channel only");
      return false;
    }
    if (!to_orthogonal_axes({}, azimuths())) {
      fail("two channels of a kind lie along one line");
      return false;
    }
    result_.site.x_azimuth =
        std::remainder(channels_[0].azimuth + result_.site.declination.value_or(0.0), full_turn);
    return true;
  }

  [[nodiscard]] std::size_t output_count() const { return channel_count_ - input_count; }

  void read_bands() {
    std::string line;
    Band band;
    bool in_band = false;
    while (next_line(line)) {
      if (const auto period = behind(line, "period")) {
        in_band = begin_band(*period, band);
      } else if (in_band && behind(line, "transfer functions")) {
        in_band = read_rows(
            output_count(), [](std::size_t) { return 2 * input_count; }, band.functions);
      } else if (in_band && behind(line, "signal power")) {
        in_band = read_rows(
            input_count, [](std::size_t row) { return 2 * (row + 1); }, band.power);
      } else if (in_band && behind(line, "residual covariance")) {
        in_band = read_rows(
            output_count(), [](std::size_t row) { return 2 * (row + 1); }, band.residuals);
        if (in_band) {
          finish_band(band);
        }
        in_band = false;
      }
    }
  }

  /// The next line; the beginning of a band that was met inside the one before comes again.
  bool next_line(std::string& line) {
    if (!kept_.empty()) {
      line = std::exchange(kept_, {});
      return true;
    }
    std::string_view next;
    const bool is_there = lines_.next(next);
    line = next;
    return is_there;
  }

  bool begin_band(std::string_view text, Band& band) {
    const std::size_t colon = text.find(':');
    const std::vector<double> numbers =
        colon == std::string_view::npos ? std::vector<double>{} : numbers_of(text.substr(colon + 1));
    if (numbers.empty() || !is_frequency(1.0 / numbers.front())) {
      remark_unreadable(report_, lines_.line_number(), "a band has no period above 0 and is left out");
      return false;
    }
    band = {};
    band.period = numbers.front();
    return true;
  }

  template <class Width>
  bool read_rows(std::size_t count, Width width, std::vector<std::vector<double>>& rows) {
    std::string_view line;
    rows.clear();
    while (rows.size() < count && lines_.next(line)) {
      if (trimmed(line).empty()) {
        continue;
      }
      rows.push_back(numbers_of(line));
      if (rows.back().size() < width(rows.size() - 1)) {
        kept_ = line;
        remark_unreadable(report_, lines_.line_number(),
                          "a row of a band is too short, and the band is left out");
        return false;
      }
    }
    if (rows.size() < count) {
      remark_unreadable(report_, lines_.line_number(), "the file ends inside a band, which is left out");
      return false;
    }
    return true;
  }

  void finish_band(const Band& band) {
    if (!band.is_whole()) {
      remark_unreadable(report_, lines_.line_number(), "a band lacks a matrix and is left out");
    } else if (result_.points.size() == transfer_function::most_points) {
      fail(std::string(transfer_function::too_many_points_text));
    } else {
      add_point(band);
    }
  }

  /// A file may have been cut between two bands, where nothing else shows it.
  void tell_what_is_missing() {
    if (result_.points.empty()) {
      fail("the file has no band of transfer functions");
    } else if (band_count_ > 0 && result_.points.size() != band_count_) {
      remark_unreadable(report_, 0,
                        "the file has " + plain_text(static_cast<std::int64_t>(result_.points.size())) +
                            " whole bands, its head says " +
                            plain_text(static_cast<std::int64_t>(band_count_)));
    }
  }

  static Complex at(const std::vector<double>& row, std::size_t column) {
    return {row[2 * column], row[2 * column + 1]};
  }

  /// Of a Hermitian matrix whose lower triangle is given.
  static Complex hermitian(const std::vector<std::vector<double>>& rows, std::size_t i, std::size_t j) {
    return i >= j ? at(rows[i], j) : std::conj(at(rows[j], i));
  }

  [[nodiscard]] ChannelFunctions functions_of(const Band& band) const {
    ChannelFunctions functions;
    const std::array<std::optional<std::size_t>, 2> electric{outputs_.ex, outputs_.ey};
    for (std::size_t i = 0; i < 2; ++i) {
      for (std::size_t j = 0; j < 2; ++j) {
        functions.inverse_power[i][j] = hermitian(band.power, i, j);
        if (electric[i]) {
          functions.impedance[i][j] = at(band.functions[*electric[i]], j);
          functions.electric_residuals[i][j] = hermitian(band.residuals, *electric[i], *electric[j]);
        }
      }
      if (outputs_.hz) {
        functions.tipper[i] = at(band.functions[*outputs_.hz], i);
      }
    }
    if (outputs_.hz) {
      functions.vertical_residual = hermitian(band.residuals, *outputs_.hz, *outputs_.hz).real();
    }
    return functions;
  }

  /// From the direction of Hx: what was measured in orthogonal axes stays as it is.
  [[nodiscard]] ChannelAzimuths azimuths() const {
    const double x = channels_[0].azimuth;
    ChannelAzimuths azimuths;
    azimuths.magnetic = {0.0, channels_[1].azimuth - x};
    if (outputs_.ex) {
      azimuths.electric = {channels_[input_count + *outputs_.ex].azimuth - x,
                           channels_[input_count + *outputs_.ey].azimuth - x};
    }
    return azimuths;
  }

  void add_point(const Band& band) {
    const auto functions = to_orthogonal_axes(functions_of(band), azimuths());
    if (!functions) {
      return;
    }
    Point point;
    point.frequency = 1.0 / band.period;
    for (std::size_t i = 0; outputs_.ex && i < 2; ++i) {
      for (std::size_t j = 0; j < 2; ++j) {
        Value& value = point.values[2 * i + j];
        value.value = functions->impedance[i][j];
        value.variance = functions->impedance_variance[i][j];
      }
    }
    for (std::size_t j = 0; outputs_.hz && j < 2; ++j) {
      Value& value = point.values[transfer_function::impedance_count + j];
      value.value = functions->tipper[j];
      value.variance = functions->tipper_variance[j];
    }
    result_.points.push_back(point);
  }

  LineReader& lines_;
  FileReport& report_;
  TransferFunction result_;
  bool has_station_line_ = false;
  std::string kept_;
  std::size_t channel_count_ = 0;
  std::size_t band_count_ = 0;
  std::vector<Channel> channels_;
  Outputs outputs_;
};

}  // namespace

TransferFunction read_z_file(LineReader& lines, FileReport& report) {
  return ZFileReader(lines, report).read();
}

bool begins_z_file(std::string_view line) {
  return behind(line, "transfer functions in") || behind(line, "impedance in measurement") ||
         behind(line, "full error covar");
}

}  // namespace formats::z_file
