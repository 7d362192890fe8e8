#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "numerics/occam_inversion/search.h"

namespace numerics::occam_inversion {

namespace {

bool inside(double x) { return x > lowest_multiplier && x < highest_multiplier; }

// The place of the least value of the parabola through three points.
double lowest_of_parabola(double a, double fa, double b, double fb, double c, double fc) {
  const double left = (b - a) * (fb - fc);
  const double right = (b - c) * (fb - fa);
  const double divisor = 2.0 * (left - right);
  return divisor == 0.0 ? b : b - ((b - a) * left - (b - c) * right) / divisor;
}

// Looks for the least misfit over the multiplier with steps of one length; ends at the first model that fits.
class Minimum {
 public:
  Minimum(Trials& trials, double share, double target) : trials_(trials), share_(share), target_(target) {}

  const Trial& find(double from) {
    const Trial& start = at(from);
    if (fits(start)) {
      return start;
    }
    const Trial& low = at(from - first_step);
    if (fits(low)) {
      return low;
    }
    if (low.misfit() > start.misfit()) {
      return walk(low, start, first_step);
    }
    const Trial& lowest = walk(start, low, -first_step);
    // Models that are alike, or none, on this side say nothing of the other.
    return lowest.misfit() < start.misfit() ? lowest : walk(low, start, first_step);
  }

 private:
  static constexpr double first_step = 0.5;  // decades
  static constexpr double growth = 1.3;
  static constexpr double near_enough = 0.1;
  static constexpr int most_parabolas = 5;

  const Trial& at(double x) { return trials_.at(x, share_); }
  [[nodiscard]] bool fits(const Trial& trial) const { return trial.misfit() <= target_; }

  // On from two trials, the second no worse than the first. Rounded models may be alike over decades, and a
  // stretch without any model is level, too: it is crossed.
  const Trial& walk(const Trial& first, const Trial& second, double step) {
    const Trial* behind = &first;
    const Trial* middle = &second;
    while (inside(middle->log10_multiplier + step)) {
      const Trial& ahead = at(middle->log10_multiplier + step);
      if (fits(ahead)) {
        return ahead;
      }
      if (ahead.misfit() > middle->misfit()) {
        return refine(*behind, *middle, ahead);
      }
      behind = middle;
      middle = &ahead;
      step *= growth;
    }
    return *middle;
  }

  // Between two trials that are no better.
  const Trial& refine(const Trial& one, const Trial& best, const Trial& other) {
    const Trial* a = &one;
    const Trial* b = &best;
    const Trial* c = &other;
    for (int round = 0; round < most_parabolas; ++round) {
      double x = lowest_of_parabola(a->log10_multiplier, a->misfit(), b->log10_multiplier, b->misfit(),
                                    c->log10_multiplier, c->misfit());
      const auto [first, last] = std::minmax(a->log10_multiplier, c->log10_multiplier);
      x = std::clamp(x, first + 0.1 * (last - first), last - 0.1 * (last - first));
      if (std::abs(x - b->log10_multiplier) < near_enough) {
        break;
      }
      const Trial* next = &at(x);
      if (fits(*next)) {
        return *next;
      }
      const bool on_side_of_a = (x < b->log10_multiplier) == (a->log10_multiplier < b->log10_multiplier);
      if (next->misfit() < b->misfit()) {
        (on_side_of_a ? c : a) = b;
        b = next;
      } else {
        (on_side_of_a ? a : c) = next;
      }
    }
    return *b;
  }

  Trials& trials_;
  double share_;
  double target_;
};

// Looks for the largest multiplier at which steps of one length still fit, among models smoother than a
// bound.
class LargestThatFits {
 public:
  LargestThatFits(Trials& trials, double share, double target, double bound)
      : trials_(trials), share_(share), target_(target), bound_(bound) {}

  /// None if the misfit rises, or the model gets as rough as the bound, before it comes down to the target.
  const Trial* find(double from) {
    double x = from;
    double rough = from;
    for (double step = first_step; !is_smooth(x); step *= growth) {
      rough = x;
      x += step;
      if (!inside(x)) {
        return nullptr;
      }
    }
    const Trial& first = at(x > from ? nearest_smooth(rough, x) : x);
    return fits(first) ? upwards(first) : downwards(first);
  }

  /// Of all trials so far.
  [[nodiscard]] double least_misfit() const { return least_misfit_; }

 private:
  static constexpr double first_step = 0.15;  // decades
  static constexpr double growth = 1.5;
  static constexpr double near_target = 2e-4;        // of the target
  static constexpr double shortest_interval = 1e-3;  // decades: the misfit may jump where the host changes
  static constexpr double near_bound = 0.004;        // decades

  const Trial& at(double x) {
    const Trial& trial = trials_.at(x, share_);
    least_misfit_ = std::min(least_misfit_, trial.misfit());
    return trial;
  }
  // Needs no response.
  [[nodiscard]] bool is_smooth(double x) const { return trials_.roughness_at(x, share_) < bound_; }
  [[nodiscard]] bool fits(const Trial& trial) const { return trial.misfit() <= target_; }

