#include "numerics/section/banded_ldlt.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace numerics::section {

namespace {

// Columns eliminated together: each entry to their right is then loaded and stored once for all of them.
constexpr std::size_t panel = 4;
// Most rows updated at a time; lengths are rounded up, into the zeros behind each column.
constexpr std::size_t widest_strip = 4;

template <class Number>
struct ColumnsOf {
  Number* real;
  Number* imaginary;
  std::size_t count;
  std::size_t half_bandwidth;
  std::size_t stride;
};
using Columns = ColumnsOf<double>;
using Factors = ColumnsOf<const double>;

struct Multiplier {
  double real;
  double imaginary;
};

#define BRENLOX_INLINE inline __attribute__((always_inline))

// Numbers that are worked on together: a compiler's vector type of the width of a processor's registers.
struct NarrowRegisters {
  using Vector [[gnu::vector_size(16)]] = double;
};
struct WideRegisters {
  using Vector [[gnu::vector_size(32)]] = double;
};

// target -= sum over the sources of multiplier * source, over `length` rows or up to three more
template <class Registers, std::size_t sources>
BRENLOX_INLINE void subtract_columns(double* __restrict target_real, double* __restrict target_imaginary,
                                     const std::array<const double*, sources>& source_real,
                                     const std::array<const double*, sources>& source_imaginary,
                                     const std::array<Multiplier, sources>& multiplier, std::size_t length) {
  using Vector = typename Registers::Vector;
  for (std::size_t first = 0; first < length; first += sizeof(Vector) / sizeof(double)) {
    Vector real;
    Vector imaginary;
    std::memcpy(&real, target_real + first, sizeof real);
    std::memcpy(&imaginary, target_imaginary + first, sizeof imaginary);
    for (std::size_t s = 0; s < sources; ++s) {
      Vector from_real;
      Vector from_imaginary;
      std::memcpy(&from_real, source_real[s] + first, sizeof from_real);
      std::memcpy(&from_imaginary, source_imaginary[s] + first, sizeof from_imaginary);
      real -= multiplier[s].real * from_real;
      imaginary -= multiplier[s].real * from_imaginary;
      real += multiplier[s].imaginary * from_imaginary;
      imaginary -= multiplier[s].imaginary * from_real;
    }
    std::memcpy(target_real + first, &real, sizeof real);
    std::memcpy(target_imaginary + first, &imaginary, sizeof imaginary);
  }
}

// Turns an updated column into a column of L; its diagonal becomes 1 / d.
BRENLOX_INLINE Multiplier scale_column(double* __restrict real, double* __restrict imaginary,
                                       std::size_t length) {
  const Multiplier d = {real[0], imaginary[0]};
  const double square = d.real * d.real + d.imaginary * d.imaginary;
  const Multiplier inverse = {d.real / square, -d.imaginary / square};
  for (std::size_t k = 1; k < length; ++k) {
    const double re = real[k];
    const double im = imaginary[k];
    real[k] = inverse.real * re - inverse.imaginary * im;
    imaginary[k] = inverse.real * im + inverse.imaginary * re;
  }
  real[0] = inverse.real;
  imaginary[0] = inverse.imaginary;
  return d;
}

// d L(row, column), the multiplier with which a column of L is taken from the column of that row
BRENLOX_INLINE Multiplier multiplier_of(const Columns& a, std::size_t column, std::size_t below,
                                        Multiplier d) {
  const double re = a.real[column * a.stride + below];
  const double im = a.imaginary[column * a.stride + below];
  return {d.real * re - d.imaginary * im, d.real * im + d.imaginary * re};
}

template <class Registers>
BRENLOX_INLINE void factor_columns(const Columns& a) {
  for (std::size_t first = 0; first < a.count; first += panel) {
    const std::size_t end = std::min(first + panel, a.count);
    std::array<Multiplier, panel> d = {};
    for (std::size_t column = first; column < end; ++column) {
      d[column - first] =
          scale_column(a.real + column * a.stride, a.imaginary + column * a.stride, a.half_bandwidth + 1);
      for (std::size_t target = column + 1; target < end; ++target) {
        const std::size_t below = target - column;
        const std::size_t source = column * a.stride + below;
        subtract_columns<Registers, 1>(a.real + target * a.stride, a.imaginary + target * a.stride,
                                       {a.real + source}, {a.imaginary + source},
                                       {multiplier_of(a, column, below, d[column - first])},
                                       a.half_bandwidth + 1 - std::min(below, a.half_bandwidth));
      }
    }
    if (end - first < panel) {
      return;  // the last columns: nothing is to their right
    }
    const std::size_t reach = std::min(first + panel - 1 + a.half_bandwidth, a.count - 1);
    for (std::size_t target = end; target <= reach; ++target) {
      std::array<const double*, panel> source_real = {};
      std::array<const double*, panel> source_imaginary = {};
      std::array<Multiplier, panel> multiplier = {};
      for (std::size_t p = 0; p < panel; ++p) {
        const std::size_t below = target - first - p;
        source_real[p] = a.real + (first + p) * a.stride + below;
        source_imaginary[p] = a.imaginary + (first + p) * a.stride + below;
        multiplier[p] = multiplier_of(a, first + p, below, d[p]);
      }
      subtract_columns<Registers, panel>(a.real + target * a.stride, a.imaginary + target * a.stride,
                                         source_real, source_imaginary, multiplier,
                                         first + panel + a.half_bandwidth - target);
    }
  }
}

// Sum over the rows below the diagonal of L(row, column) times a vector that begins there.
template <class Registers>
BRENLOX_INLINE Multiplier column_product(const double* column_real, const double* column_imaginary,
                                         const double* real, const double* imaginary, std::size_t length) {
  using Vector = typename Registers::Vector;
  constexpr std::size_t width = sizeof(Vector) / sizeof(double);
  Vector sum_real = {};
  Vector sum_imaginary = {};
  for (std::size_t first = 0; first < length; first += width) {
    Vector l_real;
    Vector l_imaginary;
    Vector x_real;
    Vector x_imaginary;
    std::memcpy(&l_real, column_real + first, sizeof l_real);
    std::memcpy(&l_imaginary, column_imaginary + first, sizeof l_imaginary);
    std::memcpy(&x_real, real + first, sizeof x_real);
    std::memcpy(&x_imaginary, imaginary + first, sizeof x_imaginary);
    sum_real += l_real * x_real;
    sum_real -= l_imaginary * x_imaginary;
    sum_imaginary += l_real * x_imaginary;
    sum_imaginary += l_imaginary * x_real;
  }
  Multiplier sum = {0.0, 0.0};
  for (std::size_t i = 0; i < width; ++i) {
    sum.real += sum_real[i];
    sum.imaginary += sum_imaginary[i];
  }
  return sum;
}

// Replaces a right side, with `widest_strip` zeros behind it, by the solution.
template <class Registers>
BRENLOX_INLINE void solve_columns(const Factors& a, double* real, double* imaginary) {
  for (std::size_t column = 0; column < a.count; ++column) {
    const double* l_real = a.real + column * a.stride;
    const double* l_imaginary = a.imaginary + column * a.stride;
    const double re = real[column];
    const double im = imaginary[column];
    subtract_columns<Registers, 1>(real + column + 1, imaginary + column + 1, {l_real + 1}, {l_imaginary + 1},
                                   {Multiplier{re, im}}, std::min(a.half_bandwidth, a.count - 1 - column));
    real[column] = re * l_real[0] - im * l_imaginary[0];
    imaginary[column] = re * l_imaginary[0] + im * l_real[0];
  }
  for (std::size_t column = a.count; column-- > 0;) {
    const Multiplier sum = column_product<Registers>(
        a.real + column * a.stride + 1, a.imaginary + column * a.stride + 1, real + column + 1,
        imaginary + column + 1, std::min(a.half_bandwidth, a.count - 1 - column));
    real[column] -= sum.real;
    imaginary[column] -= sum.imaginary;
  }
}

struct Sides {
  double* real;
  double* imaginary;
  std::size_t stride;
};

// A strip of right sides, as wide as a register, of one unknown.
template <class Registers>
struct Strip {
  typename Registers::Vector real;
  typename Registers::Vector imaginary;

