#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "numerics/occam_inversion/search.h"

namespace numerics::occam_inversion {

namespace {

constexpr double golden = 1.618034;
constexpr double golden_part = 0.381966;  // of the longer side of a bracket

struct Point {
  double x = 0.0;
  double f = 0.0;
};

// The misfit of steps of one length over the multiplier.
class Curve {
 public:
  Curve(Trials& trials, double share) : trials_(trials), share_(share) {}
  Point at(double x) { return {x, trials_.at(x, share_).misfit()}; }
  const Trial& trial(double x) { return trials_.at(x, share_); }

 private:
  Trials& trials_;
  double share_;
};

struct Bracket {
  Point a;
  Point middle;  // the lowest
  Point c;
};

// Goes downhill from two points, by golden steps and parabolas up to a hundred times as long.
Bracket bracket_minimum(Curve& curve, double from) {
  constexpr double longest = 100.0;
  constexpr double furthest = 60.0;  // decades: a curve that never rises has no bracket
  Point a = curve.at(from);
  Point b = curve.at(from - 1.0);
  if (b.f > a.f) {
    std::swap(a, b);
  }
  Point c = curve.at(b.x + golden * (b.x - a.x));
  while (b.f > c.f && std::abs(c.x - from) < furthest) {
    const double r = (b.x - a.x) * (b.f - c.f);
    const double q = (b.x - c.x) * (b.f - a.f);
    const double divisor = 2.0 * std::copysign(std::max(std::abs(q - r), 1e-20), q - r);
    const double u = b.x - ((b.x - c.x) * q - (b.x - a.x) * r) / divisor;
    const double limit = b.x + longest * (c.x - b.x);
    Point next;
    if ((b.x - u) * (u - c.x) > 0.0) {
      next = curve.at(u);
      if (next.f < c.f) {
        return {b, next, c};
      }
      if (next.f > b.f) {
        return {a, b, next};
      }
      next = curve.at(c.x + golden * (c.x - b.x));
    } else if ((c.x - u) * (u - limit) > 0.0) {
      next = curve.at(u);
      if (next.f < c.f) {
        b = c;
        c = next;
        next = curve.at(c.x + golden * (c.x - b.x));
      }
    } else if ((u - limit) * (limit - c.x) >= 0.0) {
      next = curve.at(limit);
    } else {
      next = curve.at(c.x + golden * (c.x - b.x));
    }
    a = b;
    b = c;
    c = next;
  }
  return {a, b, c};
}

// Brent's minimum; the tolerance is relative.
Point refine_minimum(Curve& curve, const Bracket& bracket) {
  constexpr double tolerance = 0.1;
  constexpr double least = 1e-10;
  constexpr int most_steps = 100;
  double a = std::min(bracket.a.x, bracket.c.x);
  double b = std::max(bracket.a.x, bracket.c.x);
  Point x = bracket.middle;
  Point w = x;
  Point v = x;
  double step = 0.0;
  double before_last = 0.0;
  for (int round = 0; round < most_steps; ++round) {
    const double middle = 0.5 * (a + b);
    const double near = tolerance * std::abs(x.x) + least;
    if (std::abs(x.x - middle) <= 2.0 * near - 0.5 * (b - a)) {
      break;
    }
    bool use_golden = true;
    if (std::abs(before_last) > near) {
      const double r = (x.x - w.x) * (x.f - v.f);
      double q = (x.x - v.x) * (x.f - w.f);
      double p = (x.x - v.x) * q - (x.x - w.x) * r;
      q = 2.0 * (q - r);
      p = q > 0.0 ? -p : p;
      q = std::abs(q);
      const double limit = std::exchange(before_last, step);
      if (std::abs(p) < std::abs(0.5 * q * limit) && p > q * (a - x.x) && p < q * (b - x.x)) {
        step = p / q;
        const double u = x.x + step;
        if (u - a < 2.0 * near || b - u < 2.0 * near) {
          step = std::copysign(near, middle - x.x);
        }
        use_golden = false;
      }
    }
    if (use_golden) {
      before_last = (x.x >= middle ? a : b) - x.x;
      step = golden_part * before_last;
    }
    const Point u = curve.at(x.x + (std::abs(step) >= near ? step : std::copysign(near, step)));
    if (u.f <= x.f) {
      (u.x >= x.x ? a : b) = x.x;
      v = w;
      w = x;
      x = u;
    } else {
      (u.x < x.x ? a : b) = u.x;
      if (u.f <= w.f || w.x == x.x) {
        v = w;
        w = u;
      } else if (u.f <= v.f || v.x == x.x || v.x == w.x) {
        v = u;
      }
    }
  }
  return x;
}

// Brent's root to 0.001 decades: where the misfit is the target, between a point below it and one above.
Point root_between(Curve& curve, Point a, Point b, double target) {
  constexpr double tolerance = 1e-3;
  constexpr int most_steps = 100;
  double fa = a.f - target;
  double fb = b.f - target;
  Point c = a;
  double fc = fa;
  double d = b.x - a.x;
  double e = d;
  for (int round = 0; round < most_steps; ++round) {
    if ((fb > 0.0) == (fc > 0.0)) {
      c = a;
      fc = fa;
      d = e = b.x - a.x;
    }
    if (std::abs(fc) < std::abs(fb)) {
      a = b;
      b = c;
      c = a;
      fa = fb;
      fb = fc;
      fc = fa;
    }
    const double near = 2.0 * std::numeric_limits<double>::epsilon() * std::abs(b.x) + 0.5 * tolerance;
    const double half = 0.5 * (c.x - b.x);
    if (std::abs(half) <= near || fb == 0.0) {
      break;
    }
    if (std::abs(e) >= near && std::abs(fa) > std::abs(fb)) {
      const double s = fb / fa;
      double p = 0.0;
      double q = 0.0;
      if (a.x == c.x) {
        p = 2.0 * half * s;
        q = 1.0 - s;
      } else {
        const double r = fb / fc;
        const double t = fa / fc;
        p = s * (2.0 * half * t * (t - r) - (b.x - a.x) * (r - 1.0));
        q = (t - 1.0) * (r - 1.0) * (s - 1.0);
      }
      q = p > 0.0 ? -q : q;
      p = std::abs(p);
      if (2.0 * p < std::min(3.0 * half * q - std::abs(near * q), std::abs(e * q))) {
        e = std::exchange(d, p / q);
      } else {
        d = e = half;
      }
    } else {
      d = e = half;
    }
    a = b;
    fa = fb;
    b = curve.at(b.x + (std::abs(d) > near ? d : std::copysign(near, half)));
    fb = b.f - target;
  }
  // Where the misfit jumps over the target the nearer end may lie well above it; the other one fits.
  constexpr double near_target = 1.001;
  return b.f > near_target * target && c.f <= target ? c : b;
}

// Where the misfit comes up to the target, from the minimum on.
Point intercept(Curve& curve, const Point& minimum, double target) {
  constexpr double step = 0.30103;
  constexpr double furthest = 30.0;  // decades above the minimum
  Point below = minimum;
  Point above = curve.at(minimum.x + step);
  while (above.f < target && above.x - minimum.x < furthest) {
    below = above;
    above = curve.at(above.x + step);
  }
  return above.f < target ? above  // the smoothest model fits, too
                          : root_between(curve, below, above, target);
}

}  // namespace

SearchEnd search_classic(Trials& trials, const SearchStart& start) {
  constexpr double allowed_growth = 1.01;  // of the roughness, once the target was reached
  double share = 1.0;
  double from = start.log10_multiplier;
  for (int cut = 0; cut < std::max(start.most_cuts, 1); ++cut, share *= 0.5) {
    Curve curve(trials, share);
    const Bracket bracket = bracket_minimum(curve, from);
    const Point minimum = bracket.middle.f < start.target ? bracket.middle : refine_minimum(curve, bracket);
    from = minimum.x;
    if (minimum.f > (start.target_reached ? start.target : start.misfit)) {
      continue;
    }
    const bool reached = minimum.f < start.target;
    const Trial& trial = curve.trial(reached ? intercept(curve, minimum, start.target).x : minimum.x);
    if (start.target_reached && trial.roughness > allowed_growth * start.roughness) {
      continue;
    }
    return {&trial, minimum.x, reached || start.target_reached};
  }
  return {nullptr, from, start.target_reached};
}

}  // namespace numerics::occam_inversion
