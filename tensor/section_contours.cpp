#include "tensor/section_contours.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace Module_tensor {

namespace {

struct Corner {
  double x = 0.0;
  double height = 0.0;
  double value = 0.0;
};

struct Place {
  double x = 0.0;
  double height = 0.0;
};

/// Left column: 0 of this row, 3 of the next; right column: 1 and 2. Side i goes from corner i to the next.
using Square = std::array<Corner, 4>;

Place crossing(const Square& square, std::size_t side, double level) {
  const Corner& from = square[side];
  const Corner& to = square[(side + 1) % square.size()];
  const double share = (level - from.value) / (to.value - from.value);
  return {std::lerp(from.x, to.x, share), std::lerp(from.height, to.height, share)};
}

struct Level {
  std::size_t index = 0;
  double value = 0.0;
};

void add_piece(const Square& square, const Level& level, std::size_t one_side, std::size_t other_side,
               std::vector<ContourPiece>& pieces) {
  const Place from = crossing(square, one_side, level.value);
  const Place to = crossing(square, other_side, level.value);
  pieces.push_back({level.index, from.x, from.height, to.x, to.height});
}

void add_pieces(const Square& square, const Level& level, std::vector<ContourPiece>& pieces) {
  std::array<std::size_t, 4> sides{};
  std::size_t crossed = 0;
  for (std::size_t side = 0; side < square.size(); ++side) {
    if ((square[side].value < level.value) != (square[(side + 1) % square.size()].value < level.value)) {
      sides[crossed++] = side;
    }
  }
  if (crossed == 2) {
    add_piece(square, level, sides[0], sides[1], pieces);
  } else if (crossed == 4) {
    const double middle = 0.25 * (square[0].value + square[1].value + square[2].value + square[3].value);
    // Where the middle belongs to corner 0, the line cuts corners 1 and 3 off, else 0 and 2.
    const std::size_t first = (middle < level.value) == (square[0].value < level.value) ? 0 : 3;
    add_piece(square, level, first, (first + 1) % 4, pieces);
    add_piece(square, level, (first + 2) % 4, (first + 3) % 4, pieces);
  }
}

void add_square(const Square& square, const std::vector<double>& levels, std::vector<ContourPiece>& pieces) {
  const auto [least, most] = std::ranges::minmax(square, {}, &Corner::value);
  for (auto level = std::ranges::upper_bound(levels, least.value);
       level != levels.end() && *level <= most.value; ++level) {
    add_pieces(square, {static_cast<std::size_t>(level - levels.begin()), *level}, pieces);
  }
}

}  // namespace

std::vector<double> contour_levels(const SectionRange& range) {
  constexpr double wanted = 8.0;
  const double step = (range.upper - range.lower) / wanted;
  const double power = std::pow(10.0, std::floor(std::log10(step)));
  double round = 10.0 * power;
  for (const double factor : {5.0, 2.0, 1.0}) {
    if (factor * power >= step * (1.0 - 1e-9)) {
      round = factor * power;
    }
  }
  const double first = std::ceil(range.lower / round);
  std::vector<double> levels;
  for (int i = 0; i <= static_cast<int>(2.0 * wanted) && (first + i) * round <= range.upper; ++i) {
    levels.push_back((first + i) * round);
  }
  return levels;
}

std::vector<ContourPiece> contour_lines(const PseudoSection& section, const std::vector<double>& levels) {
  std::vector<ContourPiece> pieces;
  for (std::size_t i = 0; i + 1 < section.columns.size(); ++i) {
    const SectionColumn& left = section.columns[i];
    const SectionColumn& right = section.columns[i + 1];
    for (std::size_t row = 0; !left.gap_behind && row + 1 < section.rows.size(); ++row) {
      const auto& [a, b, c, d] =
          std::array{left.nodes[row], right.nodes[row], right.nodes[row + 1], left.nodes[row + 1]};
      if (a && b && c && d && !section.gap_behind[row]) {
        add_square({{{left.x, a->height, a->value},
                     {right.x, b->height, b->value},
                     {right.x, c->height, c->value},
                     {left.x, d->height, d->value}}},
                   levels, pieces);
      }
    }
  }
  return pieces;
}

}  // namespace Module_tensor
