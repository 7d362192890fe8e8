#include "numerics/section/response.h"

#include <cmath>
#include <stdexcept>

#include "core/number_text.h"
#include "numerics/constants.h"
#include "numerics/parallel_jobs.h"
#include "numerics/section/ground_impedance.h"

namespace numerics::section {

namespace {

ModeResponse empty_response(std::size_t values) {
  return {std::vector<double>(values), std::vector<double>(values)};
}

void check_finite(const ModeResponse& response, const char* mode, std::span<const double> frequencies) {
  for (std::size_t i = 0; i < response.phase.size(); ++i) {
    if (!std::isfinite(response.log10_resistivity[i]) || !std::isfinite(response.phase[i])) {
      throw std::runtime_error(std::string("the ") + mode + " response of site " +
                               std::to_string(i / frequencies.size() + 1) + " at " +
                               plain_text(frequencies[i % frequencies.size()]) + " Hz is not finite");
    }
  }
}

}  // namespace

CheckedInput check_input(const Section& section, std::span<const double> site_positions,
                         std::span<const double> frequencies) {
  check_section(section);
  for (const double frequency : frequencies) {
    if (!(std::isfinite(frequency) && frequency > 0.0)) {
      throw std::invalid_argument(plain_text(frequency) + " Hz is no frequency");
    }
  }
  CheckedInput input = {host_column(section), {}};
  for (const double position : site_positions) {
    input.sites.push_back(make_site(section, nearest_node_column(section, position)));
  }
  return input;
}

std::optional<Response> compute_response(const Section& section, std::span<const double> site_positions,
                                         std::span<const double> frequencies,
                                         const ResponseOptions& options) {
  const CheckedInput input = check_input(section, site_positions, frequencies);
  const std::vector<Site>& sites = input.sites;
  const ModeMesh te_mesh = make_mode_mesh(section, input.host, Mode::te);
  const ModeMesh tm_mesh = make_mode_mesh(section, input.host, Mode::tm);

  Response response = {empty_response(sites.size() * frequencies.size()),
                       empty_response(sites.size() * frequencies.size())};
  const std::size_t jobs = 2 * frequencies.size();
  std::vector<BandedLdlt> solvers(job_threads(jobs, options.threads));
  const auto job = [&](std::size_t item, std::size_t thread) {
    const bool te = item < frequencies.size();
    const std::size_t f = item % frequencies.size();
    const Frequency frequency(frequencies[f]);
    const ModeField field(te ? te_mesh : tm_mesh, frequency, solvers[thread]);
    ModeResponse& mode = te ? response.te : response.tm;
    for (std::size_t s = 0; s < sites.size(); ++s) {
      const Complex impedance = ground_impedance(field, section, sites[s]).impedance;
      mode.log10_resistivity[s * frequencies.size() + f] =
          std::log10(std::norm(impedance) / frequency.omega_mu());  // Cagniard (1953), Geophysics 18, 605-635
      mode.phase[s * frequencies.size() + f] = std::arg(impedance) * degrees_per_radian;
    }
  };
  if (!run_jobs(jobs, options.threads, job, options.progress)) {
    return std::nullopt;
  }
  check_finite(response.te, "TE", frequencies);
  check_finite(response.tm, "TM", frequencies);
  return response;
}

}  // namespace numerics::section
