// aligned_numbers.h: memory for numbers that are worked on in registers.
#pragma once
#include <cstddef>
#include <memory>
#include <new>

namespace numerics::section {

/// Numbers at the beginning of a cache line, so that no register is loaded from two of them. Memory only
/// grows, and what is in it after a resize is anything.
class AlignedNumbers {
 public:
  void resize(std::size_t size) {
    if (size > size_) {
      numbers_.reset(static_cast<double*>(::operator new[](size * sizeof(double), line)));
      size_ = size;
    }
  }
  [[nodiscard]] double* data() const { return numbers_.get(); }

 private:
  static constexpr std::align_val_t line{64};
  struct Free {
    void operator()(double* numbers) const { ::operator delete[](numbers, line); }
  };
  std::unique_ptr<double[], Free> numbers_;
  std::size_t size_ = 0;
};

}  // namespace numerics::section
