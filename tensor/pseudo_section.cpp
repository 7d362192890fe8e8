#include "tensor/pseudo_section.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "core/median.h"

namespace Module_tensor {

namespace {

constexpr double gap_in_spacings = 1.5;
constexpr double same_frequency = 0.01;  // share of it
constexpr double least_interval = 1e-9;  // of heights: two readings of one frequency

std::vector<double> intervals_of(const std::vector<double>& places) {
  std::vector<double> intervals;
  for (std::size_t i = 0; i + 1 < places.size(); ++i) {
    intervals.push_back(places[i + 1] - places[i]);
  }
  return intervals;
}

/// How far neighbours are apart by rule around each interval. Bands of one sounding are sampled at different
/// densities: beside what is usual on the whole, the intervals on both sides of one say what is usual there.
std::vector<double> usual_around(const std::vector<double>& intervals, double usual) {
  std::vector<double> result(intervals.size(), usual);
  for (std::size_t i = 0; i < intervals.size(); ++i) {
    if (i > 0) {
      result[i] = std::max(result[i], intervals[i - 1]);
    }
    if (i + 1 < intervals.size()) {
      result[i] = std::max(result[i], intervals[i + 1]);
    }
  }
  return result;
}

/// What lies between ascending places, one for each interval.
struct Gaps {
  std::vector<bool> is_gap;
  std::vector<double> usual;  // interval there
};

Gaps gaps_between(const std::vector<double>& intervals, std::vector<double> usual) {
  Gaps gaps;
  gaps.usual = std::move(usual);
  for (std::size_t i = 0; i < intervals.size(); ++i) {
    constexpr double rounding = 1.0 + 1e-6;
    gaps.is_gap.push_back(intervals[i] > gap_in_spacings * gaps.usual[i] * rounding);
  }
  return gaps;
}

/// The cell of each place: half an interval to both sides, half a usual one into a gap.
std::vector<SectionRange> cells_around(const std::vector<double>& places, const Gaps& gaps, double usual) {
  const auto half = [&](std::size_t interval) {
    return 0.5 * (gaps.is_gap[interval] ? gaps.usual[interval] : places[interval + 1] - places[interval]);
  };
  std::vector<SectionRange> cells;
  for (std::size_t i = 0; i < places.size(); ++i) {
    const bool first = i == 0;
    const bool last = i + 1 == places.size();
    const double alone = 0.5 * usual;
    const double before = !first ? half(i - 1) : last ? alone : half(0);
    const double behind = !last ? half(i) : first ? alone : half(i - 1);
    cells.push_back({places[i] - before, places[i] + behind});
  }
  return cells;
}

// --- columns ---

/// Stations at one place share its cell, from left to right.
void share_cell(std::span<SectionColumn> columns, const SectionRange& cell, bool gap_behind) {
  const double width = (cell.upper - cell.lower) / static_cast<double>(columns.size());
  for (std::size_t i = 0; i < columns.size(); ++i) {
    columns[i].across = {cell.lower + width * static_cast<double>(i),
                         cell.lower + width * static_cast<double>(i + 1)};
  }
  columns.back().gap_behind = gap_behind;
}

void place_columns(std::vector<SectionColumn>& columns) {
  constexpr double lone_width = 100.0;  // m
  std::ranges::stable_sort(columns, {}, &SectionColumn::x);
  std::vector<double> places;
  std::vector<std::size_t> firsts;  // column of each place
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (places.empty() || columns[i].x > places.back()) {
      places.push_back(columns[i].x);
      firsts.push_back(i);
    }
  }
  firsts.push_back(columns.size());
  const std::vector<double> intervals = intervals_of(places);
  const double usual = median(intervals, lone_width);
  const Gaps gaps = gaps_between(intervals, std::vector<double>(intervals.size(), usual));
  const std::vector<SectionRange> cells = cells_around(places, gaps, usual);
  for (std::size_t i = 0; i < places.size(); ++i) {
    share_cell(std::span(columns).subspan(firsts[i], firsts[i + 1] - firsts[i]), cells[i],
               i < gaps.is_gap.size() && gaps.is_gap[i]);
  }
}

// --- rows ---

struct Rows {
  std::vector<double> heights;  // ascending
  std::vector<double> ends;     // of each row: the height that still belongs to it
  double usual = 0.0;           // interval between two points of a station
  Gaps gaps;
  std::vector<SectionRange> cells;
};

/// Heights of one column's points, ascending.
std::vector<double> heights_of(const SectionColumn& column) {
  std::vector<double> heights;
  for (const SectionPoint& point : column.points) {
    heights.push_back(point.period_height);
  }
  return heights;
}

/// The interval that is usual at the stations: where those have different frequencies, rows are denser.
double usual_interval(const std::vector<SectionColumn>& columns) {
  constexpr double lone_height = 0.5;  // decades
  std::vector<double> of_columns;
  for (const SectionColumn& column : columns) {
    if (column.points.size() > 1) {
      of_columns.push_back(median(intervals_of(heights_of(column))));
    }
  }
  return std::max(median(of_columns, lone_height), least_interval);
}

Rows rows_of(const std::vector<SectionColumn>& columns) {
  std::vector<double> all;
  for (const SectionColumn& column : columns) {
    const std::vector<double> heights = heights_of(column);
    all.insert(all.end(), heights.begin(), heights.end());
  }
  std::ranges::sort(all);
  const double as_one = std::log10(1.0 + same_frequency);
  Rows rows;
  for (std::size_t first = 0, i = 0; i < all.size(); ++i) {
    if (i + 1 == all.size() || all[i + 1] - all[first] >= as_one) {
      rows.heights.push_back(0.5 * (all[first] + all[i]));
      rows.ends.push_back(all[i]);
      first = i + 1;
    }
  }
  rows.usual = usual_interval(columns);
  const std::vector<double> intervals = intervals_of(rows.heights);
  rows.gaps = gaps_between(intervals, usual_around(intervals, rows.usual));
  rows.cells = cells_around(rows.heights, rows.gaps, rows.usual);
  return rows;
}

/// The points of a column that a row is made from.
class ColumnCurve {
 public:
  explicit ColumnCurve(const SectionColumn& column) : column_(column), heights_(heights_of(column)) {
    const std::vector<double> intervals = intervals_of(heights_);
    gaps_ = gaps_between(intervals, usual_around(intervals, median(intervals, 0.0)));
  }

