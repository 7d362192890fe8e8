#include "tensor/colour_scale.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace Module_tensor {

namespace {

using graph::Colour;
using graph::Palette;

constexpr int entries = graph::last_palette_entry - graph::first_palette_entry + 1;

// Steps of CIE lightness of about 14 from 13 to 96, cold to warm.
constexpr std::array<Colour, 7> sequential_colours{{{38, 22, 74},
                                                    {52, 62, 128},
                                                    {44, 108, 148},
                                                    {58, 150, 140},
                                                    {124, 188, 112},
                                                    {204, 216, 104},
                                                    {255, 244, 178}}};
// Equally light on both sides of a white middle; blue and orange differ to every kind of colour vision.
constexpr std::array<Colour, 7> diverging_colours{{{22, 50, 104},
                                                   {56, 108, 168},
                                                   {136, 178, 214},
                                                   {244, 243, 238},
                                                   {236, 178, 112},
                                                   {200, 104, 36},
                                                   {108, 44, 10}}};

std::uint8_t between(std::uint8_t first, std::uint8_t second, double share) {
  return static_cast<std::uint8_t>(std::lround(first + share * (second - first)));
}

Palette blended(std::span<const Colour> colours) {
  Palette palette{};
  for (int entry = 0; entry < entries; ++entry) {
    const double at = static_cast<double>(entry) * static_cast<double>(colours.size() - 1) / (entries - 1);
    const std::size_t index = std::min(static_cast<std::size_t>(at), colours.size() - 2);
    const double share = at - static_cast<double>(index);
    const Colour& first = colours[index];
    const Colour& second = colours[index + 1];
    palette[static_cast<std::size_t>(entry) + graph::first_palette_entry] = {
        between(first.red, second.red, share), between(first.green, second.green, share),
        between(first.blue, second.blue, share)};
  }
  return palette;
}

/// All palettes, not inverted; a picture asks for the colour of each of its cells.
const std::array<Palette, scale_palette_names.size()>& palettes() {
  static const std::array<Palette, scale_palette_names.size()> made{
      blended(sequential_colours),    blended(diverging_colours),     graph::image_palette(0, false),
      graph::image_palette(1, false), graph::image_palette(2, false), graph::image_palette(3, false)};
  return made;
}

}  // namespace

Palette scale_palette(ScalePalette palette, bool inverted) {
  Palette colours = palettes()[static_cast<std::size_t>(palette)];
  if (inverted) {
    std::reverse(colours.begin() + graph::first_palette_entry, colours.end());
  }
  return colours;
}

Colour ColourScale::colour_of(double value) const {
  const int entry = graph::palette_entry(value, lower, upper);
  const int shown = inverted ? graph::first_palette_entry + graph::last_palette_entry - entry : entry;
  return palettes()[static_cast<std::size_t>(palette)][static_cast<std::size_t>(shown)];
}

ColourScale usual_scale(ScaleQuantity quantity) {
  constexpr double right_angle = 90.0;
  constexpr double largest_skew = 6.0;
  constexpr double largest_misfit = 6.0;
  switch (quantity) {
    case ScaleQuantity::log_resistivity:
      return {ScalePalette::sequential, 0.0, 4.0, false};
    case ScaleQuantity::phase:
      return {ScalePalette::sequential, 0.0, right_angle, false};
    case ScaleQuantity::skew:
      return {ScalePalette::diverging, -largest_skew, largest_skew, false};
    case ScaleQuantity::misfit:
      return {ScalePalette::diverging, -largest_misfit, largest_misfit, false};
    case ScaleQuantity::ellipticity:
    case ScaleQuantity::tipper_magnitude:
      break;
  }
  return {ScalePalette::sequential, 0.0, 1.0, false};
}

}  // namespace Module_tensor
