// work_limit.h: a limit on the iterations of an inversion, so that no table takes long.
#pragma once
#include <functional>
#include <utility>

namespace numerics::rhoplus {

/// Counts multiplications, as far as they are worth counting: an iteration on many values and switches counts
/// more than one on few. Time is not looked at, so a table has the same answer on any machine.
class WorkLimit {
 public:
  explicit WorkLimit(double multiplications, std::function<bool()> stop = {})
      : left_(multiplications), stop_(std::move(stop)) {}

  void spend(double multiplications) { left_ -= multiplications; }
  [[nodiscard]] double left() const { return left_; }
  [[nodiscard]] bool is_met() const { return left_ <= 0.0 || (stop_ && stop_()); }

 private:
  double left_;
  std::function<bool()> stop_;
};

/// What an inversion may take: some seconds on a slow machine. Tables with errors as of real data take a
/// hundredth.
struct InversionLimits {
  double search = 8e9;  // multiplications, of the best fit
  double sheets = 2e9;  // of fitting again a model with more sheets than the table takes
  /// Asked between iterations, from the calling thread; true ends the inversion as a limit does. May be
  /// empty.
  std::function<bool()> stop = {};
};

}  // namespace numerics::rhoplus
