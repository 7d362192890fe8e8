#include "formats/geosoft/geosoft_grid.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>

#include "core/absent_value.h"
#include "core/number_text.h"
#include "platform/files/safe_files.h"

namespace formats::geosoft {

using numerics::gridding::GridFrame;
using numerics::gridding::RegularGrid;

namespace {

constexpr float dummy = -1e32F;
constexpr std::size_t header_length = 512;

// Offsets in the header. What isn't named stays 0: no rotation, base 0, no title, no projection code.
enum HeaderOffset : std::size_t {
  element_size = 0,
  element_type = 4,
  vector_length = 8,
  vector_count = 12,
  value_order = 16,
  element_step = 20,
  vector_step = 28,
  first_x = 36,
  first_y = 44,
  multiplier = 68,
  present_count = 156,
  smallest = 160,
  largest = 164,
  median = 168,
  mean = 172,
  variance = 176,
  application_values = 188,
};

template <class Bits>
void put_bits(std::string& bytes, std::size_t at, Bits bits) {
  for (std::size_t i = 0; i < sizeof bits; ++i) {
    bytes[at + i] = static_cast<char>(static_cast<unsigned char>(bits >> (8 * i)));
  }
}

void put(std::string& bytes, std::size_t at, std::int32_t value) {
  put_bits(bytes, at, std::bit_cast<std::uint32_t>(value));
}
void put(std::string& bytes, std::size_t at, float value) {
  put_bits(bytes, at, std::bit_cast<std::uint32_t>(value));
}
void put(std::string& bytes, std::size_t at, double value) {
  put_bits(bytes, at, std::bit_cast<std::uint64_t>(value));
}

void check(const RegularGrid& grid) {
  const GridFrame& frame = grid.frame;
  constexpr auto max_count = static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max());
  if (frame.columns == 0 || frame.rows == 0 || frame.columns > max_count || frame.rows > max_count ||
      grid.values.size() != frame.columns * frame.rows) {
    throw std::invalid_argument("a grid of " + std::to_string(frame.columns) + " by " +
                                std::to_string(frame.rows) + " nodes can't be written");
  }
  if (!(std::isfinite(frame.cell) && frame.cell > 0.0)) {
    throw std::invalid_argument("the cell size of the grid is " + plain_text(frame.cell));
  }
  if (!std::isfinite(frame.first_x) || !std::isfinite(frame.first_y)) {
    throw std::invalid_argument("the position of the grid is not a number");
  }
}

float stored_value(double value) {
  if (!std::isfinite(value) || is_absent(value)) {
    return dummy;
  }
  if (value > static_cast<double>(std::numeric_limits<float>::max())) {
    throw std::invalid_argument("the value " + plain_text(value) + " doesn't fit into a grid");
  }
  return static_cast<float>(value);
}

// Statistics of the values as they are stored, without dummies.
void put_statistics(std::string& header, const std::vector<float>& values) {
  double count = 0.0;
  double sum = 0.0;
  float low = dummy;
  float high = dummy;
  for (const float value : values) {
    if (value != dummy) {
      low = count > 0.0 ? std::min(low, value) : value;
      high = std::max(high, value);
      sum += static_cast<double>(value);
      count += 1.0;
    }
  }
  double squares = 0.0;
  for (const float value : values) {
    if (value != dummy) {
      squares += std::pow(static_cast<double>(value) - sum / count, 2);
    }
  }
  put(header, present_count, static_cast<std::int32_t>(count));
  put(header, smallest, low);
  put(header, largest, high);
  put(header, mean, count > 0.0 ? static_cast<float>(sum / count) : dummy);
  put(header, variance, count > 1.0 ? squares / (count - 1.0) : 0.0);
  if (count == 0.0) {
    put(header, median, dummy);
  }
}

}  // namespace

void write_geosoft_grid(const std::filesystem::path& file, const RegularGrid& grid) {
  check(grid);
  std::vector<float> values(grid.values.size());
  std::transform(grid.values.begin(), grid.values.end(), values.begin(), stored_value);

  std::string bytes(header_length + sizeof(float) * values.size(), '\0');
  put(bytes, element_size, std::int32_t{sizeof(float)});
  put(bytes, element_type, std::int32_t{2});  // floating point
  put(bytes, vector_length, static_cast<std::int32_t>(grid.frame.columns));
  put(bytes, vector_count, static_cast<std::int32_t>(grid.frame.rows));
  put(bytes, value_order, std::int32_t{1});  // rows along X, the lowest first
  put(bytes, element_step, grid.frame.cell);
  put(bytes, vector_step, grid.frame.cell);
  put(bytes, first_x, grid.frame.first_x);
  put(bytes, first_y, grid.frame.first_y);
  put(bytes, multiplier, 1.0);
  put_statistics(bytes, values);
  for (std::size_t i = 0; i < 4; ++i) {
    put(bytes, application_values + i * sizeof(float), dummy);
  }
  for (std::size_t i = 0; i < values.size(); ++i) {
    put(bytes, header_length + i * sizeof(float), values[i]);
  }
  safe_files::write_into_place(file, bytes);
}

}  // namespace formats::geosoft
