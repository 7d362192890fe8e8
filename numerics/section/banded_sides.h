// banded_sides.h: many right sides of a factored banded system at once.
#pragma once
#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>

#include "numerics/section/banded_panels.h"
#include "numerics/section/register_lanes.h"
#include "numerics/section/registers.h"

namespace numerics::section {

constexpr std::size_t no_unknown = std::numeric_limits<std::size_t>::max();

// Some vectors of right sides, and a few unknowns of theirs at a time, which stay in registers until they are
// done: each unknown before them, or behind them, is then read once for all of these.
template <class Width, std::size_t vectors>
class SideStrip {
 public:
  BRENLOX_INLINE SideStrip(const Factors& a, const Values& sides, std::size_t stride)
      : a_(a), sides_(sides), stride_(stride) {}

  /// L^-1, of the unknowns from `first` to `end`; those before `start` have no values.
  BRENLOX_INLINE void eliminate(std::size_t start, std::size_t first, std::size_t end) const {
    for (std::size_t row = first; row < end; row += rows) {
      if (row % panel == 0 && row + panel < a_.count) {
        fetch_panel<0>(a_, row + panel);
      }
      const std::size_t reach = row > a_.half_bandwidth ? row - a_.half_bandwidth : 0;
      Block x;
      load(x, row);
      for (std::size_t column = std::max(start, reach); column < row; ++column) {
        subtract(x, column, a_.at(row, column), 1);
      }
      BRENLOX_UNROLL
      for (std::size_t p = 0; p < rows; ++p) {
        BRENLOX_UNROLL
        for (std::size_t q = p + 1; q < rows; ++q) {
          subtract(x[q], l(a_.at(row + q, row + p)), x[p]);
        }
      }
      store(x, row);
    }
  }

  /// (D L^T)^-1
  BRENLOX_INLINE void substitute_back() const {
    for (std::size_t end = a_.count; end > 0; end -= rows) {
      const std::size_t first = end - rows;
      if (end % panel == 0 && end > panel) {
        fetch_panel<0>(a_, end - 2 * panel);
      }
      Block x;
      load(x, first);
      BRENLOX_UNROLL
      for (std::size_t p = 0; p < rows; ++p) {
        BRENLOX_UNROLL
        for (std::size_t v = 0; v < vectors; ++v) {
          x[p][v].multiply(l(a_.at(first + p, first + p)));
        }
      }
      const std::size_t reach = std::min({end + a_.half_bandwidth, panel_of(first) + a_.height, a_.count});
      for (std::size_t row = end; row < reach; ++row) {
        subtract(x, row, a_.at(row, first), a_.height);
      }
      BRENLOX_UNROLL
      for (std::size_t behind = 0; behind < rows; ++behind) {
        const std::size_t q = rows - 1 - behind;
        BRENLOX_UNROLL
        for (std::size_t p = 0; p < q; ++p) {
          subtract(x[p], l(a_.at(first + q, first + p)), x[q]);
        }
      }
      store(x, first);
    }
  }

  static constexpr std::size_t rows = Width::side_rows;

 private:
  using Row = std::array<Lanes<Width>, vectors>;
  using Block = std::array<Row, rows>;

  [[nodiscard]] BRENLOX_INLINE Number l(std::size_t at) const { return {a_.real[at], a_.imaginary[at]}; }
  BRENLOX_INLINE static void subtract(Row& x, const Number& factor, const Row& other) {
    BRENLOX_UNROLL
    for (std::size_t v = 0; v < vectors; ++v) {
      x[v].subtract(factor, other[v]);
    }
  }
  // Takes an unknown from all rows, with the entries of L from `at` on.
  BRENLOX_INLINE void subtract(Block& x, std::size_t unknown, std::size_t at, std::size_t step) const {
    Row known;
    load(known, unknown);
    BRENLOX_UNROLL
    for (std::size_t p = 0; p < rows; ++p) {
      subtract(x[p], l(at + p * step), known);
    }
  }
  BRENLOX_INLINE void load(Row& x, std::size_t unknown) const {
    BRENLOX_UNROLL
    for (std::size_t v = 0; v < vectors; ++v) {
      const std::size_t at = unknown * stride_ + v * lanes<Width>;
      x[v].load(sides_.real + at, sides_.imaginary + at);
    }
  }
  BRENLOX_INLINE void load(Block& x, std::size_t first) const {
    BRENLOX_UNROLL
    for (std::size_t p = 0; p < rows; ++p) {
      load(x[p], first + p);
    }
  }
  BRENLOX_INLINE void store(const Block& x, std::size_t first) const {
    BRENLOX_UNROLL
    for (std::size_t p = 0; p < rows; ++p) {
      BRENLOX_UNROLL
      for (std::size_t v = 0; v < vectors; ++v) {
        const std::size_t at = (first + p) * stride_ + v * lanes<Width>;
        x[p][v].store(sides_.real + at, sides_.imaginary + at);
      }
    }
  }

  const Factors& a_;
  const Values& sides_;
  std::size_t stride_;
};

// One strip of right sides, or two.
// @param first, second  unknowns at which the values of a strip begin; no_unknown if it has none
template <class Width>
BRENLOX_INLINE void solve_sides(const Factors& a, const Values& sides, std::size_t stride, std::size_t first,
                                std::size_t second) {
  constexpr std::size_t vectors = strip / lanes<Width>;
  const SideStrip<Width, vectors> one(a, sides, stride);
  if constexpr (vectors == 1) {
    if (second != no_unknown) {
      const SideStrip<Width, 2> both(a, sides, stride);
      const std::size_t start = panel_of(std::min(first, second));
      const std::size_t together = first < second ? panel_of(second) : start;
      one.eliminate(start, start, together);
      both.eliminate(start, together, a.count);
      both.substitute_back();
      return;
    }
  } else if (second != no_unknown) {
    const Values other = {sides.real + strip, sides.imaginary + strip};
    const SideStrip<Width, vectors> two(a, other, stride);
    two.eliminate(panel_of(second), panel_of(second), a.count);
    two.substitute_back();
  }
  if (first != no_unknown) {
    one.eliminate(panel_of(first), panel_of(first), a.count);
    one.substitute_back();
  }
}

struct Products {
  std::array<Number, 4> factors;
  std::array<Values, 4> values;
  Values sums;
};

template <class Width>
BRENLOX_INLINE void add_products(const Products& products, std::size_t count) {
  for (std::size_t i = 0; i < count; i += lanes<Width>) {
    Lanes<Width> sum;
    sum.load(products.sums.real + i, products.sums.imaginary + i);
    BRENLOX_UNROLL
    for (std::size_t k = 0; k < products.factors.size(); ++k) {
      Lanes<Width> value;
      value.load(products.values[k].real + i, products.values[k].imaginary + i);
      sum.add(products.factors[k], value);
    }
    sum.store(products.sums.real + i, products.sums.imaginary + i);
  }
}

}  // namespace numerics::section
