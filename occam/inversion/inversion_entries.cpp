#include "occam/inversion/inversion_entries.h"

#include <cmath>
#include <cstdlib>
#include <stdexcept>

#include "core/number_text.h"
#include "formats/occam/start_file.h"
#include "occam/results/run_results.h"

namespace Module_occam {

namespace {

/// @param what  the entry in the words beside its box
double positive_number(const std::string& text, const std::string& what) {
  const double value = is_numeric(text) ? numeric_value(text) : 0.0;
  if (!(value > 0.0) || !std::isfinite(value)) {
    throw std::runtime_error("The " + what + " \"" + text + "\" is not a number above 0.");
  }
  return value;
}

int whole_number(const std::string& text, int most, const std::string& what) {
  const double value = is_numeric(text) ? numeric_value(text) : 0.0;
  if (!(value >= 1.0) || value > most || value != std::floor(value)) {
    throw std::runtime_error("The " + what + " \"" + text + "\" is not a whole number from 1 to " +
                             std::to_string(most) + ".");
  }
  return static_cast<int>(value);
}

}  // namespace

InversionEntries proposed_entries(const std::filesystem::path& directory, const std::string& start_file) {
  InversionEntries entries;
  try {
    const std::string name = start_file.empty() ? find_start_file(directory) : start_file;
    const InversionStart start = read_start_file((directory / name).string());
    entries.iterations = std::to_string(start.iterations_to_run);
    entries.target_rms = plain_text(start.target_rms);
    entries.roughness_type = std::to_string(std::abs(start.roughness_type));
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): the run tells
  }
  return entries;
}

InversionOptions options_of(const InversionEntries& entries) {
  constexpr int highest_type = 299;
  InversionOptions options;
  options.iterations = whole_number(entries.iterations, max_iteration, "number of iterations");
  options.target_rms = positive_number(entries.target_rms, "target RMS");
  options.roughness_type = whole_number(entries.roughness_type, highest_type, "roughness type");
  options.search = entries.better_search ? numerics::occam_inversion::Search::better
                                         : numerics::occam_inversion::Search::classic;
  options.robust = entries.robust;
  if (entries.static_shifts) {
    options.static_shift = positive_number(entries.static_shift_error, "error of static shifts");
  }
  options.threads = static_cast<std::size_t>(entries.threads);
  return options;
}

}  // namespace Module_occam
