// blas_threads.h: the threads of the BLAS that is loaded, which has no work for more than one.
#pragma once

namespace numerics::occam_inversion {

/// The threads are ours, over panels: those of a BLAS sum in another order for each number of them, and take
/// the cores from one another. To be called in each thread that multiplies.
void use_one_blas_thread();

/// A BLAS starts its threads when it is loaded, and they look for work without rest for some hundredths of a
/// second. For the start of a short program, while nothing is multiplied.
void end_waiting_blas_threads();

}  // namespace numerics::occam_inversion
