// registers.h: how many numbers a processor works on at a time.
#pragma once
#include <cstddef>
#include <cstdint>

namespace numerics::section {

/// Two, four or eight numbers.
enum class Registers : std::uint8_t { narrow, wide, widest };

/// Right sides that are worked on together at least: those of one of the widest.
inline constexpr std::size_t strip = 8;

}  // namespace numerics::section