  BRENLOX_INLINE static Strip at(const Sides& sides, std::size_t place) {
    Strip strip;
    std::memcpy(&strip.real, sides.real + place, sizeof strip.real);
    std::memcpy(&strip.imaginary, sides.imaginary + place, sizeof strip.imaginary);
    return strip;
  }
  BRENLOX_INLINE void put(const Sides& sides, std::size_t place) const {
    std::memcpy(sides.real + place, &real, sizeof real);
    std::memcpy(sides.imaginary + place, &imaginary, sizeof imaginary);
  }
  BRENLOX_INLINE void subtract(double l_real, double l_imaginary, const Strip& from) {
    real -= l_real * from.real;
    imaginary -= l_real * from.imaginary;
    real += l_imaginary * from.imaginary;
    imaginary -= l_imaginary * from.real;
  }
};

// One strip of right sides through all columns, a panel at a time: what a panel takes from an unknown, or an
// unknown from a panel, stays in registers.
template <class Registers>
BRENLOX_INLINE void solve_strip(const Factors& a, const Sides& sides, std::size_t strip,
                                std::size_t first_column) {
  using Part = Strip<Registers>;
  const auto place = [&](std::size_t unknown) { return unknown * sides.stride + strip; };
  const auto l = [&](std::size_t row, std::size_t column) { return column * a.stride + row - column; };
  const auto last_row = [&](std::size_t column) { return std::min(column + a.half_bandwidth, a.count - 1); };
  const std::size_t first_panel = first_column - first_column % panel;
  for (std::size_t first = first_panel; first < a.count; first += panel) {
    const std::size_t end = std::min(first + panel, a.count);
    std::array<Part, panel> x;
    for (std::size_t p = 0; p < end - first; ++p) {
      x[p] = Part::at(sides, place(first + p));
      for (std::size_t q = 0; q < p; ++q) {  // zeros behind a column where the band is narrower than a panel
        x[p].subtract(a.real[l(first + p, first + q)], a.imaginary[l(first + p, first + q)], x[q]);
      }
      x[p].put(sides, place(first + p));
    }
    if (end - first < panel) {
      break;
    }
    for (std::size_t row = end; row <= last_row(end - 1); ++row) {
      Part target = Part::at(sides, place(row));
      for (std::size_t p = 0; p < panel; ++p) {
        target.subtract(a.real[l(row, first + p)], a.imaginary[l(row, first + p)], x[p]);
      }
      target.put(sides, place(row));
    }
  }
  for (std::size_t end = a.count; end > 0;) {
    const std::size_t first = (end - 1) - (end - 1) % panel;
    std::array<Part, panel> x;
    for (std::size_t p = 0; p < end - first; ++p) {
      const Part b = Part::at(sides, place(first + p));
      const double re = a.real[(first + p) * a.stride];  // 1 / d
      const double im = a.imaginary[(first + p) * a.stride];
      x[p].real = re * b.real - im * b.imaginary;
      x[p].imaginary = re * b.imaginary + im * b.real;
    }
    if (end - first == panel) {
      for (std::size_t row = end; row <= last_row(end - 1); ++row) {
        const Part known = Part::at(sides, place(row));
        for (std::size_t p = 0; p < panel; ++p) {
          x[p].subtract(a.real[l(row, first + p)], a.imaginary[l(row, first + p)], known);
        }
      }
    }
    for (std::size_t p = end - first; p-- > 0;) {
      for (std::size_t q = p + 1; q < end - first; ++q) {
        x[p].subtract(a.real[l(first + q, first + p)], a.imaginary[l(first + q, first + p)], x[q]);
      }
      x[p].put(sides, place(first + p));
    }
    end = first;
  }
}

void factor_on_any_processor(const Columns& a) { factor_columns<NarrowRegisters>(a); }
void solve_on_any_processor(const Factors& a, double* real, double* imaginary) {
  solve_columns<NarrowRegisters>(a, real, imaginary);
}

void solve_strip_on_any_processor(const Factors& a, const Sides& sides, std::size_t strip,
                                  std::size_t first_column) {
  solve_strip<NarrowRegisters>(a, sides, strip, first_column);
  solve_strip<NarrowRegisters>(a, sides, strip + widest_strip / 2, first_column);
}

#if defined(__x86_64__) && defined(__GNUC__)
// Twice as fast where the processor has the wider registers; which it is, is known when the program runs.
__attribute__((target("avx2,fma"))) void factor_on_wide_registers(const Columns& a) {
  factor_columns<WideRegisters>(a);
}
__attribute__((target("avx2,fma"))) void solve_on_wide_registers(const Factors& a, double* real,
                                                                 double* imaginary) {
  solve_columns<WideRegisters>(a, real, imaginary);
}
__attribute__((target("avx2,fma"))) void solve_strip_on_wide_registers(const Factors& a, const Sides& sides,
                                                                       std::size_t strip,
                                                                       std::size_t first_column) {
  solve_strip<WideRegisters>(a, sides, strip, first_column);
}

bool has_wide_registers() {
  return __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("fma") != 0;
}
#else
void factor_on_wide_registers(const Columns& a) { factor_columns<NarrowRegisters>(a); }
void solve_on_wide_registers(const Factors& a, double* real, double* imaginary) {
  solve_columns<NarrowRegisters>(a, real, imaginary);
}

void solve_strip_on_wide_registers(const Factors& a, const Sides& sides, std::size_t strip,
                                   std::size_t first_column) {
  solve_strip_on_any_processor(a, sides, strip, first_column);
}

bool has_wide_registers() { return false; }
#endif

#undef BRENLOX_INLINE

}  // namespace

