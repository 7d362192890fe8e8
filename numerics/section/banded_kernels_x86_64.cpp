// Several times as fast where the processor has wider registers; which it has, is known when the program
// runs.
#include "numerics/section/banded_kernels.h"

namespace numerics::section {

namespace {
BRENLOX_KERNELS(narrow, NarrowRegisters, )
BRENLOX_KERNELS(wide, WideRegisters, __attribute__((target("avx2,fma"))))
BRENLOX_KERNELS(widest, WidestRegisters, __attribute__((target("avx2,fma,avx512f"))))
}  // namespace

const Kernels& kernels(Registers registers) {
  if (registers == Registers::widest && __builtin_cpu_supports("avx512f") != 0) {
    return widest;
  }
  const bool has_wide = __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("fma") != 0;
  return registers != Registers::narrow && has_wide ? wide : narrow;
}

}  // namespace numerics::section
