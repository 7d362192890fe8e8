#include "occam/inversion/iteration_estimate.h"

#include <algorithm>
#include <cmath>

#include "core/number_text.h"

namespace Module_occam {

namespace {

// Sensitivities over a response alone, before any have been measured.
constexpr double sensitivities_over_response = 2.5;

}  // namespace

void IterationEstimate::begin_iteration(const InversionProgress& progress, double now) {
  if (begun_ && progress_.iteration + 1 == progress.iteration) {
    if (progress_.of_start) {
      trial_ = now - began_;
      sensitivities_ = sensitivities_over_response * trial_;
    } else if (progress_.trial > 0) {
      trials_ = (trials_ + progress_.trial) / 2.0;
    }
  }
  begun_ = true;
  began_ = now;
  share_ = 0.0;
}

void IterationEstimate::measure(const InversionProgress& progress, double now) {
  if (progress.of_start || progress.trial == 0) {
    return;
  }
  const double done = progress.trial - 1 + progress.share;
  if (progress_.trial == 0) {
    trials_began_ = now;
    trials_before_ = done;
    if (now > began_) {  // else nobody looked while the sensitivities were computed
      sensitivities_ = now - began_;
    }
  } else if (done - trials_before_ > 0.5) {
    trial_ = (now - trials_began_) / (done - trials_before_);
  }
}

void IterationEstimate::take(const InversionProgress& progress, double now) {
  if (!begun_ || progress.iteration != progress_.iteration) {
    begin_iteration(progress, now);
    progress_ = {progress.iteration, 0, 0.0, progress.of_start};
  }
  measure(progress, now);
  progress_ = progress;
  const double done = now - began_;
  if (progress.of_start) {
    share_ = std::max(share_, std::min(progress.share, 0.99));
    seconds_left_ =
        progress.share > 0.2 ? std::optional(done * (1.0 - progress.share) / progress.share) : std::nullopt;
    return;
  }
  // What lies ahead: once more trials than expected were made, about one more, always.
  const double of_trials = std::max(trials_ - (progress.trial - 1 + progress.share), 1.0) * trial_;
  constexpr double at_least = 0.05;  // of the sensitivities: linear algebra follows them
  const double left = progress.trial > 0
                          ? of_trials
                          : std::max(sensitivities_ - done, at_least * sensitivities_) + trials_ * trial_;
  const bool measured = trial_ > 0.0;
  seconds_left_ = measured ? std::optional(left) : std::nullopt;
  if (measured) {
    share_ = std::max(share_, done / (done + left));
  }
}

std::string IterationEstimate::text() const {
  std::string text =
      progress_.of_start ? "Response of the start" : "Iteration " + std::to_string(progress_.iteration);
  if (progress_.trial > 0) {
    text += ", trial " + std::to_string(progress_.trial);
  }
  return seconds_left_ ? text + ", " + time_left_text(*seconds_left_) : text;
}

std::string time_left_text(double seconds) {
  constexpr double few = 10.0;
  constexpr double minute = 60.0;
  constexpr double hour = 3600.0;
  constexpr double of_seconds = 5.0;
  if (seconds < 1.0) {
    return "less than 1 s left";
  }
  if (seconds < few) {
    return "about " + format_number(seconds, "0") + " s left";
  }
  if (seconds < 1.5 * minute) {
    return "about " + format_number(of_seconds * std::round(seconds / of_seconds), "0") + " s left";
  }
  return "about " + (seconds < 1.5 * hour ? format_number(seconds / minute, "0") + " min left"
                                          : format_number(seconds / hour, "0.0") + " h left");
}

}  // namespace Module_occam
