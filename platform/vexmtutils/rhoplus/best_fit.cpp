#include "platform/vexmtutils/rhoplus/best_fit.h"

#include <algorithm>
#include <cmath>

#include "platform/vexmtutils/rhoplus/cell_fit.h"
#include "platform/vexmtutils/rhoplus/certificate.h"
#include "platform/vexmtutils/rhoplus/switch_polish.h"

namespace vexmtutils {

namespace {

constexpr double relative_gap = 1e-9;
constexpr int most_rounds = 60;

constexpr double cells_per_decade = 6.0;
/// Each zoom makes the cells at the switches four times as fine. The polish then starts next to its goal.
constexpr int zooms = 2;
constexpr double zoom_factor = 0.25;
/// The cells need not be fitted better than their width allows.
constexpr double cell_gap = 1e-5;
/// Cells that fit so well (chi-squared by the number of values) tell no more: data this exact are fitted by
/// many models, and going on would only breed sheets.
constexpr double good_cell_misfit2 = 1e-2;
/// Misfit of a value, squared and in units of its error, that counts as none.
constexpr double exact_misfit2 = 1e-6;

/// Best density in cells, with finer and finer cells at its switches.
SwitchModel first_model(const FitProblem& problem) {
  const CellFitLimits limits{.relative_gap = cell_gap,
                             .misfit2 = good_cell_misfit2 * static_cast<double>(problem.values.size())};
  SwitchModel model = fit_cells(problem, even_edges(problem, cells_per_decade), SwitchModel{}, limits);
  double width = std::log(10.0) / cells_per_decade;
  for (int zoom = 0; zoom < zooms && !model.switches.empty(); ++zoom) {
    width *= zoom_factor;
    model = fit_cells(problem, edges_around(problem, model, width), model, limits);
  }
  return model;
}

/// A narrow pulse, a pole and a zero side by side (a dip where eta is 1), wherever the certificate says that
/// one betters the fit. Narrow enough not to make the misfit worse; the polish gives them their widths.
SwitchModel with_pulses(const FitProblem& problem, const BestFit& best) {
  constexpr double worth_while = 1e-3;  // of the largest
  constexpr double widest = 0.05;
  constexpr double narrowest = 1e-12;
  double largest = 0.0;
  for (const WrongStretch& stretch : best.certificate.wrong_stretches) {
    largest = std::max(largest, stretch.gap);
  }
  for (double width = widest; width > narrowest; width *= 0.1) {
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
    if (settle_level(problem, model).squaredNorm() < best.misfit2) {
      return model;
    }
  }
  return best.model;
}

/// Less misfit, or as much within rounding and better proof.
bool is_better(const BestFit& a, const BestFit& b) {
  constexpr double rounding = 1e-9;
  return a.misfit2 < b.misfit2 * (1.0 - rounding) ||
         (a.misfit2 < b.misfit2 * (1.0 + rounding) && a.gap < b.gap);
}

}  // namespace

void certify_fit(const FitProblem& problem, BestFit& fit) {
  fit.misfit2 = fit.residuals.squaredNorm();
  fit.certificate = certify(problem, fit.model, fit.residuals);
  // No misfit is less than nothing.
  fit.gap = std::min(fit.certificate.gap, fit.misfit2);
}

double accepted_gap(double misfit2) { return relative_gap * std::max(1.0, misfit2); }

BestFit find_best_fit(const FitProblem& problem) {
  const double exact = exact_misfit2 * static_cast<double>(problem.values.size());
  BestFit best;
  best.residuals = settle_level(problem, best.model);
  certify_fit(problem, best);
  for (int round = 0; round < most_rounds; ++round) {
    best.fits_exactly = best.misfit2 <= exact;
    if (best.fits_exactly || best.gap <= accepted_gap(best.misfit2)) {
      break;
    }
    BestFit next;
    next.rounds = round + 1;
    next.model = round == 0 ? first_model(problem) : with_pulses(problem, best);
    next.residuals = polish_switches(problem, next.model, exact);
    certify_fit(problem, next);
    if (is_better(next, best)) {
      best = std::move(next);
    } else if (round > 0) {
      break;
    }
  }
  return best;
}

}  // namespace vexmtutils
