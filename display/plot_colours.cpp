#include "display/plot_colours.h"

#include <array>

namespace Module_display_data {

graph::Colour repeat_colour(int n) {
  constexpr std::array<graph::Colour, 16> colours{{
      {0, 127, 255},
      {255, 0, 0},
      {0, 255, 0},
      {0, 0, 255},
      {255, 0, 255},
      {64, 64, 0},
      {50, 182, 182},
      {51, 255, 178},
      {128, 128, 128},
      {0, 0, 255},
      {0, 255, 0},
      {0, 255, 255},
      {255, 0, 0},
      {255, 0, 255},
      {255, 167, 0},  // pure yellow can't be seen on white
      {255, 127, 0},
  }};
  return colours[static_cast<std::size_t>(n % 16 + 16) % 16];
}

}  // namespace Module_display_data