  /// @param first, end  heights of periods that count as one row
  [[nodiscard]] std::optional<SectionNode> at(double first, double row, double end) const {
    const auto begin = std::ranges::lower_bound(heights_, first) - heights_.begin();
    std::optional<std::size_t> nearest;
    bool any = false;
    for (auto i = static_cast<std::size_t>(begin); i < heights_.size() && heights_[i] <= end; ++i) {
      any = true;
      if (counts(i) && (!nearest || std::abs(heights_[i] - row) < std::abs(heights_[*nearest] - row))) {
        nearest = i;
      }
    }
    if (nearest) {
      return node(*nearest);
    }
    return any ? std::nullopt : between(row);
  }

 private:
  [[nodiscard]] bool counts(std::size_t i) const { return column_.points[i].counts; }
  [[nodiscard]] SectionNode node(std::size_t i) const {
    return {column_.points[i].height, column_.points[i].value};
  }
  [[nodiscard]] std::optional<SectionNode> between(double row) const {
    const auto behind = static_cast<std::size_t>(std::ranges::lower_bound(heights_, row) - heights_.begin());
    if (behind == 0 || behind == heights_.size() || gaps_.is_gap[behind - 1] || !counts(behind - 1) ||
        !counts(behind)) {
      return std::nullopt;
    }
    const double share = (row - heights_[behind - 1]) / (heights_[behind] - heights_[behind - 1]);
    const SectionNode before = node(behind - 1);
    const SectionNode after = node(behind);
    return SectionNode{std::lerp(before.height, after.height, share),
                       std::lerp(before.value, after.value, share)};
  }

