// data_type.h: the numbers by which data and response files say what a row holds.
#pragma once
#include <array>
#include <cstdint>
#include <string>

namespace Module_occam {

/// TE is the mode of the electric field along the strike. A file may hold other numbers, too.
enum class DataType : std::int32_t {
  te_resistivity = 1,  // log10 ohm-m
  te_phase = 2,        // degrees
  te_real_tipper = 3,  // of Hz/Hy
  te_imaginary_tipper = 4,
  tm_resistivity = 5,
  tm_phase = 6,
  te_linear_resistivity = 9,  // ohm-m
  tm_linear_resistivity = 10,
  te_real_impedance = 13,  // ohm; Zxy, in the first quadrant over a uniform earth
  te_imaginary_impedance = 14,
  tm_real_impedance = 15,  // Zyx, in the third quadrant
  tm_imaginary_impedance = 16,
};

enum class FieldMode : std::uint8_t { te, tm };

enum class Quantity : std::uint8_t {
  log10_resistivity,
  phase,
  resistivity,
  real_impedance,
  imaginary_impedance,
  real_tipper,
  imaginary_tipper,
};

/// What rows of a data type hold.
struct TypeMeaning {
  DataType type;
  FieldMode mode;
  Quantity quantity;
  const char* name;  // for users
};

/// @return nullptr for a type that has no meaning here
const TypeMeaning* find_meaning(DataType type);

/// "TE resistivity"; "type 7" for one without a meaning.
std::string data_type_name(DataType type);

/// A mode with the types of its data.
struct Mode {
  const char* name;
  DataType resistivity;
  DataType phase;
  DataType linear_resistivity;

  [[nodiscard]] constexpr bool has(DataType type) const { return type == resistivity || type == phase; }
};

inline constexpr Mode te_mode{"TE", DataType::te_resistivity, DataType::te_phase,
                              DataType::te_linear_resistivity};
inline constexpr Mode tm_mode{"TM", DataType::tm_resistivity, DataType::tm_phase,
                              DataType::tm_linear_resistivity};
inline constexpr std::array<Mode, 2> modes{te_mode, tm_mode};

}  // namespace Module_occam
