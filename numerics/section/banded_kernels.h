// banded_kernels.h: the procedures that work on a banded system, for the registers that the processor has.
#pragma once
#include <cstddef>

#include "numerics/section/banded_panels.h"
#include "numerics/section/banded_sides.h"
#include "numerics/section/registers.h"

namespace numerics::section {

struct Kernels {
  void (*factor)(const Panels&, const Values&, const MakeReady&);
  void (*substitute_back)(const Factors&, const Values&);
  void (*solve_sides)(const Factors&, const Values&, std::size_t, std::size_t, std::size_t);
  void (*add_products)(const Products&, std::size_t);
};

/// Those for these registers, or for the next narrower ones that the processor has.
const Kernels& kernels(Registers registers);

}  // namespace numerics::section

// NOLINTBEGIN(bugprone-macro-parentheses): an attribute has none
/// Defines the constant `name`: the kernels for registers of one width, compiled with an attribute.
#define BRENLOX_KERNELS(name, Width, ATTRIBUTE)                                                    \
  ATTRIBUTE void factor_##name(const Panels& a, const Values& side, const MakeReady& make_ready) { \
    factor_panels<Width>(a, side, make_ready);                                                     \
  }                                                                                                \
  ATTRIBUTE void substitute_back_##name(const Factors& a, const Values& side) {                    \
    substitute_back<Width>(a, side);                                                               \
  }                                                                                                \
  ATTRIBUTE void solve_sides_##name(const Factors& a, const Values& sides, std::size_t stride,     \
                                    std::size_t first, std::size_t second) {                       \
    solve_sides<Width>(a, sides, stride, first, second);                                           \
  }                                                                                                \
  ATTRIBUTE void add_products_##name(const Products& products, std::size_t count) {                \
    add_products<Width>(products, count);                                                          \
  }                                                                                                \
  constexpr Kernels name = {factor_##name, substitute_back_##name, solve_sides_##name, add_products_##name};
// NOLINTEND(bugprone-macro-parentheses)
