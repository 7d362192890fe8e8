// iteration_estimate.h: how far an iteration is, and how long it will take, by what the ones before it took.
#pragma once
#include <optional>
#include <string>

#include "occam/inversion/run_inversion.h"

namespace Module_occam {

/// Takes the progress of an inversion as it is told, with the time of a clock in seconds. An iteration is its
/// sensitivities and then trials, whose number is guessed from the last two iterations.
class IterationEstimate {
 public:
  void take(const InversionProgress& progress, double now);

  /// Of the iteration under way, from 0 to below 1; never smaller than before.
  [[nodiscard]] double share() const { return share_; }
  /// Seconds that it will still take, about; none before anything could be measured.
  [[nodiscard]] std::optional<double> seconds_left() const { return seconds_left_; }
  /// "Iteration 4, trial 3, about 12 s left"
  [[nodiscard]] std::string text() const;

 private:
  void begin_iteration(const InversionProgress& progress, double now);
  void measure(const InversionProgress& progress, double now);

  InversionProgress progress_;
  bool begun_ = false;
  double began_ = 0.0;          // the iteration under way
  double trials_began_ = 0.0;   // the first look at its trials
  double trials_before_ = 0.0;  // that were done then
  double sensitivities_ = 0.0;  // seconds, of the last iteration that has them, linear algebra with them
  double trial_ = 0.0;          // seconds of one, on the average of the iteration
  double trials_ = 8.0;         // expected
  double share_ = 0.0;
  std::optional<double> seconds_left_;
};

/// "about 12 s left", coarser for longer times; "less than 1 s left".
std::string time_left_text(double seconds);

}  // namespace Module_occam
