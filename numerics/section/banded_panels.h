// banded_panels.h: factors a banded complex symmetric matrix in panels of columns, and one right side with
// it.
#pragma once
#include <algorithm>
#include <array>
#include <complex>
#include <cstddef>
#include <span>

#include "numerics/section/aligned_numbers.h"
#include "numerics/section/register_lanes.h"

namespace numerics::section {

// Columns eliminated together, and rows that lie in one cache line. The columns of a panel are a rectangle of
// its own, from the first row of its diagonal block to the last one that elimination reaches, rounded up to
// whole panels: any row is as aligned in one column as in another. Rows of the rectangle that are outside the
// band are zero below it; above the diagonal there is anything.
constexpr std::size_t panel = 8;

constexpr std::size_t round_up(std::size_t count) { return (count + panel - 1) / panel * panel; }
constexpr std::size_t panel_of(std::size_t column) { return column - column % panel; }

template <class Entry>
struct PanelsOf {
  Entry* real;
  Entry* imaginary;
  std::size_t count;  // of columns, whole panels
  std::size_t half_bandwidth;
  std::size_t height;  // of the rectangles

  [[nodiscard]] std::size_t at(std::size_t row, std::size_t column) const {
    return column * height + row - panel_of(column);
  }
};
using Panels = PanelsOf<double>;
using Factors = PanelsOf<const double>;

// Asks for the rectangle of a panel that is soon worked on.
template <int for_writing, class Entry>
BRENLOX_INLINE void fetch_panel(const PanelsOf<Entry>& a, std::size_t first) {
  constexpr std::size_t line = 8;  // numbers
  for (std::size_t at = first * a.height; at < (first + panel) * a.height; at += line) {
    __builtin_prefetch(a.real + at, for_writing);
    __builtin_prefetch(a.imaginary + at, for_writing);
  }
}

// L D of a panel: what its columns of L are multiplied by where they are taken from others.
struct Multipliers {
  AlignedNumbers real;
  AlignedNumbers imaginary;
  std::size_t height = 0;

  explicit Multipliers(std::size_t rows) : height(rows) {
    real.resize(panel * rows);
    imaginary.resize(panel * rows);
  }
  [[nodiscard]] BRENLOX_INLINE Number value(std::size_t row, std::size_t column) const {
    return {real.data()[column * height + row], imaginary.data()[column * height + row]};
  }
};

// Rows `row` to row + lanes of a panel's columns, from the matrix to L, given the columns' 1 / d; rows count
// from the panel's first one.
template <class Width>
BRENLOX_INLINE void eliminate_rows(const Panels& a, std::size_t first, std::size_t row,
                                   const std::array<Number, panel>& inverse, const Multipliers& multipliers) {
  std::array<Lanes<Width>, panel> l;
  BRENLOX_UNROLL
  for (std::size_t q = 0; q < panel; ++q) {
    const std::size_t at = (first + q) * a.height + row;
    l[q].load(a.real + at, a.imaginary + at);
    BRENLOX_UNROLL
    for (std::size_t p = 0; p < q; ++p) {
      l[q].subtract(multipliers.value(q, p), l[p]);
    }
    const std::size_t to = q * a.height + row;
    l[q].store(multipliers.real.data() + to, multipliers.imaginary.data() + to);
    l[q].multiply(inverse[q]);
    l[q].store(a.real + at, a.imaginary + at);
  }
}

// The same for the rows of the diagonal block; gives 1 / d, which the diagonal becomes.
template <class Width>
BRENLOX_INLINE std::array<Number, panel> eliminate_diagonal_block(const Panels& a, std::size_t first,
                                                                  const Multipliers& multipliers) {
  std::array<Number, panel> inverse;
  for (std::size_t q = 0; q < panel; ++q) {
    const std::size_t column = (first + q) * a.height;
    const std::size_t multiplier = q * a.height;
    for (std::size_t row = 0; row < panel; row += lanes<Width>) {
      Lanes<Width> x;
      x.load(a.real + column + row, a.imaginary + column + row);
      for (std::size_t p = 0; p < q; ++p) {
        Lanes<Width> l;
        const std::size_t at = (first + p) * a.height + row;
        l.load(a.real + at, a.imaginary + at);
        x.subtract(multipliers.value(q, p), l);
      }
      x.store(multipliers.real.data() + multiplier + row, multipliers.imaginary.data() + multiplier + row);
    }
    inverse[q] = reciprocal(multipliers.value(q, q));
    for (std::size_t row = 0; row < panel; row += lanes<Width>) {
      Lanes<Width> x;
      x.load(multipliers.real.data() + multiplier + row, multipliers.imaginary.data() + multiplier + row);
      x.multiply(inverse[q]);
      x.store(a.real + column + row, a.imaginary + column + row);
    }
  }
  for (std::size_t q = 0; q < panel; ++q) {
    a.real[(first + q) * a.height + q] = inverse[q].real;
    a.imaginary[(first + q) * a.height + q] = inverse[q].imaginary;
  }
  return inverse;
}

// Takes a panel from some columns of a later one, at as many rows as a register holds.
template <class Width>
BRENLOX_INLINE void update_tile(const Panels& a, std::size_t first, const Multipliers& multipliers,
                                std::size_t column, std::size_t row) {
  constexpr std::size_t columns = Width::columns;
  std::array<Lanes<Width>, columns> target;
  const std::size_t target_at = a.at(row, column);
  BRENLOX_UNROLL
  for (std::size_t t = 0; t < columns; ++t) {
    const std::size_t at = target_at + t * a.height;
    target[t].load(a.real + at, a.imaginary + at);
  }
  const double* l_real = a.real + a.at(row, first);
  const double* l_imaginary = a.imaginary + a.at(row, first);
  const double* real = multipliers.real.data() + column - first;
  const double* imaginary = multipliers.imaginary.data() + column - first;
  for (std::size_t p = 0; p < panel; ++p) {
    Lanes<Width> l;
    l.load(l_real, l_imaginary);
    BRENLOX_UNROLL
    for (std::size_t t = 0; t < columns; ++t) {
      target[t].subtract({real[t], imaginary[t]}, l);
    }
    l_real += a.height;
    l_imaginary += a.height;
    real += a.height;
    imaginary += a.height;
  }
  BRENLOX_UNROLL
  for (std::size_t t = 0; t < columns; ++t) {
    const std::size_t at = target_at + t * a.height;
    target[t].store(a.real + at, a.imaginary + at);
  }
}

// Takes an eliminated panel from a right side.
template <class Width>
BRENLOX_INLINE void eliminate_side(const Panels& a, std::size_t first, const Values& side) {
  std::array<Number, panel> x;
  for (std::size_t q = 0; q < panel; ++q) {
    x[q] = {side.real[first + q], side.imaginary[first + q]};
    for (std::size_t p = 0; p < q; ++p) {
      const std::size_t l = (first + p) * a.height + q;
      subtract_product(x[q], {a.real[l], a.imaginary[l]}, x[p]);
    }
    side.real[first + q] = x[q].real;
    side.imaginary[first + q] = x[q].imaginary;
  }
  for (std::size_t row = panel; row < a.height; row += lanes<Width>) {
    Lanes<Width> target;
    target.load(side.real + first + row, side.imaginary + first + row);
    BRENLOX_UNROLL
    for (std::size_t p = 0; p < panel; ++p) {
      Lanes<Width> l;
      const std::size_t at = (first + p) * a.height + row;
      l.load(a.real + at, a.imaginary + at);
      target.subtract(x[p], l);
    }
    target.store(side.real + first + row, side.imaginary + first + row);
  }
}

// Puts the entries of one panel into its rectangle. Columns behind the last unknown are those of a unit
// matrix.
struct MakeReady {
  const Panels& a;
  std::span<const std::size_t> diagonals;
  std::span<const std::complex<double>> entries;

