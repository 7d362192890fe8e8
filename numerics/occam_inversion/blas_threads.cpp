#include "numerics/occam_inversion/blas_threads.h"

// Of the BLAS that is loaded, or null: OpenBLAS has its own threads, those of OpenMP have them by caller.
extern "C" {
__attribute__((weak)) void openblas_set_num_threads(int count);
__attribute__((weak)) void omp_set_num_threads(int count);
__attribute__((weak)) int blas_thread_shutdown_();
}

namespace numerics::occam_inversion {

void use_one_blas_thread() {
  [[maybe_unused]] static const bool of_the_process = [] {
    if (openblas_set_num_threads != nullptr) {
      openblas_set_num_threads(1);
    }
    return true;
  }();
  [[maybe_unused]] thread_local const bool of_the_caller = [] {
    if (omp_set_num_threads != nullptr) {
      omp_set_num_threads(1);
    }
    return true;
  }();
}

void end_waiting_blas_threads() {
  if (blas_thread_shutdown_ != nullptr) {
    blas_thread_shutdown_();
  }
}

}  // namespace numerics::occam_inversion
