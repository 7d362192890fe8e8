// search.h: the search over multiplier and step length of one iteration.
//
// RMS against log10 of the multiplier: while no model fits to the target, its least value is looked for; once
// one does, the largest multiplier, and with it the smoothest model, that still fits.
#pragma once
#include "numerics/occam_inversion/trials.h"

namespace numerics::occam_inversion {

constexpr double lowest_multiplier = -10.0;  // log10; below, the roughness no longer counts
constexpr double highest_multiplier = 15.0;  // above, the data no longer do
constexpr double uniform_roughness = 1e-5;   // a roughness below it is that of a uniform model

struct SearchStart {
  double log10_multiplier = 5.0;  // where the last search ended, between these
  double misfit = 0.0;            // of the model that the iteration starts from
  double target = 1.0;
  bool target_reached = false;  // by an earlier iteration: now only a smoother model is better
  double roughness = std::numeric_limits<double>::infinity();  // of the last model
  int most_cuts = 8;                                           // the step is halved at most so often
};

struct SearchEnd {
  const Trial* accepted = nullptr;  // none: no model is better
  double log10_multiplier = 0.0;    // where the next search starts
  bool target_reached = false;
};

/// Few trials: a coarse minimum, shorter steps where they help; then straight to the multiplier at which the
/// misfit is the target. What fits never lies above the target, and a smoother model is smoother. How rough a
/// model is needs no response, so that what can't be smoother isn't tried.
SearchEnd search_better(Trials& trials, const SearchStart& start);

/// As the public program searches: the minimum bracketed and refined by parabolas (Brent 1973, Algorithms for
/// Minimization without Derivatives, chapter 5), then the root (chapter 4); the step halved and all of it
/// repeated where the minimum is no better.
SearchEnd search_classic(Trials& trials, const SearchStart& start);

}  // namespace numerics::occam_inversion