  const SectionColumn& column_;
  std::vector<double> heights_;  // of periods
  Gaps gaps_;
};

void add_nodes(const Rows& rows, SectionColumn& column) {
  const ColumnCurve curve(column);
  for (std::size_t row = 0; row < rows.heights.size(); ++row) {
    const double first = 2.0 * rows.heights[row] - rows.ends[row];  // the row's height is its middle
    column.nodes.push_back(curve.at(first - least_interval, rows.heights[row], rows.ends[row]));
  }
}

void add_cells_by_period(const Rows& rows, SectionColumn& column) {
  for (std::size_t row = 0; row < rows.heights.size(); ++row) {
    if (column.nodes[row]) {
      column.cells.push_back({rows.cells[row], column.nodes[row]->value});
    }
  }
}

/// Cells between the depths of rows that follow one another. Depths need not grow with the period: a cell may
/// lie over those of shorter ones.
void add_cells_by_depth(const Rows& rows, SectionColumn& column) {
  const auto half_to = [&](std::size_t row, std::size_t other,
                           std::size_t interval) -> std::optional<double> {
    if (!column.nodes[row] || !column.nodes[other] || rows.gaps.is_gap[interval]) {
      return std::nullopt;
    }
    return 0.5 * (column.nodes[other]->height - column.nodes[row]->height);
  };
  for (std::size_t row = 0; row < rows.heights.size(); ++row) {
    if (!column.nodes[row]) {
      continue;
    }
    const auto before = row > 0 ? half_to(row, row - 1, row - 1) : std::nullopt;
    const auto behind = row + 1 < rows.heights.size() ? half_to(row, row + 1, row) : std::nullopt;
    // In uniform ground depth goes with the root of the period.
    const double alone = 0.25 * rows.usual;
    const double height = column.nodes[row]->height;
    const double up = height + before.value_or(behind ? -*behind : -alone);
    const double down = height + behind.value_or(before ? -*before : alone);
    column.cells.push_back({{std::min(up, down), std::max(up, down)}, column.nodes[row]->value});
  }
}

void include(double lower, double upper, std::optional<SectionRange>& range) {
  if (!range) {
    range = SectionRange{lower, upper};
  }
  range->lower = std::min(range->lower, lower);
  range->upper = std::max(range->upper, upper);
}

/// Room beyond the outermost points, decades: that of the marks, or of ellipses, which reach to the next row.
double margin_of(const PseudoSection& section) {
  constexpr double of_marks = 0.02;
  if (!facts_of(section.quantity).ellipses || section.rows.size() < 2) {
    return of_marks;
  }
  return (section.rows.back() - section.rows.front()) / static_cast<double>(section.rows.size() - 1);
}

void find_extent(PseudoSection& section) {
  const double margin = margin_of(section);
  for (const SectionColumn& column : section.columns) {
    include(column.across.lower, column.across.upper, section.across);
    for (const SectionCell& cell : column.cells) {
      include(cell.heights.lower, cell.heights.upper, section.heights);
    }
    for (const SectionPoint& point : column.points) {
      if (std::isfinite(point.height)) {
        include(point.height - margin, point.height + margin, section.heights);
      }
    }
  }
}

}  // namespace

StationPlaces places_in_order(const LineTensors& line, const StationPlaces& places) {
  std::vector<std::pair<double, double>> stations;  // place and number
  for (const StationTensor& station : line.stations) {
    if (const auto place = places(station.station)) {
      stations.emplace_back(*place, station.station);
    }
  }
  std::ranges::sort(stations);
  std::map<double, double> order;
  for (const auto& station : stations) {
    order.emplace(station.second, static_cast<double>(order.size() + 1));
  }
  return [order = std::move(order)](double station) {
    const auto found = order.find(station);
    return found == order.end() ? std::nullopt : std::optional(found->second);
  };
}

PseudoSection make_pseudo_section(const SectionSource& source, SectionQuantity quantity,
                                  const StationPlaces& places) {
  PseudoSection section;
  section.quantity = quantity;
  const QuantityFacts& facts = facts_of(quantity);
  for (std::size_t station = 0; station < source.line->stations.size(); ++station) {
    const StationTensor& tensors = source.line->stations[station];
    if (const auto x = places(tensors.station)) {
      SectionColumn& column = section.columns.emplace_back();
      column.station_index = station;
      column.station = tensors.station;
      column.name = tensors.name;
      column.x = *x;
      column.points = section_points(source, station, quantity);
    }
  }
  place_columns(section.columns);
  Rows rows = rows_of(section.columns);
  for (SectionColumn& column : section.columns) {
    add_nodes(rows, column);
    if (facts.axis == SectionAxis::depth) {
      add_cells_by_depth(rows, column);
    } else {
      add_cells_by_period(rows, column);
    }
  }
  section.rows = std::move(rows.heights);
  section.gap_behind = std::move(rows.gaps.is_gap);
  find_extent(section);
  return section;
}

std::optional<SectionRange> range_of_data(const PseudoSection& section) {
  std::optional<SectionRange> range;
  for (const SectionColumn& column : section.columns) {
    for (const SectionPoint& point : column.points) {
      if (point.counts && point.has_value()) {
        include(point.value, point.value, range);
      }
    }
  }
  if (!range) {
    return range;
  }
  const ScaleQuantity scale = facts_of(section.quantity).scale;
  if (scale == ScaleQuantity::skew || scale == ScaleQuantity::misfit) {
    const double most = std::max(std::abs(range->lower), std::abs(range->upper));
    range = SectionRange{-most, most};
  }
  constexpr double least_width = 1e-6;
  if (range->upper - range->lower < least_width) {
    constexpr double half = 0.5;
    range = SectionRange{range->lower - half, range->upper + half};
  }
  return range;
}

const SectionPoint* nearest_point(const SectionColumn& column, double height) {
  const SectionPoint* nearest = nullptr;
  double least = 0.0;
  for (const SectionPoint& point : column.points) {
    const double distance = std::abs(point.height - height);
    if (std::isfinite(distance) && (nearest == nullptr || distance < least)) {
      nearest = &point;
      least = distance;
    }
  }
  return nearest;
}

}  // namespace Module_tensor
