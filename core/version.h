// version.h: the version as the windows show it and output files name it.
#pragma once
#include <string>

#include "core/number_text.h"

/// "1.00 February, 2012" for version 1.0.
inline std::string version_text(int major, int minor) {
  return plain_text(major) + "." + format_number(minor, "00") + " February, 2012";
}
