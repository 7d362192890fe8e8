// line_choice.h: which curves of a line make up its transfer functions.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "database/reading.h"

namespace Module_tensor {

/// The data types of a whole transfer function, in the order of impedance and tipper elements.
enum class CurveType : std::uint8_t { ExHx, ExHy, EyHx, EyHy, HzHx, HzHy };
inline constexpr std::array<std::string_view, 6> curve_types{"ExHx", "ExHy", "EyHx", "EyHy", "HzHx", "HzHy"};

/// The index of a data type in `curve_types`; none for any other.
std::optional<std::size_t> curve_type_index(std::string_view data_type);

/// Which curves of a line: those of one kind of recording.
struct LineChoice {
  std::string line;
  std::int32_t reference_type = 0;
  float dipole = 0.0F;  // m

  bool operator==(const LineChoice&) const = default;
  [[nodiscard]] Module_database::ReadingKey key(CurveType type, double station) const;
  /// Which rows of ReadingsDataTable these are.
  [[nodiscard]] std::string criteria() const;
};

/// The kinds of recording that a line has readings of that a transfer function can be made from, by reference
/// type and dipole. Needs an open survey; throws dao::Error.
std::vector<LineChoice> kinds_of_line(const std::string& line);

}  // namespace Module_tensor