  // The least multiplier between them that is still smooth.
  [[nodiscard]] double nearest_smooth(double rough, double smooth) const {
    while (smooth - rough > near_bound) {
      const double middle = 0.5 * (rough + smooth);
      (is_smooth(middle) ? smooth : rough) = middle;
    }
    return smooth;
  }

  const Trial* upwards(const Trial& first) {
    const Trial* fitting = &first;
    double step = first_step;
    while (fitting->roughness >= uniform_roughness && inside(fitting->log10_multiplier + step)) {
      const Trial& next = at(fitting->log10_multiplier + step);
      if (!fits(next)) {
        return &between(*fitting, next);
      }
      fitting = &next;
      step *= growth;
    }
    return fitting;
  }

  const Trial* downwards(const Trial& first) {
    const Trial* above = &first;
    bool at_bound = false;
    for (double step = first_step; !at_bound; step *= growth) {
      double x = above->log10_multiplier - step;
      if (!inside(x)) {
        return nullptr;
      }
      if (!is_smooth(x)) {
        x = nearest_smooth(x, above->log10_multiplier);
        at_bound = true;
      }
      if (x == above->log10_multiplier) {
        return nullptr;
      }
      const Trial& next = at(x);
      if (fits(next)) {
        return &between(next, *above);
      }
      if (next.misfit() > above->misfit()) {
        return nullptr;
      }
      above = &next;
    }
    return nullptr;
  }

  // Regula falsi, with the weight of an end halved that stays twice in a row (Illinois).
  const Trial& between(const Trial& fitting, const Trial& above) {
    const Trial* low = &fitting;
    const Trial* high = &above;
    double low_excess = low->misfit() - target_;
    double high_excess = high->misfit() - target_;
    std::optional<bool> last_fitted;
    while (target_ - low->misfit() > near_target * target_ &&
           high->log10_multiplier - low->log10_multiplier > shortest_interval) {
      const double width = high->log10_multiplier - low->log10_multiplier;
      // A little below the target, so that the next trial fits.
      const double aim = low_excess + 0.5 * near_target * target_;
      const double part = std::clamp(-aim / (high_excess - low_excess), 0.05, 0.95);
      const Trial& next = at(low->log10_multiplier + part * width);
      const bool next_fits = fits(next);
      (next_fits ? low : high) = &next;
      (next_fits ? low_excess : high_excess) = next.misfit() - target_;
      if (last_fitted == next_fits) {
        (next_fits ? high_excess : low_excess) *= 0.5;
      }
      last_fitted = next_fits;
    }
    return *low;
  }

  Trials& trials_;
  double share_;
  double target_;
  double bound_;
  double least_misfit_ = Trial::no_model;
};

// The trial that fits found above is the lower end of a root search at its own step length.
SearchEnd smoothest_from(Trials& trials, const Trial& fitting, double target) {
  constexpr double any = std::numeric_limits<double>::infinity();
  const Trial* smoothest = LargestThatFits(trials, fitting.share, target, any).find(fitting.log10_multiplier);
  return {smoothest, smoothest->log10_multiplier, true};
}

SearchEnd search_minimum(Trials& trials, const SearchStart& start) {
  const Trial* best = &Minimum(trials, 1.0, start.target).find(start.log10_multiplier);
  double share = 1.0;
  for (int cut = 0; cut < start.most_cuts && best->misfit() > start.target; ++cut) {
    share *= 0.5;
    const Trial* shorter = &trials.at(best->log10_multiplier, share);
    const bool helps = shorter->misfit() < best->misfit();
    if (helps) {
      best = &Minimum(trials, share, start.target).find(best->log10_multiplier);
    } else if (best->misfit() < start.misfit) {
      break;  // shorter steps only help while none was good at all
    }
  }
  if (best->misfit() <= start.target) {
    return smoothest_from(trials, *best, start.target);
  }
  best = trials.best();
  return {best->misfit() < start.misfit ? best : nullptr, best->log10_multiplier, false};
}

SearchEnd search_smoother(Trials& trials, const SearchStart& start) {
  constexpr double worth_a_shorter_step = 1e-3;  // of the roughness
  double bound = start.roughness;
  double share = 1.0;
  double least_misfit = Trial::no_model;
  for (int cut = 0; cut < std::max(start.most_cuts, 1); ++cut) {
    LargestThatFits search(trials, share, start.target, bound);
    const Trial* found = search.find(start.log10_multiplier);
    if (found != nullptr && found->roughness < start.roughness) {
      return {found, found->log10_multiplier, true};
    }
    if (search.least_misfit() >= least_misfit) {
      break;  // a shorter step fits no better
    }
    least_misfit = search.least_misfit();
    share *= 0.5;
    bound = (1.0 - worth_a_shorter_step) * start.roughness;
  }
  return {nullptr, start.log10_multiplier, true};
}

}  // namespace

SearchEnd search_better(Trials& trials, const SearchStart& start) {
  return start.target_reached ? search_smoother(trials, start) : search_minimum(trials, start);
}

}  // namespace numerics::occam_inversion
