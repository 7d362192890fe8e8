#include "numerics/rhoplus/inversion.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <tuple>

#include "core/number_text.h"
#include "numerics/constants.h"
#include "numerics/rhoplus/switch_polish.h"

namespace numerics::rhoplus {

namespace {

constexpr double wall_of_conducting_surface = 1000.0;  // times the highest used frequency
constexpr double nothing = std::numeric_limits<double>::quiet_NaN();

/// Far beyond anything measured; squares of what lies within don't overflow.
constexpr double largest_number = 1e100;

bool is_usable(double value) { return std::abs(value) <= largest_number; }  // not of NaN

bool is_positive(double value) { return is_usable(value) && value >= 1.0 / largest_number; }

/// A datum that is used: frequency in rad/s, target and error as FitValue has them.
struct UsedValue {
  double omega = 0.0;
  bool is_phase = false;
  double target = 0.0;
  double weight = 0.0;
};

/// The values behind the flags; what can't be used is left out with a remark.
std::vector<UsedValue> used_values(std::span<const RhoplusDatum> data, RhoplusInversion& result) {
  std::vector<UsedValue> used;
  int row_number = 0;
  for (const RhoplusDatum& datum : data) {
    ++row_number;
    const auto leave_out = [&](const char* what) {
      result.remarks.push_back("Row " + plain_text(row_number) + ": the " + what + " can't be used.");
    };
    if (!datum.use_resistivity && !datum.use_phase) {
      continue;
    }
    if (!is_positive(datum.frequency)) {
      leave_out("frequency");
      continue;
    }
    const double omega = 2.0 * std::numbers::pi * datum.frequency;
    if (datum.use_resistivity) {
      const double weight = datum.resistivity / datum.resistivity_error;
      if (is_positive(datum.resistivity) && is_positive(datum.resistivity_error) && is_positive(weight)) {
        used.push_back({omega, false, std::log(datum.resistivity) - std::log(mu0 * omega), weight});
        ++result.resistivities;
      } else {
        leave_out("resistivity or its error");
      }
    }
    if (datum.use_phase) {
      const double weight = 1.0 / (datum.phase_error * radians_per_degree);
      if (is_usable(datum.phase) && is_positive(datum.phase_error) && is_positive(weight)) {
        used.push_back({omega, true, (datum.phase - 90.0) * radians_per_degree, weight});
        ++result.phases;
      } else {
        leave_out("phase or its error");
      }
    }
  }
  // Sorted, so that the order of the rows makes no difference, not even of rounding.
  std::sort(used.begin(), used.end(), [](const UsedValue& a, const UsedValue& b) {
    return std::tie(a.omega, a.is_phase, a.target, a.weight) <
           std::tie(b.omega, b.is_phase, b.target, b.weight);
  });
  return used;
}

FitProblem fit_problem(const std::vector<UsedValue>& used, bool conducting) {
  FitProblem problem;
  problem.reference = std::sqrt(used.front().omega) * std::sqrt(used.back().omega);
  for (const UsedValue& value : used) {
    const double omega = value.omega / problem.reference;
    if (problem.omega.empty() || problem.omega.back() != omega) {
      problem.omega.push_back(omega);
    }
    problem.values.push_back(
        {static_cast<int>(problem.omega.size()) - 1, value.is_phase, value.target, value.weight});
  }
  if (conducting) {
    problem.wall = std::log(wall_of_conducting_surface * problem.omega.back());
  }
  return problem;
}

/// Phases alone leave gamma free: ln resistivity of the model and of all rows that have one get the same
/// mean.
void choose_level(std::span<const RhoplusDatum> data, const FitProblem& problem, SwitchModel& model) {
  constexpr double resistivity_without_any = 100.0;  // ohm-m
  std::vector<double> omega;
  double sum = 0.0;
  for (const RhoplusDatum& datum : data) {
    if (is_positive(datum.frequency) && is_positive(datum.resistivity)) {
      omega.push_back(2.0 * std::numbers::pi * datum.frequency / problem.reference);
      sum += std::log(datum.resistivity);
    }
  }
  if (omega.empty()) {
    omega = problem.omega;
    sum = std::log(resistivity_without_any) * static_cast<double>(omega.size());
  }
  for (const std::complex<double>& ln_c : log_admittance(problem, model, omega)) {
    sum -= 2.0 * ln_c.real();
  }
  for (const double w : omega) {
    sum -= std::log(mu0 * w * problem.reference);
  }
  model.gamma += 0.5 * sum / static_cast<double>(omega.size());
}

bool is_sound(const SheetModel& sheets) {
  return std::all_of(sheets.sheets.begin(), sheets.sheets.end(), [](const Sheet& sheet) {
    return std::isfinite(sheet.depth) && sheet.depth >= 0.0 && is_positive(sheet.conductance);
  });
}

/// Drops the neighbours that matter least together; the others move to make up for them.
void drop_closest_pairs(const FitProblem& problem, std::size_t pairs, BestFit& fit) {
  std::vector<double>& switches = fit.model.switches;
  for (; pairs > 0 && switches.size() > 1; --pairs) {
    const auto at = switches.begin() + static_cast<std::ptrdiff_t>(closest_switches(fit.model));
    switches.erase(at, at + 2);
  }
  fit.residuals = polish_switches(problem, fit.model, exact_misfit2(problem));
}

/// Drops switches until the sheets fit into the rows of the table and into the digits of 64 bits.
void make_sheets(const FitProblem& problem, std::size_t max_rows, RhoplusInversion& result) {
  BestFit& fit = result.fit;
  result.sheets = sheets_of(problem, fit.model);
  const std::size_t switches = fit.model.switches.size();
  for (std::size_t rows = row_count(problem, fit.model); fit.model.switches.size() > 1;) {
    if (rows <= max_rows && is_sound(result.sheets)) {
      break;
    }
    drop_closest_pairs(problem, rows > max_rows ? rows - max_rows : 1, fit);
    result.sheets = sheets_of(problem, fit.model);
    rows = row_count(problem, fit.model);
  }
  result.dropped_sheets = static_cast<int>((switches - fit.model.switches.size()) / 2);
  if (result.dropped_sheets > 0) {
    certify_fit(problem, fit);
    fit.fits_exactly = fit.misfit2 <= exact_misfit2(problem);
  }
  result.limit_met = result.limit_met || problem.limit->is_met();
  std::vector<double> omega = problem.omega;
  const std::vector<std::complex<double>> of_fit = log_admittance(problem, fit.model, omega);
  for (double& w : omega) {
    w *= problem.reference;
  }
  const std::vector<std::complex<double>> of_sheets = log_admittance(result.sheets, omega);
  for (std::size_t k = 0; k < omega.size(); ++k) {
    result.sheet_error = std::max(result.sheet_error, std::abs(of_fit[k] - of_sheets[k]));
  }
}

void predict(std::span<const RhoplusDatum> data, const FitProblem& problem, RhoplusInversion& result) {
  for (const RhoplusDatum& datum : data) {
    RhoplusPrediction row{nothing, nothing, nothing, nothing};
    if (is_positive(datum.frequency)) {
      const double omega = 2.0 * std::numbers::pi * datum.frequency;
      const double relative = omega / problem.reference;
      const std::complex<double> ln_c =
          log_admittance(problem, result.fit.model, std::span(&relative, 1)).front();
      const double ln_resistivity = 2.0 * ln_c.real() + std::log(mu0 * omega);
      row.resistivity = std::exp(ln_resistivity);
      row.phase = std::clamp(90.0 + ln_c.imag() / radians_per_degree, 0.0, 90.0);
      if (datum.use_resistivity && is_positive(datum.resistivity) && is_positive(datum.resistivity_error)) {
        row.resistivity_residual =
            (ln_resistivity - std::log(datum.resistivity)) * datum.resistivity / datum.resistivity_error;
      }
      if (datum.use_phase && is_usable(datum.phase) && is_positive(datum.phase_error)) {
        row.phase_residual = (row.phase - datum.phase) / datum.phase_error;
      }
    }
    result.rows.push_back(row);
  }
}

}  // namespace

RhoplusInversion invert(std::span<const RhoplusDatum> data, bool conducting, std::size_t max_rows,
                        const InversionLimits& limits) {
  RhoplusInversion result;
  const std::vector<UsedValue> used = used_values(data, result);
  if (used.empty()) {
    result.rows.assign(data.size(), {nothing, nothing, nothing, nothing});
    return result;
  }
  const FitProblem problem = fit_problem(used, conducting);
  *problem.limit = WorkLimit(limits.search, limits.stop);
  result.fit = find_best_fit(problem);
  result.limit_met = problem.limit->is_met();
  *problem.limit = WorkLimit(limits.sheets, limits.stop);
  if (!problem.has_resistivity()) {
    result.level_is_arbitrary = true;
    choose_level(data, problem, result.fit.model);
  }
  make_sheets(problem, max_rows, result);
  predict(data, problem, result);
  result.ran = true;
  return result;
}

}  // namespace numerics::rhoplus
