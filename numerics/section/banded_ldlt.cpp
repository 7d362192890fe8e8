#include "numerics/section/banded_ldlt.h"

#include <array>
#include <cstring>
#include <utility>

namespace numerics::section {

namespace {

// Columns eliminated together, and rows that lie in one cache line. The columns of a panel are a rectangle of
// its own, from the first row of its diagonal block to the last one that elimination reaches, rounded up to
// whole panels: any row is as aligned in one column as in another. Rows of the rectangle that are outside the
// band are zero below it; above the diagonal there is anything.
constexpr std::size_t panel = 8;

std::size_t round_up(std::size_t count) { return (count + panel - 1) / panel * panel; }
constexpr std::size_t panel_of(std::size_t column) { return column - column % panel; }

constexpr std::size_t no_unknown = std::numeric_limits<std::size_t>::max();

template <class Number>
struct PanelsOf {
  Number* real;
  Number* imaginary;
  std::size_t count;  // of columns, whole panels
  std::size_t half_bandwidth;
  std::size_t height;  // of the rectangles

  [[nodiscard]] std::size_t at(std::size_t row, std::size_t column) const {
    return column * height + row - panel_of(column);
  }
};
using Panels = PanelsOf<double>;
using Factors = PanelsOf<const double>;

struct Number {
  double real = 0.0;
  double imaginary = 0.0;
};

// Of a right side, with `height` zeros behind it, or of several ones.
struct Values {
  double* real;
  double* imaginary;
};

#define BRENLOX_INLINE inline __attribute__((always_inline))
#define BRENLOX_UNROLL _Pragma("GCC unroll 8")

// Numbers that are worked on together: a compiler's vector type of the width of a processor's registers; and
// how many columns or vectors of right sides leave room for the rest in as many registers as there are.
struct NarrowRegisters {
  using Vector [[gnu::vector_size(16)]] = double;
  static constexpr std::size_t columns = 4;
  static constexpr std::size_t side_rows = 1;
};
struct WideRegisters {
  using Vector [[gnu::vector_size(32)]] = double;
  static constexpr std::size_t columns = 4;
  static constexpr std::size_t side_rows = 2;
};
struct WidestRegisters {
  using Vector [[gnu::vector_size(64)]] = double;
  static constexpr std::size_t columns = 8;
  static constexpr std::size_t side_rows = 4;
};

template <class Registers>
constexpr std::size_t lanes = sizeof(typename Registers::Vector) / sizeof(double);

// Complex numbers in registers.
template <class Registers>
struct Lanes {
  typename Registers::Vector real = {};
  typename Registers::Vector imaginary = {};

