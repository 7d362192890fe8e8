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
  if (begun_ && progress_.iteration + 1 == progress.iteration && progress_.trial > 0) {
    if (sensitivities_ == 0.0) {  // that was the response of the start
      trial_ = now - began_;
      sensitivities_ = sensitivities_over_response * trial_;
    } else {
      trials_ = (trials_ + progress_.trial) / 2.0;
    }
  }
  begun_ = true;
  began_ = now;
  share_ = 0.0;
}

void IterationEstimate::measure(const InversionProgress& progress, double now) {
  if (progress.trial == 0 || sensitivities_ == 0.0) {
    return;
  }
  if (progress_.trial == 0) {
    trials_began_ = now;
    sensitivities_ = now - began_;
  } else if (const double done = progress.trial - 1 + progress.share; done > 0.5) {
    trial_ = (now - trials_began_) / done;
  }
}

void IterationEstimate::take(const InversionProgress& progress, double now) {
  if (!begun_ || progress.iteration != progress_.iteration) {
    begin_iteration(progress, now);
    progress_ = {progress.iteration, 0, 0.0};
  }
  measure(progress, now);
  progress_ = progress;
  if (sensitivities_ == 0.0) {  // the response of the start is all that there is
    share_ = std::max(share_, std::min(progress.share, 0.99));
    seconds_left_ = progress.share > 0.2
                        ? std::optional((now - began_) * (1.0 - progress.share) / progress.share)
                        : std::nullopt;
    return;
  }
  // What lies ahead: once more trials than expected were made, about one more, always.
  double left = 0.0;
  double done = now - began_;
  if (progress.trial == 0) {
    constexpr double at_least = 0.05;  // of the sensitivities: linear algebra follows them
    left = std::max(sensitivities_ - done, at_least * sensitivities_) + trials_ * trial_;
  } else {
    left = std::max(trials_ - (progress.trial - 1 + progress.share), 1.0) * trial_;
  }
  seconds_left_ = left;
  share_ = std::max(share_, done / std::max(done + left, 1e-9));
}

std::string IterationEstimate::text() const {
  const bool start = sensitivities_ == 0.0;
  std::string text = start ? "Response of the start" : "Iteration " + std::to_string(progress_.iteration);
  if (progress_.trial > 0 && !start) {
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
