// plot_table.h: what a chart is given to draw, without Qt, so that logic can prepare it.
//
// Conventions of this file: indices are 0-based; a coordinate at or below null_limit, or one that is not
// finite, is no data; colours are red, green, blue from 0 to 255.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/absent_value.h"

namespace graph {

inline constexpr double null_value = no_data;
inline constexpr double null_limit = present_above;

struct Colour {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  friend bool operator==(const Colour&, const Colour&) = default;
};

/// One curve. Points are joined by a line in their order; a point without data interrupts the line.
struct PlotSeries {
  std::vector<double> x;
  std::vector<double> y;      // as long as x
  std::vector<double> error;  // half a bar, in units of y; empty: no error bars; no data: none at a point
};

struct PlotTable {
  std::vector<PlotSeries> series;
};

// The style of a point. From first_palette_style on, the palette colour (style - first_palette_style) mod
// palette size, whatever the series. A negative style -(1 + k) gives the point the k-th colour of the palette
// of overrides. An unused point, of a curve that takes part in nothing, is grey but no masked one. A point
// without a style is a used one.
inline constexpr int unused_point = 0;
inline constexpr int used_point = 1;
inline constexpr int masked_point = 2;
inline constexpr int first_palette_style = 3;
inline constexpr int palette_size = 5;

/// Added to the style of a point that is ringed: it stands out, and nothing else about it changes. The ring
/// of a point that is chosen has another colour; a point may have both.
inline constexpr int ringed = 1 << 20;
inline constexpr int chosen = 1 << 21;

using PointStyles = std::vector<std::vector<int>>;  // [series][point]

/// The palette style of the curve with this number (from 1): 3, 4, 5, 6, 7, 3, ...
constexpr int palette_style(int number) { return first_palette_style + (number - 1) % palette_size; }

inline constexpr Colour unused_colour{170, 170, 170};

/// What a used point of a curve looks like. A dot is a small disc, for the points of a curve that is its
/// line.
enum class Marker : std::uint8_t { disc, square, dot };

struct SeriesStyle {
  std::optional<Colour> colour;  // none: the palette colour of the series' number
  double width = 1.0;            // of the line, in device-independent pixels; wide series are drawn on top
  bool line = true;              // false: points only
  Marker marker = Marker::disc;
  bool dashed = false;  // the line
};

/// A text over the curves, above a place of the chart.
struct PlotLabel {
  double x = 0.0;
  double y = 0.0;
  std::string text;
};

}  // namespace graph
