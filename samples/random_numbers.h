// random_numbers.h: random numbers that are the same on every platform.
//
// The standard fixes the engine but leaves the distributions to each library, so these are our own.
#pragma once
#include <cstdint>
#include <initializer_list>
#include <random>

namespace Module_samples {

class RandomNumbers {
 public:
  explicit RandomNumbers(std::initializer_list<std::uint32_t> seeds) {
    std::seed_seq sequence(seeds);
    engine_.seed(sequence);
  }

  /// Evenly spread over 0 (included) to 1 (not included).
  double uniform() { return static_cast<double>(engine_() >> 11U) * 0x1p-53; }

  /// Mean 0, standard deviation 1: the sum of twelve uniform numbers less 6, which needs no function whose
  /// last digit depends on the platform. Cut off at 6 deviations.
  double normal() {
    double sum = -6.0;
    for (int term = 0; term < 12; ++term) {
      sum += uniform();
    }
    return sum;
  }

 private:
  std::mt19937_64 engine_;
};

}  // namespace Module_samples