RightSides::RightSides(std::size_t unknowns, std::size_t count)
    : count_(count),
      stride_((count + widest_strip - 1) / widest_strip * widest_strip),
      real_(unknowns * stride_),
      imaginary_(unknowns * stride_) {}

void BandedLdlt::reset(std::size_t unknowns, std::size_t half_bandwidth) {
  unknowns_ = unknowns;
  half_bandwidth_ = half_bandwidth;
  // Behind each column zeros for the other columns of a panel, which reach further down, and for the last
  // strip.
  stride_ = half_bandwidth + 1 + panel + widest_strip;
  real_.assign(unknowns * stride_, 0.0);
  imaginary_.assign(unknowns * stride_, 0.0);
}

void BandedLdlt::factor() {
  const Columns columns = {real_.data(), imaginary_.data(), unknowns_, half_bandwidth_, stride_};
  if (has_wide_registers()) {
    factor_on_wide_registers(columns);
  } else {
    factor_on_any_processor(columns);
  }
}

void BandedLdlt::solve(std::span<std::complex<double>> right_side) const {
  const Factors factors = {real_.data(), imaginary_.data(), unknowns_, half_bandwidth_, stride_};
  std::vector<double> real(unknowns_ + widest_strip);
  std::vector<double> imaginary(real.size());
  for (std::size_t i = 0; i < unknowns_; ++i) {
    real[i] = right_side[i].real();
    imaginary[i] = right_side[i].imag();
  }
  if (has_wide_registers()) {
    solve_on_wide_registers(factors, real.data(), imaginary.data());
  } else {
    solve_on_any_processor(factors, real.data(), imaginary.data());
  }
  for (std::size_t i = 0; i < unknowns_; ++i) {
    right_side[i] = {real[i], imaginary[i]};
  }
}

