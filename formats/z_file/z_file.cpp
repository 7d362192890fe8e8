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
#include "formats/z_file/z_head.h"

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
    auto head = read_z_head(lines_, report_);
    if (!head) {
      return {};
    }
    head_ = std::move(*head);
    azimuths_ = head_.azimuths();
    result_.site = head_.site;
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

  void read_bands() {
    std::string line;
    Band band;
    bool in_band = false;
    std::int64_t heading_at = 0;  // line
    while (next_line(line)) {
      if (const auto period = behind(line, "period")) {
        ++bands_begun_;
        heading_at = lines_.line_number();
        in_band = begin_band(*period, band);
      } else if (in_band && behind(line, "transfer functions")) {
        in_band = read_rows(
            head_.output_count(), [](std::size_t) { return 2 * input_count; }, band.functions);
      } else if (in_band && behind(line, "signal power")) {
        in_band = read_rows(
            input_count, [](std::size_t row) { return 2 * (row + 1); }, band.power);
      } else if (in_band && behind(line, "residual covariance")) {
        in_band = read_rows(
            head_.output_count(), [](std::size_t row) { return 2 * (row + 1); }, band.residuals);
        if (in_band) {
          finish_band(band);
        }
        in_band = false;
      }
    }
    const std::int64_t last = lines_.line_number();
    if (in_band || short_row_at_ == last || heading_at == last) {
      fail("the file ends inside a band");
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
        short_row_at_ = lines_.line_number();
        remark_unreadable(report_, lines_.line_number(),
                          "a row of a band is too short, and the band is left out");
        return false;
      }
    }
    if (rows.size() < count) {
      fail("the file ends inside a band");
    }
    return rows.size() == count;
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

  /// A file may have been cut between two bands, where nothing else shows it. What stands before counts.
  void tell_what_is_missing() {
    if (result_.points.empty()) {
      fail("the file has no band of transfer functions");
    } else if (bands_begun_ < head_.band_count) {
      fail("the file ends after " + plain_text(static_cast<std::int64_t>(bands_begun_)) + " bands of " +
           plain_text(static_cast<std::int64_t>(head_.band_count)));
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
    const std::array<std::optional<std::size_t>, 2> electric{head_.outputs.ex, head_.outputs.ey};
    for (std::size_t i = 0; i < 2; ++i) {
      for (std::size_t j = 0; j < 2; ++j) {
        functions.inverse_power[i][j] = hermitian(band.power, i, j);
        if (electric[i]) {
          functions.impedance[i][j] = at(band.functions[*electric[i]], j);
          functions.electric_residuals[i][j] = hermitian(band.residuals, *electric[i], *electric[j]);
        }
      }
      if (head_.outputs.hz) {
        functions.tipper[i] = at(band.functions[*head_.outputs.hz], i);
      }
    }
    if (head_.outputs.hz) {
      functions.vertical_residual = hermitian(band.residuals, *head_.outputs.hz, *head_.outputs.hz).real();
    }
    return functions;
  }

  void add_point(const Band& band) {
    const auto functions = to_orthogonal_axes(functions_of(band), azimuths_);
    if (!functions) {
      return;
    }
    Point point;
    point.frequency = 1.0 / band.period;
    for (std::size_t i = 0; head_.outputs.ex && i < 2; ++i) {
      for (std::size_t j = 0; j < 2; ++j) {
        Value& value = point.values[2 * i + j];
        value.value = functions->impedance[i][j];
        value.variance = functions->impedance_variance[i][j];
      }
    }
    for (std::size_t j = 0; head_.outputs.hz && j < 2; ++j) {
      Value& value = point.values[transfer_function::impedance_count + j];
      value.value = functions->tipper[j];
      value.variance = functions->tipper_variance[j];
    }
    result_.points.push_back(point);
  }

  LineReader& lines_;
  FileReport& report_;
  TransferFunction result_;
  ZHead head_;
  ChannelAzimuths azimuths_;
  std::size_t bands_begun_ = 0;
  std::int64_t short_row_at_ = 0;  // line
  std::string kept_;
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