  BRENLOX_INLINE void load(const double* from_real, const double* from_imaginary) {
    std::memcpy(&real, from_real, sizeof real);
    std::memcpy(&imaginary, from_imaginary, sizeof imaginary);
  }
  BRENLOX_INLINE void store(double* to_real, double* to_imaginary) const {
    std::memcpy(to_real, &real, sizeof real);
    std::memcpy(to_imaginary, &imaginary, sizeof imaginary);
  }
  BRENLOX_INLINE void subtract(const Number& factor, const Lanes& other) {
    real -= factor.real * other.real;
    imaginary -= factor.real * other.imaginary;
    real += factor.imaginary * other.imaginary;
    imaginary -= factor.imaginary * other.real;
  }
  template <class Factor>
  BRENLOX_INLINE void add(const Factor& factor, const Lanes& other) {
    real += factor.real * other.real;
    imaginary += factor.real * other.imaginary;
    real -= factor.imaginary * other.imaginary;
    imaginary += factor.imaginary * other.real;
  }
  BRENLOX_INLINE void multiply(const Number& factor) {
    const typename Registers::Vector old_real = real;
    real = factor.real * old_real - factor.imaginary * imaginary;
    imaginary = factor.real * imaginary + factor.imaginary * old_real;
  }
  [[nodiscard]] BRENLOX_INLINE Number sum() const {
    Number result;
    for (std::size_t i = 0; i < lanes<Registers>; ++i) {
      result.real += real[i];
      result.imaginary += imaginary[i];
    }
    return result;
  }
};

BRENLOX_INLINE Number product(const Number& a, const Number& b) {
  return {a.real * b.real - a.imaginary * b.imaginary, a.real * b.imaginary + a.imaginary * b.real};
}

BRENLOX_INLINE void subtract_product(Number& from, const Number& a, const Number& b) {
  const Number c = product(a, b);
  from.real -= c.real;
  from.imaginary -= c.imaginary;
}

BRENLOX_INLINE Number reciprocal(const Number& z) {
  const double square = z.real * z.real + z.imaginary * z.imaginary;
  return {z.real / square, -z.imaginary / square};
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
template <class Registers>
BRENLOX_INLINE void eliminate_rows(const Panels& a, std::size_t first, std::size_t row,
                                   const std::array<Number, panel>& inverse, const Multipliers& multipliers) {
  std::array<Lanes<Registers>, panel> l;
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
template <class Registers>
BRENLOX_INLINE std::array<Number, panel> eliminate_diagonal_block(const Panels& a, std::size_t first,
                                                                  const Multipliers& multipliers) {
  std::array<Number, panel> inverse;
  for (std::size_t q = 0; q < panel; ++q) {
    const std::size_t column = (first + q) * a.height;
    const std::size_t multiplier = q * a.height;
    for (std::size_t row = 0; row < panel; row += lanes<Registers>) {
      Lanes<Registers> x;
      x.load(a.real + column + row, a.imaginary + column + row);
      for (std::size_t p = 0; p < q; ++p) {
        Lanes<Registers> l;
        const std::size_t at = (first + p) * a.height + row;
        l.load(a.real + at, a.imaginary + at);
        x.subtract(multipliers.value(q, p), l);
      }
      x.store(multipliers.real.data() + multiplier + row, multipliers.imaginary.data() + multiplier + row);
    }
    inverse[q] = reciprocal(multipliers.value(q, q));
    for (std::size_t row = 0; row < panel; row += lanes<Registers>) {
      Lanes<Registers> x;
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
template <class Registers>
BRENLOX_INLINE void update_tile(const Panels& a, std::size_t first, const Multipliers& multipliers,
                                std::size_t column, std::size_t row) {
  constexpr std::size_t columns = Registers::columns;
  std::array<Lanes<Registers>, columns> target;
  BRENLOX_UNROLL
  for (std::size_t t = 0; t < columns; ++t) {
    const std::size_t at = a.at(row, column) + t * a.height;
    target[t].load(a.real + at, a.imaginary + at);
  }
  for (std::size_t p = 0; p < panel; ++p) {
    Lanes<Registers> l;
    const std::size_t at = a.at(row, first) + p * a.height;
    l.load(a.real + at, a.imaginary + at);
    BRENLOX_UNROLL
    for (std::size_t t = 0; t < columns; ++t) {
      target[t].subtract(multipliers.value(column + t - first, p), l);
    }
  }
  BRENLOX_UNROLL
  for (std::size_t t = 0; t < columns; ++t) {
    const std::size_t at = a.at(row, column) + t * a.height;
    target[t].store(a.real + at, a.imaginary + at);
  }
}

// Takes an eliminated panel from a right side.
template <class Registers>
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
  for (std::size_t row = panel; row < a.height; row += lanes<Registers>) {
    Lanes<Registers> target;
    target.load(side.real + first + row, side.imaginary + first + row);
    BRENLOX_UNROLL
    for (std::size_t p = 0; p < panel; ++p) {
      Lanes<Registers> l;
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

template <class Registers>
BRENLOX_INLINE void factor_panels(const Panels& a, const Values& side, const MakeReady& make_ready) {
  const Multipliers multipliers(a.height);
  std::size_t ready = 0;
  for (std::size_t first = 0; first < a.count; first += panel) {
    const std::size_t end = std::min(first + a.height, a.count);
    for (; ready < end; ready += panel) {
      make_ready(ready);
    }
    const std::array<Number, panel> inverse = eliminate_diagonal_block<Registers>(a, first, multipliers);
    for (std::size_t row = panel; row < a.height; row += lanes<Registers>) {
      eliminate_rows<Registers>(a, first, row, inverse, multipliers);
    }
    for (std::size_t column = first + panel; column < end; column += Registers::columns) {
      for (std::size_t row = column - column % lanes<Registers>; row < first + a.height;
           row += lanes<Registers>) {
        update_tile<Registers>(a, first, multipliers, column, row);
      }
    }
    eliminate_side<Registers>(a, first, side);
  }
}

// A right side from L^-1 b to the solution.
template <class Registers>
BRENLOX_INLINE void substitute_back(const Factors& a, const Values& side) {
  for (std::size_t end = a.count; end > 0; end -= panel) {
    const std::size_t first = end - panel;
    std::array<Number, panel> x;
    for (std::size_t group = 0; group < panel; group += Registers::columns) {
      std::array<Lanes<Registers>, Registers::columns> sums;
      for (std::size_t row = panel; row < a.height; row += lanes<Registers>) {
        Lanes<Registers> known;
        known.load(side.real + first + row, side.imaginary + first + row);
        BRENLOX_UNROLL
        for (std::size_t q = 0; q < Registers::columns; ++q) {
          Lanes<Registers> l;
          const std::size_t at = (first + group + q) * a.height + row;
          l.load(a.real + at, a.imaginary + at);
          sums[q].add(l, known);
        }
      }
      for (std::size_t q = 0; q < Registers::columns; ++q) {
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

// Some vectors of right sides, and a few unknowns of theirs at a time, which stay in registers until they are
// done: each unknown before them, or behind them, is then read once for all of these.
template <class Registers, std::size_t vectors>
class SideStrip {
 public:
  BRENLOX_INLINE SideStrip(const Factors& a, const Values& sides, std::size_t stride)
      : a_(a), sides_(sides), stride_(stride) {}

  /// L^-1, of the unknowns from `first` to `end`; those before `start` have no values.
  BRENLOX_INLINE void eliminate(std::size_t start, std::size_t first, std::size_t end) const {
    for (std::size_t row = first; row < end; row += rows) {
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

  static constexpr std::size_t rows = Registers::side_rows;

 private:
  using Row = std::array<Lanes<Registers>, vectors>;
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
      const std::size_t at = unknown * stride_ + v * lanes<Registers>;
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
        const std::size_t at = (first + p) * stride_ + v * lanes<Registers>;
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
template <class Registers>
BRENLOX_INLINE void solve_sides(const Factors& a, const Values& sides, std::size_t stride, std::size_t first,
                                std::size_t second) {
  constexpr std::size_t vectors = RightSides::strip / lanes<Registers>;
  const SideStrip<Registers, vectors> one(a, sides, stride);
  if constexpr (vectors == 1) {
    if (second != no_unknown) {
      const SideStrip<Registers, 2> both(a, sides, stride);
      const std::size_t start = panel_of(std::min(first, second));
      const std::size_t together = first < second ? panel_of(second) : start;
      one.eliminate(start, start, together);
      both.eliminate(start, together, a.count);
      both.substitute_back();
      return;
    }
  } else if (second != no_unknown) {
    const Values other = {sides.real + RightSides::strip, sides.imaginary + RightSides::strip};
    const SideStrip<Registers, vectors> two(a, other, stride);
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

template <class Registers>
BRENLOX_INLINE void add_products(const Products& products, std::size_t count) {
  for (std::size_t i = 0; i < count; i += lanes<Registers>) {
    Lanes<Registers> sum;
    sum.load(products.sums.real + i, products.sums.imaginary + i);
    BRENLOX_UNROLL
    for (std::size_t k = 0; k < products.factors.size(); ++k) {
      Lanes<Registers> value;
      value.load(products.values[k].real + i, products.values[k].imaginary + i);
      sum.add(products.factors[k], value);
    }
    sum.store(products.sums.real + i, products.sums.imaginary + i);
  }
}

// The procedures for registers of one width.
struct Kernels {
  void (*factor)(const Panels&, const Values&, const MakeReady&);
  void (*substitute_back)(const Factors&, const Values&);
  void (*solve_sides)(const Factors&, const Values&, std::size_t, std::size_t, std::size_t);
  void (*add_products)(const Products&, std::size_t);
};

#define BRENLOX_KERNELS(name, Registers, ATTRIBUTE)                                                \
  ATTRIBUTE void factor_##name(const Panels& a, const Values& side, const MakeReady& make_ready) { \
    factor_panels<Registers>(a, side, make_ready);                                                 \
  }                                                                                                \
  ATTRIBUTE void substitute_back_##name(const Factors& a, const Values& side) {                    \
    substitute_back<Registers>(a, side);                                                           \
  }                                                                                                \
  ATTRIBUTE void solve_sides_##name(const Factors& a, const Values& sides, std::size_t stride,     \
                                    std::size_t first, std::size_t second) {                       \
    solve_sides<Registers>(a, sides, stride, first, second);                                       \
  }                                                                                                \
  ATTRIBUTE void add_products_##name(const Products& products, std::size_t count) {                \
    add_products<Registers>(products, count);                                                      \
  }                                                                                                \
  constexpr Kernels name = {factor_##name, substitute_back_##name, solve_sides_##name, add_products_##name};

BRENLOX_KERNELS(narrow, NarrowRegisters, )

#if defined(__x86_64__) && defined(__GNUC__)
// Several times as fast where the processor has wider registers; which it has, is known when the program
// runs.
BRENLOX_KERNELS(wide, WideRegisters, __attribute__((target("avx2,fma"))))
BRENLOX_KERNELS(widest, WidestRegisters, __attribute__((target("avx2,fma,avx512f"))))

const Kernels& kernels() {
  if (__builtin_cpu_supports("avx512f") != 0) {
    return widest;
  }
  return __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("fma") != 0 ? wide : narrow;
}
#else
const Kernels& kernels() { return narrow; }
#endif

#undef BRENLOX_KERNELS
#undef BRENLOX_UNROLL
#undef BRENLOX_INLINE

}  // namespace

void RightSides::reset(std::size_t unknowns, std::size_t count) {
  const std::size_t strips = (count + strip - 1) / strip;
  stride_ = strips * strip;
  const std::size_t size = round_up(unknowns) * stride_;
  for (AlignedNumbers* part : {&real_, &imaginary_}) {
    part->resize(size);
    std::fill_n(part->data(), size, 0.0);
  }
  first_unknown_.assign(strips, no_unknown);
}

void RightSides::add_products(const std::array<std::complex<double>, 4>& factors,
                              const std::array<std::size_t, 4>& unknowns, double* real_sums,
                              double* imaginary_sums) const {
  Products products = {{}, {}, {real_sums, imaginary_sums}};
  for (std::size_t i = 0; i < factors.size(); ++i) {
    products.factors[i] = {factors[i].real(), factors[i].imag()};
    const std::size_t at = unknowns[i] * stride_;
    products.values[i] = {real_.data() + at, imaginary_.data() + at};
  }
  kernels().add_products(products, stride_);
}

void BandedLdlt::reset(std::size_t unknowns, std::vector<std::size_t> diagonals) {
  unknowns_ = unknowns;
  diagonals_ = std::move(diagonals);
  half_bandwidth_ = diagonals_.back();
  entries_.assign(unknowns * diagonals_.size(), {});
  const std::size_t size = round_up(unknowns) * round_up(panel + half_bandwidth_);
  real_.resize(size);
  imaginary_.resize(size);
}

void BandedLdlt::factor_and_solve(std::span<std::complex<double>> right_side) {
  const std::size_t columns = round_up(unknowns_);
  const std::size_t height = round_up(panel + half_bandwidth_);
  const Panels panels = {real_.data(), imaginary_.data(), columns, half_bandwidth_, height};
  AlignedNumbers real;
  AlignedNumbers imaginary;
  real.resize(columns + height);
  imaginary.resize(columns + height);
  std::fill_n(real.data() + unknowns_, columns + height - unknowns_, 0.0);
  std::fill_n(imaginary.data() + unknowns_, columns + height - unknowns_, 0.0);
  for (std::size_t i = 0; i < unknowns_; ++i) {
    real.data()[i] = right_side[i].real();
    imaginary.data()[i] = right_side[i].imag();
  }
  const Values side = {real.data(), imaginary.data()};
  kernels().factor(panels, side, {panels, diagonals_, entries_});
  kernels().substitute_back({real_.data(), imaginary_.data(), columns, half_bandwidth_, height}, side);
  for (std::size_t i = 0; i < unknowns_; ++i) {
    right_side[i] = {side.real[i], side.imaginary[i]};
  }
}

void BandedLdlt::solve(RightSides& sides) const {
  const Factors factors = {real_.data(), imaginary_.data(), round_up(unknowns_), half_bandwidth_,
                           round_up(panel + half_bandwidth_)};
  const std::vector<std::size_t>& first = sides.first_unknown_;
  for (std::size_t i = 0; i < first.size(); i += 2) {
    const Values strips = {sides.real_.data() + i * RightSides::strip,
                           sides.imaginary_.data() + i * RightSides::strip};
    const std::size_t second = i + 1 < first.size() ? first[i + 1] : no_unknown;
    kernels().solve_sides(factors, strips, sides.stride_, first[i], second);
  }
}

}  // namespace numerics::section
