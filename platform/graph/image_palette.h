// image_palette.h: the colours of pictures of a quantity: sections, pseudo-sections, misfits.
#pragma once
#include <array>
#include <string_view>

#include "platform/graph/plot_table.h"

namespace graph {

/// Entries 0 and 1 are black and not used in pictures.
using Palette = std::array<Colour, 256>;
inline constexpr int first_palette_entry = 2;
inline constexpr int last_palette_entry = 255;

inline constexpr std::array<std::string_view, 4> colour_table_names = {
    "256 linear greyscale", "256 red to blue", "256 rainbow (red low)", "256 truncated greyscale"};

/// @param table   index of colour_table_names; a number beyond it is the first one
/// @param invert  in the opposite order
Palette image_palette(int table, bool invert);

/// The entry for a value of a range that is spread over the palette: the first entry at its lower end; values
/// beyond the range have the colours of its ends.
int palette_entry(double value, double minimum, double maximum);

/// The entry for a misfit in units of the datum's error: the middle at 0, the ends at -6 and 6.
int misfit_entry(double misfit);

}  // namespace graph
