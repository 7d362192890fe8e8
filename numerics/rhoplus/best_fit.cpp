#include "numerics/rhoplus/best_fit.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "numerics/rhoplus/cell_fit.h"
#include "numerics/rhoplus/certificate.h"
#include "numerics/rhoplus/switch_polish.h"

namespace numerics::rhoplus {

namespace {

constexpr double relative_gap = 1e-9;
/// Relative precision of chi-squared in double precision.
constexpr double rounding = 1e-15;
constexpr int max_rounds = 60;
constexpr int max_rounds_without_gain = 3;

constexpr double cells_per_decade = 6.0;
/// The zoom makes the cells at the switches four times as fine: the polish then starts near its goal. A
/// second one takes as long as the steps that it saves.
constexpr double zoom_factor = 0.25;
/// The cells need not be fitted better than their width allows.
constexpr double cell_gap = 1e-5;
/// Cells that fit so well (chi-squared by the number of values) say no more: data this exact are fitted by
/// many models, and going on would only breed sheets.
constexpr double good_cell_misfit2 = 1e-2;
/// Misfit of a value, squared and in units of its error, that counts as none.
constexpr double exact_misfit2_of_value = 1e-6;

/// Best density in cells, with finer cells at its switches.
SwitchModel first_model(const FitProblem& problem) {
  const CellFitLimits limits{.relative_gap = cell_gap,
                             .misfit2 = good_cell_misfit2 * static_cast<double>(problem.values.size())};
  SwitchModel model = fit_cells(problem, even_edges(problem, cells_per_decade), SwitchModel{}, limits);
  if (model.switches.empty()) {
    return model;
  }
  const double width = zoom_factor * std::log(10.0) / cells_per_decade;
  return fit_cells(problem, edges_around(problem, model, width), model, limits);
}

/// A narrow pulse, a pole and a zero side by side (a dip where eta is 1), wherever the certificate says that
/// one betters the fit. Narrow enough not to make the misfit worse; the polish gives them their widths.
SwitchModel with_pulses(const FitProblem& problem, const BestFit& best) {
  constexpr double worth_while = 1e-3;  // of the largest
  constexpr double widest = 0.05;
  constexpr int widths = 11;          // each a tenth of the last
  constexpr double small_rise = 0.1;  // of the gap; the other switches can make up for it
  double largest = 0.0;
  for (const WrongStretch& stretch : best.certificate.wrong_stretches) {
    largest = std::max(largest, stretch.gap);
  }
  double width = widest;
  for (int i = 0; i < widths; ++i, width *= 0.1) {
    SwitchModel model = best.model;
    for (const WrongStretch& stretch : best.certificate.wrong_stretches) {
      const double first = stretch.peak - 0.5 * width;
      const double end = stretch.peak + 0.5 * width;
      const auto above = std::lower_bound(model.switches.begin(), model.switches.end(), first);
      const bool fits = end < problem.wall && (above == model.switches.end() || end < *above);
      if (fits && !stretch.at_switch && stretch.gap >= worth_while * largest) {
        model.switches.insert(above, {first, end});
      }
    }
    if (settle_level(problem, model).squaredNorm() < best.misfit2 + small_rise * best.gap) {
      return model;
    }
  }
  return best.model;
}

/// What a model becomes without the switches [first, first + count) and with the others polished.
BestFit fit_without(const FitProblem& problem, const BestFit& fit, std::size_t first, std::size_t count) {
  BestFit fewer = fit;
  const auto at = fewer.model.switches.begin() + static_cast<std::ptrdiff_t>(first);
  fewer.model.switches.erase(at, at + static_cast<std::ptrdiff_t>(count));
  // The state above the gap stays as it is.
  fewer.model.starts_at_one = fit.model.starts_at_one != (count % 2 == 1 && first == 0);
  fewer.residuals = polish_switches(problem, fewer.model, 0.0);
  fewer.misfit2 = fewer.residuals.squaredNorm();
  return fewer;
}

/// Exact data of a few sheets: those very sheets come back when the switches that aren't needed are dropped.
void drop_needless_switches(const FitProblem& problem, double exact, BestFit& fit) {
  constexpr std::size_t few = 12;  // smooth data want many sheets, and none is needless
  if (fit.model.switches.size() <= few) {
    fit.residuals = polish_switches(problem, fit.model, 0.0);
  }
  for (bool dropped = true; dropped && fit.model.switches.size() <= few && fit.model.switches.size() > 1 &&
                            !problem.limit->is_met();) {
    dropped = false;
    const std::size_t last = fit.model.switches.size() - 1;
    for (const auto& [first, count] :
         {std::pair{closest_switches(fit.model), std::size_t{2}}, std::pair{std::size_t{0}, std::size_t{1}},
          std::pair{last, std::size_t{1}}}) {
      BestFit fewer = fit_without(problem, fit, first, count);
      if (fewer.misfit2 <= exact) {
        fit = std::move(fewer);
        dropped = true;
        break;
      }
    }
  }
}

}  // namespace

void certify_fit(const FitProblem& problem, BestFit& fit) {
  fit.misfit2 = fit.residuals.squaredNorm();
  fit.certificate = certify(problem, fit.model, fit.residuals);
  // No misfit is less than nothing.
  fit.gap = std::min(std::max(fit.certificate.gap, rounding * fit.misfit2), fit.misfit2);
}

std::size_t closest_switches(const SwitchModel& model) {
  const std::vector<double>& switches = model.switches;
  std::size_t closest = 0;
  for (std::size_t i = 0; i + 1 < switches.size(); ++i) {
    if (switches[i + 1] - switches[i] < switches[closest + 1] - switches[closest]) {
      closest = i;
    }
  }
  return closest;
}

double exact_misfit2(const FitProblem& problem) {
  return exact_misfit2_of_value * static_cast<double>(problem.values.size());
}

double accepted_gap(double misfit2) { return relative_gap * std::max(1.0, misfit2); }

BestFit find_best_fit(const FitProblem& problem) {
  const double exact = exact_misfit2(problem);
  BestFit best;
  best.residuals = settle_level(problem, best.model);
  certify_fit(problem, best);
  double lower_bound = best.misfit2 - best.gap;
  int rounds_without_gain = 0;
  const auto is_good_enough = [&] {
    best.fits_exactly = best.misfit2 <= exact;
    return best.fits_exactly || best.gap <= accepted_gap(best.misfit2);
  };
  const auto goes_on = [&](int round) {
    return round < max_rounds && rounds_without_gain < max_rounds_without_gain && !is_good_enough() &&
           !problem.limit->is_met();
  };
  for (int round = 0; goes_on(round); ++round) {
    BestFit next;
    next.rounds = round + 1;
    next.model = round == 0 ? first_model(problem) : with_pulses(problem, best);
    next.residuals = polish_switches(problem, next.model, exact);
    certify_fit(problem, next);
    // A lower bound of chi-squared that one model proves holds for all.
    lower_bound = std::max(lower_bound, next.misfit2 - next.gap);
    const double before = best.gap;
    if (next.misfit2 < best.misfit2) {
      best = std::move(next);
    }
    best.gap = std::min(best.gap, std::max(best.misfit2 - lower_bound, rounding * best.misfit2));
    rounds_without_gain = best.gap < before ? 0 : rounds_without_gain + 1;
  }
  is_good_enough();
  if (best.fits_exactly) {
    drop_needless_switches(problem, exact, best);
    certify_fit(problem, best);
  }
  return best;
}

}  // namespace numerics::rhoplus
