// pseudo_section.h: a quantity of a line's stations by period or depth, as cells to be coloured.
//
// Rows are the periods of all stations, those that differ by less than a percent as one. A station that lacks
// a row has there what lies between its neighbouring points, linear in the logarithm of frequency, but
// nothing beyond its ends, in a gap or beside a masked point. A cell reaches to the middle between
// neighbours; in a gap, which is more than one and a half spacings wide, it ends half a spacing away.
//
// Conventions: x is a place along the line, m; a height is the decimal logarithm of period (s) or depth (m);
// values as in section_points.h.
#pragma once
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tensor/section_points.h"

namespace Module_tensor {

struct SectionRange {
  double lower = 0.0;
  double upper = 1.0;  // above lower

  bool operator==(const SectionRange&) const = default;
};

struct SectionCell {
  SectionRange heights;
  double value = 0.0;
};

/// Where a column's curve passes a row; none: nothing is known there.
struct SectionNode {
  double height = 0.0;
  double value = 0.0;
};

struct SectionColumn {
  std::size_t station_index = 0;  // of the line
  double station = 0.0;
  std::string name;  // of its site; empty if it has none
  double x = 0.0;
  SectionRange across;                            // of its cells, m
  bool gap_behind = false;                        // before the next column
  std::vector<SectionPoint> points;               // by growing period
  std::vector<SectionCell> cells;                 // in the order of the rows
  std::vector<std::optional<SectionNode>> nodes;  // of each row
};

struct PseudoSection {
  SectionQuantity quantity = SectionQuantity::rho_xy;
  std::vector<SectionColumn> columns;   // ascending in x; stations without a place are left out
  std::vector<double> rows;             // heights of periods, ascending
  std::vector<bool> gap_behind;         // of each row but the last
  std::optional<SectionRange> heights;  // of all cells and points; none: there are no points
  std::optional<SectionRange> across;   // of all columns; none: there are none

  [[nodiscard]] bool empty() const { return !heights; }
};

/// Where a station is along the line, m; none if it has no place.
using StationPlaces = std::function<std::optional<double>(double station)>;

/// Places that are one metre apart in the order of others. Stations at one place are neighbours.
StationPlaces places_in_order(const LineTensors& line, const StationPlaces& places);

/// The columns, rows and cells of a line, by the quantity's own axis: period or depth.
PseudoSection make_pseudo_section(const SectionSource& source, SectionQuantity quantity,
                                  const StationPlaces& places);

/// The limits of what counts, a little apart where it is all the same; of a quantity with a sign even to both
/// sides. None without data.
std::optional<SectionRange> range_of_data(const PseudoSection& section);

/// The counting or masked point of a column that is nearest to a height.
const SectionPoint* nearest_point(const SectionColumn& column, double height);

}  // namespace Module_tensor
