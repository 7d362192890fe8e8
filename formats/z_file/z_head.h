// z_head.h: the head of a file of transfer functions with full error covariances: its site and its channels.
#pragma once
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/line_reader.h"
#include "formats/file_report.h"
#include "formats/transfer_function/channel_axes.h"
#include "formats/transfer_function/transfer_function.h"

namespace formats::z_file {

inline constexpr std::size_t input_count = 2;  // Hx and Hy

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

struct ZHead {
  transfer_function::Site site;
  std::vector<Channel> channels;  // Hx, Hy, then the outputs
  Outputs outputs;
  std::size_t band_count = 0;  // 0: not said

  [[nodiscard]] std::size_t output_count() const { return channels.size() - input_count; }

  /// From the direction of Hx: what was measured in orthogonal axes stays as it is.
  [[nodiscard]] transfer_function::ChannelAzimuths azimuths() const;
};

/// Reads on to the last channel's line. None if the channels aren't Hx, Hy and one to three of Hz, Ex and Ey,
/// or two of a kind lie along one line; the report's failure tells which.
std::optional<ZHead> read_z_head(LineReader& lines, FileReport& report);

/// The text behind a word of a line, whatever the case; none if the line doesn't have the word.
std::optional<std::string_view> behind(std::string_view line, std::string_view word);

/// The numbers at the beginning of a text.
std::vector<double> numbers_of(std::string_view text);

}  // namespace formats::z_file
