#include "occam/inversion/ending_sentence.h"

#include <cmath>
#include <cstddef>

#include "core/number_text.h"
#include "occam/results/site_misfits.h"

namespace Module_occam {

namespace inversion = numerics::occam_inversion;

namespace {

// "sites 3, 8 and 17"
std::string sites_text(const std::vector<std::string>& names) {
  std::string text = names.size() == 1 ? "site " : "sites ";
  for (std::size_t index = 0; index < names.size(); ++index) {
    const bool is_last = index + 1 == names.size();
    text += (index == 0 ? "" : is_last ? " and " : ", ") + names[index];
  }
  return text;
}

std::string look_at(const std::vector<std::string>& names) {
  return names.empty() ? std::string() : ", look at the misfit of " + sites_text(names);
}

// "within the model limits of the file the target of 1.2 asks for larger errors"
std::string out_of_reach(const InversionEnd& end, const std::string& target) {
  const std::string bounds = end.has_limits && end.has_steps ? "model limits and value steps"
                             : end.has_limits                ? "model limits"
                                                             : "model value steps";
  return (end.has_limits || end.has_steps ? "within the " + bounds + " of the file " : "") + target +
         " asks for larger errors";
}

}  // namespace

std::string ending_sentence(const InversionEnd& end) {
  const std::string rms =
      "RMS " + format_number(end.rms, "0.00") +
      (end.robust ? " (" + format_number(end.misfit, "0.00") + " with outliers counted linearly)" : "");
  const std::string after =
      " after " + std::to_string(end.iteration) + (end.iteration == 1 ? " iteration" : " iterations");
  const std::string target = "the target of " + plain_text(end.target_rms);
  switch (end.ending) {
    case inversion::Ending::smooth_and_fitting:
      return rms + after + "; the model is the smoothest one found that fits to the target.";
    case inversion::Ending::perfectly_smooth:
      return rms + after + "; a uniform ground fits to the target.";
    case inversion::Ending::iterations_done:
      return rms + after + "; " +
             (end.misfit <= inversion::near_target * end.target_rms
                  ? target + " is reached, and more iterations may smooth the model."
                  : target + " is not reached yet" + look_at(end.poor_sites) + ".");
    case inversion::Ending::no_better_fit:
      return "Stopped improving at " + rms + after + ": " + out_of_reach(end, target) +
             look_at(end.poor_sites) + ".";
    case inversion::Ending::stopped:
      break;
  }
  return "Stopped at " + rms + after + "; it can be continued.";
}

std::vector<std::string> poor_sites(const ObservedData& data, std::span<const double> modelled) {
  std::vector<int> numbers;
  std::vector<double> misfits;
  for (std::size_t row = 0; row < data.rows.size(); ++row) {
    numbers.push_back(data.rows[row].site_number);
    misfits.push_back((data.rows[row].datum - modelled[row]) / data.rows[row].error);
  }
  std::vector<std::string> names;
  for (const int number :
       poorly_fitted_sites(rms_by_site(numbers, misfits, static_cast<int>(data.site_offsets.size())))) {
    const auto site = static_cast<std::size_t>(number - 1);
    const std::string& name = data.site_names[site];
    const bool is_real = !name.empty() && name != site_name_at(static_cast<float>(data.site_offsets[site])) &&
                         !is_numeric(name);
    names.push_back(std::to_string(number) + (is_real ? " (" + name + ")" : ""));
  }
  return names;
}

}  // namespace Module_occam
