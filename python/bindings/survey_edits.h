// survey_edits.h: new masks, use flags and static factors of readings, as a script sets them.
#pragma once
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace Python {

/// Points of a reading.
struct PointChoice {
  std::int32_t ID = 0;
  std::vector<float> frequencies;         // Hz, of the reading as the caller knows it
  std::vector<std::uint8_t> resistivity;  // for each: whether it is chosen
  std::vector<std::uint8_t> phase;
};

enum class ReadingPart : std::uint8_t { reading, resistivity, phase };

// All of them need an open survey, store their change as one command and give how many points or readings
// have changed, -1 after a message, 0 after a stop. A reading that is gone, or has other frequencies now, is
// an std::runtime_error, and nothing is changed.

/// Masks the points, or lets them count. Points without a value are left alone.
std::int64_t set_points(std::span<const PointChoice> choices, bool count);

/// Switches readings or parts of them.
std::int64_t set_use(std::span<const std::int32_t> IDs, ReadingPart part, bool use);

/// Sets factors on resistivities, above 0.
std::int64_t set_static_factors(std::span<const std::int32_t> IDs, float factor);

}  // namespace Python
