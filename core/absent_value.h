// absent_value.h: the value in readings, tables and plot data that means "no value".
#pragma once

inline constexpr float no_data = -1e32F;

/// Values above it are present. A NaN is neither present nor absent.
inline constexpr double present_above = -1e30;

/// True if a value counts as absent in display and output.
inline constexpr bool is_absent(double value) { return value <= present_above; }
