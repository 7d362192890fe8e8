// Where nothing is known of the processor.
#include "numerics/section/banded_kernels.h"

namespace numerics::section {

namespace {
BRENLOX_KERNELS(narrow, NarrowRegisters, )
}  // namespace

const Kernels& kernels(Registers /*registers*/) { return narrow; }

}  // namespace numerics::section
