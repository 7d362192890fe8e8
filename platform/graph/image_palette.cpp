#include "platform/graph/image_palette.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace graph {

namespace {

std::uint8_t component(double value) {
  return static_cast<std::uint8_t>(std::clamp(std::nearbyint(value), 0.0, 255.0));
}

Colour colour(double red, double green, double blue) {
  return {component(red), component(green), component(blue)};
}

Colour grey(double level) { return colour(level, level, level); }

Colour red_to_blue(int i) {
  if (i <= 86) {
    return colour(255.0, (i - 2) * 255.0 / 85.0, 0.0);
  }
  if (i <= 170) {
    return colour((1.0 - (i - 86) / 84.0) * 255.0, 255.0, 0.0);
  }
  return colour(0.0, (1.0 - (i - 170) / 85.0) * 255.0, (i - 170) * 255.0 / 85.0);
}

Colour rainbow(int i) {
  if (i <= 68) {
    return colour(255.0, (i - 2) * 255.0 / 67.0, 0.0);
  }
  if (i <= 128) {
    return colour((1.0 - (i - 68) / 60.0) * 255.0, 255.0, 0.0);
  }
  if (i <= 188) {
    return colour(0.0, 255.0, (i - 128) * 255.0 / 60.0);
  }
  return colour(0.0, (1.0 - (i - 188) / 67.0) * 255.0, 255.0);
}

Colour table_colour(int table, int i) {
  constexpr float truncated_range = 0.7F;  // in single precision: its last digit decides at the halves
  switch (table) {
    case 1:
      return red_to_blue(i);
    case 2:
      return rainbow(i);
    case 3:
      return grey(static_cast<double>(truncated_range) * i + 76.0);
    default:
      return grey(i);
  }
}

/// The whole part of a palette entry, held within the palette; NaN gives the first entry.
int held_entry(double entry) {
  return entry >= first_palette_entry ? static_cast<int>(std::min<double>(entry, last_palette_entry))
                                      : first_palette_entry;
}

}  // namespace

Palette image_palette(int table, bool invert) {
  Palette palette{};
  for (int i = first_palette_entry; i <= last_palette_entry; ++i) {
    palette[static_cast<std::size_t>(i)] = table_colour(table, i);
  }
  constexpr std::size_t middle = 128;
  for (std::size_t i = first_palette_entry; invert && i <= middle; ++i) {
    std::swap(palette[i], palette[first_palette_entry + last_palette_entry - i]);
  }
  return palette;
}

int palette_entry(double value, double minimum, double maximum) {
  constexpr double entries = 254.0;
  return held_entry(std::trunc((value - minimum) * entries / (maximum - minimum)) + first_palette_entry);
}

int misfit_entry(double misfit) {
  constexpr double half = 127.0;
  constexpr double largest = 6.0;
  constexpr double middle = 128.0;
  return held_entry(std::trunc(half * misfit / largest + middle));
}

}  // namespace graph
