#include "occam/inversion/inversion_files.h"

#include <algorithm>
#include <cstddef>

#include "core/number_text.h"
#include "formats/occam/fortran_text.h"

namespace Module_occam {

namespace inversion = numerics::occam_inversion;

namespace {

std::string logged(double value) { return general_number(value, 7, 15); }

// What is rare enough in the ground to deserve a second look.
std::string extreme_blocks(std::span<const double> resistivities) {
  constexpr double high = 5.0;  // log10 ohm-m
  constexpr double low = -1.0;
  const auto above = std::ranges::count_if(resistivities, [](double value) { return value > high; });
  const auto below = std::ranges::count_if(resistivities, [](double value) { return value < low; });
  return above + below == 0 ? std::string()
                            : " NOTE: " + std::to_string(above) + " BLOCKS ABOVE 100000 OHM-M, " +
                                  std::to_string(below) + " BELOW 0.1 OHM-M\n";
}

void add_row(std::string& text, int site, int frequency, int type, double datum, double modelled,
             double error) {
  constexpr int digits = 5;
  constexpr std::size_t width = 13;
  for (const double value :
       {double(site), double(frequency), double(type), 0.0, datum, modelled, (datum - modelled) / error}) {
    text += "  " + general_number(value, digits, width);
  }
  text += '\n';
}

}  // namespace

std::string plain_response_text(const ObservedData& data, std::span<const ShiftDatum> sums,
                                std::span<const double> modelled) {
  std::string text;
  for (std::size_t row = 0; row < data.rows.size(); ++row) {
    const DataRow& entry = data.rows[row];
    add_row(text, entry.site_number, entry.frequency_number, static_cast<int>(entry.type), entry.datum,
            modelled[row], entry.error);
  }
  for (std::size_t sum = 0; sum < sums.size(); ++sum) {
    add_row(text, 0, 0, sums[sum].data_type, sums[sum].datum, modelled[data.rows.size() + sum],
            sums[sum].error);
  }
  return text;
}

void IterationLog::begin(int iteration, double rms, bool smooths, bool tells_trials) {
  text_ = " STARTING R.M.S. = " + logged(rms) + "\n ** ITERATION            " + std::to_string(iteration) +
          "  **\n";
  last_share_ = 1.0;
  smooths_ = smooths;
  tells_trials_ = tells_trials;
  has_trials_ = false;
}

void IterationLog::add(const inversion::Trial& trial) {
  has_trials_ = true;
  if (!tells_trials_) {
    return;
  }
  if (trial.share < last_share_) {
    text_ +=
        smooths_ ? " ROUGHNESS PROBLEMS, CUTTING STEP SIZE\n" : " DIVERGENCE PROBLEMS, CUTTING STEP SIZE\n";
  }
  last_share_ = trial.share;
  text_ += " TOFMU: MISFIT =" + logged(trial.misfit()) + "  AMU =" + logged(trial.log10_multiplier) + "\n";
}

std::string IterationLog::end(const inversion::Iteration& iteration, std::size_t blocks) const {
  const std::string place =
      iteration.state.target_reached ? " INTERCEPT IS AT MU =" : " MINIMUM TOL FROM SEARCH IS AT MU =";
  return text_ + place + logged(iteration.model_log10_multiplier) + "\n AND IS =" + logged(iteration.misfit) +
         "\n USING " + std::to_string(iteration.trials) +
         " EVALUATIONS OF FUNCTION\n STEPSIZE IS =" + logged(iteration.step) +
         "\n ROUGHNESS IS =" + logged(iteration.state.roughness) + "\n" +
         extreme_blocks(std::span(iteration.state.model).first(blocks)) + "\n";
}

std::string shift_log(const StaticsFile& statics, const std::string& file_name) {
  std::string text = " STATIC SHIFTS, DECADES, AS IN " + file_name + "\n";
  for (const StaticShift& shift : statics.shifts) {
    text += " SITE " + std::to_string(shift.site_number) + " DATA TYPE " + std::to_string(shift.data_type) +
            " SHIFT =" + logged(shift.shift) + "\n";
  }
  return text + "\n";
}

std::string log_ending(inversion::Ending ending) {
  switch (ending) {
    case inversion::Ending::smooth_and_fitting:
      return " Stop on normal convergence\n";
    case inversion::Ending::perfectly_smooth:
      return " Perfectly smooth model found.\n";
    case inversion::Ending::iterations_done:
      return " Stop on maximum iterations\n";
    case inversion::Ending::no_better_fit:
      return " Convergence problems from RMS Misfit\n";
    case inversion::Ending::stopped:
      break;
  }
  return " Stopped by the user\n";
}

}  // namespace Module_occam
