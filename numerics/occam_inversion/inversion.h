// inversion.h: Occam's inversion: the smoothest model that fits the data to a target.
//
// Constable, Parker & Constable (1987), Geophysics 52, 289-300; in two dimensions de Groot-Hedlin & Constable
// (1990), Geophysics 55, 1613-1624. Each iteration linearises the response at the last model, tries models of
// several multipliers with their true response, and takes the best. It knows no section and no file: what
// responds to a model is given to it.
#pragma once
#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "numerics/occam_inversion/roughness.h"
#include "numerics/occam_inversion/search.h"

namespace numerics::occam_inversion {

/// Modelled data, and their derivatives by each parameter if they were asked for, in the data's units.
struct Modelled {
  std::vector<double> values;         // N
  std::vector<double> sensitivities;  // N x n, row by row; empty if they weren't asked for
};

enum class Derivatives { no, yes };

/// What is inverted. `respond` may throw Stopped; values are at the turn nearest to the datum where they are
/// phases.
struct Problem {
  std::vector<double> data;    // N
  std::vector<double> errors;  // N; the sign doesn't count
  std::function<Modelled(std::span<const double> model, Derivatives derivatives)> respond;
};

enum class Search { better, classic };

/// A misfit of at most so many targets counts as fitting.
constexpr double near_target = 1.01;

struct Settings {
  double target_rms = 1.0;
  int most_iterations = 10;  // more than the state has
  int most_cuts = 8;
  ModelRules rules;
  Search search = Search::better;
  bool robust = false;      // Huber's weights: residuals beyond 1.5 errors count linearly
  std::size_t threads = 0;  // 0: as many as the machine has cores
};

/// From where an inversion goes on, as its files keep it.
struct State {
  int iteration = 0;
  std::vector<double> model;      // log10 ohm-m
  double log10_multiplier = 5.0;  // where the last search ended
  double roughness = 1e10;        // of the last model
  bool target_reached = false;
  int small_gains = 0;  // iterations in a row, with the last one, that were hardly worth it (is_small_gain)
};

struct Iteration {
  State state;
  double rms = 0.0;
  double misfit = 0.0;                  // that goes by the target; the RMS unless the inversion is robust
  double model_log10_multiplier = 0.0;  // of the model itself; of a start the state's
  std::vector<double> modelled;         // data of the model
  double step = 0.0;                    // root mean square of the model's change, decades
  std::size_t trials = 0;
};

enum class Ending {
  smooth_and_fitting,  // the target is reached, and the model no longer gets smoother
  perfectly_smooth,    // a uniform model fits
  iterations_done,
  no_better_fit,  // above the target
  stopped,
};

/// What the inversion did with its last model.
struct Outcome {
  Ending ending = Ending::stopped;
  Iteration last;  // the start, if no iteration ended
};

/// What is told while the inversion works; either may be empty.
struct Listener {
  std::function<void(const Iteration&)> iteration;  // the start, and each iteration that ended
  std::function<void(const Trial&)> trial;          // each response of the search
};

/// A start that fits already begins with smoothing, at iteration 0 only. Throws as require_soluble does.
Outcome invert(const Problem& problem, const Roughness& roughness, const Settings& settings, State start,
               const Listener& listener);

/// Throws std::invalid_argument for an error of 0, numbers that aren't finite, no data at all, and a start of
/// another number of parameters.
void require_soluble(const Problem& problem, const Roughness& roughness, std::span<const double> model);

/// The problem linearised at a model.
/// @param robust  weighted by Huber's weights of the model's residuals
LinearProblem linearise(const Problem& problem, std::span<const double> model, bool robust);

/// How good a model is, as two in a row are compared.
struct Level {
  double misfit = 0.0;
  double roughness = 0.0;
  bool target_reached = false;
};

/// Whether an iteration got so little that two of them in a row end the inversion: once the target is reached
/// by the roughness, before by the misfit.
bool is_small_gain(const Level& before, const Level& after);

/// Root mean square of residuals over errors.
double root_mean_square(const Problem& problem, std::span<const double> modelled);

}  // namespace numerics::occam_inversion
