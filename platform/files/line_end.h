// line_end.h: how the lines of texts end that users open with their system's own editor.
#pragma once
#include <string_view>

#ifdef _WIN32
inline constexpr std::string_view line_end = "\r\n";
#else
inline constexpr std::string_view line_end = "\n";
#endif
