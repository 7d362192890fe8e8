#include "occam/inversion/inversion_files.h"

#include <cmath>
#include <cstddef>

#include "formats/occam/fortran_text.h"

namespace Module_occam {

namespace inversion = numerics::occam_inversion;

namespace {

std::string logged(double value) { return general_number(value, 7, 15); }

}  // namespace

std::string plain_response_text(const ObservedData& data, std::span<const double> modelled) {
  constexpr int digits = 5;
  constexpr std::size_t width = 13;
  std::string text;
  for (std::size_t row = 0; row < data.rows.size(); ++row) {
    const DataRow& entry = data.rows[row];
    for (const double value :
         {double(entry.site_number), double(entry.frequency_number), double(static_cast<int>(entry.type)),
          0.0, entry.datum, modelled[row], (entry.datum - modelled[row]) / std::abs(entry.error)}) {
      text += "  " + general_number(value, digits, width);
    }
    text += '\n';
  }
  return text;
}

void IterationLog::begin(int iteration, double rms) {
  text_ = " STARTING R.M.S. = " + logged(rms) + "\n ** ITERATION            " + std::to_string(iteration) +
          "  **\n";
  last_share_ = 1.0;
}

void IterationLog::add(const inversion::Trial& trial) {
  if (trial.share < last_share_) {
    text_ += " CUTTING STEP SIZE\n";
  }
  last_share_ = trial.share;
  text_ += " TOFMU: MISFIT =" + logged(trial.misfit()) + "  AMU =" + logged(trial.log10_multiplier) + "\n";
}

std::string IterationLog::end(const inversion::Iteration& iteration) const {
  return text_ + " TOLERANCE IS =" + logged(iteration.rms) + "\n USING " + std::to_string(iteration.trials) +
         " EVALUATIONS OF FUNCTION\n STEPSIZE IS =" + logged(iteration.step) +
         "\n ROUGHNESS IS =" + logged(iteration.state.roughness) + "\n\n";
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
