// zonge_raw_block.h: what a raw receiver file says: one block, and what carries over from block to block.
//
// Conventions: frequency Hz; lengths and stations in the file's unit; resistivity ohm-m; phase degrees;
// channels, blocks and lines count from 1.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace formats::zonge {

inline constexpr std::size_t zonge_channel_limit = 64;   // of a block
inline constexpr std::size_t zonge_harmonic_limit = 64;  // of a block

/// What one channel measured at one harmonic of the base frequency.
struct ZongeValue {
  double harmonic = 1.0;     // multiple of the base frequency, > 0
  double resistivity = 0.0;  // ohm-m
  double phase = 0.0;        // degrees
};

struct ZongeChannel {
  std::int32_t number = 0;
  std::string name;  // Ex, Ey, Hx, Hy ...; ExHy and EyHx once the channel has its magnetic field
  double station = 0.0;
  std::int64_t line_number = 0;  // of the channel's first line
  bool has_data_line = false;    // a data line has been read, not harmonics alone
  std::vector<ZongeValue> values;
};

enum class ZongeBlockType { mt, skipped };

struct ZongeBlock {
  ZongeBlockType type = ZongeBlockType::skipped;
  std::int64_t number = 0;
  std::int64_t line_number = 0;  // of its first line
  bool is_header = false;        // has the operator's line: describes the survey up to the next one
  bool aborted = false;
  bool names_configuration = false;
  bool in_harmonics = false;  // lines of numbers are harmonics, not channels
  std::string fault;          // the first one; empty if the block has none
  std::optional<double> base_frequency;
  std::optional<double> a_spacing;  // in force at the block's end
  std::vector<double> harmonics;    // ascending, no two equal; of all channels, once the block is complete
  std::vector<ZongeChannel> channels;
};

/// An input of the receiver as headers describe it.
struct ZongeInput {
  std::string name;
  std::optional<double> station;
  std::optional<double> gain;
};

/// What stays in force until a later block changes it.
struct ZongeSurvey {
  std::string configuration;  // Vector, Tensor, AMT; empty before the first MT block
  std::optional<double> a_spacing;
  std::optional<std::string> line;
  std::optional<double> frequency;
  std::optional<std::int64_t> channel_count;
  std::array<ZongeInput, zonge_channel_limit + 1> inputs;  // by channel number; the first is unused
};

}  // namespace formats::zonge
