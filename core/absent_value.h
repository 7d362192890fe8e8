// absent_value.h: the value in readings, tables and plot data that means "no value".
#pragma once

inline constexpr float no_data = -1e32F;

/// True if a value counts as absent in display and output.
inline constexpr bool is_absent(double value) { return value <= -1e30; }