// The first unknown at which one of a strip of right sides is not zero; `unknowns` if there is none.
std::size_t BandedLdlt::first_unknown(const RightSides& sides, std::size_t strip) const {
  const auto is_zero = [&](const std::vector<double>& values, std::size_t unknown) {
    const auto first = values.begin() + static_cast<std::ptrdiff_t>(unknown * sides.stride_ + strip);
    return std::all_of(first, first + widest_strip, [](double value) { return value == 0.0; });
  };
  std::size_t unknown = 0;
  while (unknown < unknowns_ && is_zero(sides.real_, unknown) && is_zero(sides.imaginary_, unknown)) {
    ++unknown;
  }
  return unknown;
}

void BandedLdlt::solve(RightSides& sides) const {
  const Factors factors = {real_.data(), imaginary_.data(), unknowns_, half_bandwidth_, stride_};
  const Sides all = {sides.real_.data(), sides.imaginary_.data(), sides.stride_};
  const auto solve_strip_here =
      has_wide_registers() ? solve_strip_on_wide_registers : solve_strip_on_any_processor;
  for (std::size_t strip = 0; strip < sides.stride_; strip += widest_strip) {
    const std::size_t first = first_unknown(sides, strip);
    if (first < unknowns_) {
      solve_strip_here(factors, all, strip, first);
    }
  }
}

}  // namespace numerics::section
