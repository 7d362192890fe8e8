// register_lanes.h: complex numbers that are worked on together, as many as a processor's register holds.
//
// For procedures that are compiled once for each width of registers: all of them have to be inlined into one
// that is.
#pragma once
#include <array>
#include <cstddef>
#include <cstring>

#define BRENLOX_INLINE inline __attribute__((always_inline))
#define BRENLOX_UNROLL _Pragma("GCC unroll 8")

namespace numerics::section {

struct Number {
  double real = 0.0;
  double imaginary = 0.0;
};

// Of a right side, with `height` zeros behind it, or of several ones.
struct Values {
  double* real;
  double* imaginary;
};

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

template <class Width>
constexpr std::size_t lanes = sizeof(typename Width::Vector) / sizeof(double);

// Complex numbers in registers.
template <class Width>
struct Lanes {
  typename Width::Vector real = {};
  typename Width::Vector imaginary = {};

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
    const typename Width::Vector old_real = real;
    real = factor.real * old_real - factor.imaginary * imaginary;
    imaginary = factor.real * imaginary + factor.imaginary * old_real;
  }
  [[nodiscard]] BRENLOX_INLINE Number sum() const {
    Number result;
    for (std::size_t i = 0; i < lanes<Width>; ++i) {
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

}  // namespace numerics::section
