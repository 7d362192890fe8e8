// colour_scale.h: the colours that stand for the values of a quantity, in every picture of a line's tensors.
//
// Limits are the same for every line unless a user types others, so that pictures of two lines compare.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/graph/image_palette.h"

namespace Module_tensor {

/// The first two can be told apart by people who don't see red or green, and in grey: lightness grows from
/// end to end of the sequential one, and falls from the middle to both ends of the diverging one. The others
/// are those of graph::colour_table_names.
enum class ScalePalette : std::uint8_t {
  sequential,
  diverging,
  greyscale,
  red_to_blue,
  rainbow,
  truncated_greyscale
};
inline constexpr std::array<std::string_view, 6> scale_palette_names{"Dark to light",
                                                                     "Blue, white, orange",
                                                                     graph::colour_table_names[0],
                                                                     graph::colour_table_names[1],
                                                                     graph::colour_table_names[2],
                                                                     graph::colour_table_names[3]};
/// The same in a word, for a command line.
inline constexpr std::array<std::string_view, 6> scale_palette_words{"sequential", "diverging", "grey",
                                                                     "red-blue",   "rainbow",   "short-grey"};

/// @param inverted  in the opposite order
graph::Palette scale_palette(ScalePalette palette, bool inverted);

struct ColourScale {
  ScalePalette palette = ScalePalette::sequential;
  double lower = 0.0;
  double upper = 1.0;  // above lower
  bool inverted = false;

  bool operator==(const ColourScale&) const = default;
  /// Values beyond the limits have the colours of the ends.
  [[nodiscard]] graph::Colour colour_of(double value) const;
};

/// What there is a usual scale for.
enum class ScaleQuantity : std::uint8_t {
  log_resistivity,  // log10 ohm-m
  phase,            // degrees, in the first quadrant
  skew,             // degrees
  ellipticity,
  tipper_magnitude,
  misfit  // in units of the datum's error
};
ColourScale usual_scale(ScaleQuantity quantity);

}  // namespace Module_tensor