  void operator()(std::size_t first) const {
    const std::size_t place = first * a.height;
    std::fill_n(a.real + place, panel * a.height, 0.0);
    std::fill_n(a.imaginary + place, panel * a.height, 0.0);
    for (std::size_t column = first; column < first + panel; ++column) {
      if (column * diagonals.size() >= entries.size()) {
        a.real[a.at(column, column)] = 1.0;
        continue;
      }
      for (std::size_t d = 0; d < diagonals.size(); ++d) {
        const std::size_t at = a.at(column + diagonals[d], column);
        a.real[at] = entries[column * diagonals.size() + d].real();
        a.imaginary[at] = entries[column * diagonals.size() + d].imag();
      }
    }
  }
};

template <class Width>
BRENLOX_INLINE void factor_panels(const Panels& a, const Values& side, const MakeReady& make_ready) {
  const Multipliers multipliers(a.height);
  std::size_t ready = 0;
  for (std::size_t first = 0; first < a.count; first += panel) {
    const std::size_t end = std::min(first + a.height, a.count);
    for (; ready < end; ready += panel) {
      make_ready(ready);
    }
    if (ready < a.count) {
      fetch_panel<1>(a, ready);
    }
    const std::array<Number, panel> inverse = eliminate_diagonal_block<Width>(a, first, multipliers);
    for (std::size_t row = panel; row < a.height; row += lanes<Width>) {
      eliminate_rows<Width>(a, first, row, inverse, multipliers);
    }
    for (std::size_t column = first + panel; column < end; column += Width::columns) {
      for (std::size_t row = column - column % lanes<Width>; row < first + a.height; row += lanes<Width>) {
        update_tile<Width>(a, first, multipliers, column, row);
      }
    }
    eliminate_side<Width>(a, first, side);
  }
}

// A right side from L^-1 b to the solution.
template <class Width>
BRENLOX_INLINE void substitute_back(const Factors& a, const Values& side) {
  for (std::size_t end = a.count; end > 0; end -= panel) {
    const std::size_t first = end - panel;
    if (first > 0) {
      fetch_panel<0>(a, first - panel);
    }
    std::array<Number, panel> x;
    for (std::size_t group = 0; group < panel; group += Width::columns) {
      std::array<Lanes<Width>, Width::columns> sums;
      for (std::size_t row = panel; row < a.height; row += lanes<Width>) {
        Lanes<Width> known;
        known.load(side.real + first + row, side.imaginary + first + row);
        BRENLOX_UNROLL
        for (std::size_t q = 0; q < Width::columns; ++q) {
          Lanes<Width> l;
          const std::size_t at = (first + group + q) * a.height + row;
          l.load(a.real + at, a.imaginary + at);
          sums[q].add(l, known);
        }
      }
      for (std::size_t q = 0; q < Width::columns; ++q) {
        x[group + q] = sums[q].sum();
      }
    }
    for (std::size_t q = panel; q-- > 0;) {
      const std::size_t column = (first + q) * a.height;
      const Number b = {side.real[first + q], side.imaginary[first + q]};
      Number value = product({a.real[column + q], a.imaginary[column + q]}, b);
      value.real -= x[q].real;
      value.imaginary -= x[q].imaginary;
      for (std::size_t p = q + 1; p < panel; ++p) {
        subtract_product(value, {a.real[column + p], a.imaginary[column + p]}, x[p]);
      }
      x[q] = value;
      side.real[first + q] = value.real;
      side.imaginary[first + q] = value.imaginary;
    }
  }
}

}  // namespace numerics::section
