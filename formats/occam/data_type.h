// data_type.h: the numbers by which data and response files say what a row holds.
#pragma once
#include <array>
#include <cstdint>

namespace Module_occam {

/// TE is the mode of the electric field along the strike. A file may hold other types, too.
enum class DataType : std::uint8_t {
  te_resistivity = 1,  // log10 ohm-m
  te_phase = 2,        // degrees
  tm_resistivity = 5,
  tm_phase = 6,
};

/// A mode with the types of its data.
struct Mode {
  const char* name;
  DataType resistivity;
  DataType phase;

  [[nodiscard]] constexpr bool has(DataType type) const { return type == resistivity || type == phase; }
};

inline constexpr Mode te_mode{"TE", DataType::te_resistivity, DataType::te_phase};
inline constexpr Mode tm_mode{"TM", DataType::tm_resistivity, DataType::tm_phase};
inline constexpr std::array<Mode, 2> modes{te_mode, tm_mode};

}  // namespace Module_occam
