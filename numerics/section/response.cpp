#include "numerics/section/response.h"

#include <array>
#include <cmath>
#include <complex>
#include <numeric>

#include "numerics/constants.h"
#include "numerics/section/linear_response.h"

namespace numerics::section {

namespace {

ModeResponse empty_response(std::size_t values) {
  return {std::vector<double>(values), std::vector<double>(values)};
}

// Both modes of all sites at all frequencies.
std::vector<ModeRequest> all_requests(std::size_t sites, std::size_t frequencies) {
  ModeRequest request;
  request.site_indices.resize(sites);
  std::iota(request.site_indices.begin(), request.site_indices.end(), std::size_t{0});
  std::vector<ModeRequest> requests;
  for (const Mode mode : {Mode::te, Mode::tm}) {
    request.mode = mode;
    for (request.frequency_index = 0; request.frequency_index < frequencies; ++request.frequency_index) {
      requests.push_back(request);
    }
  }
  return requests;
}

}  // namespace

std::optional<Response> compute_response(const Section& section, std::span<const double> site_positions,
                                         std::span<const double> frequencies,
                                         const ResponseOptions& options) {
  const CheckedInput input = check_input(section, site_positions, frequencies);
  const std::size_t sites = input.sites.size();
  Response response = {empty_response(sites * frequencies.size()),
                       empty_response(sites * frequencies.size())};
  const auto take = [&](const ModeRequest& request, std::size_t site_index, const SiteResponse& at_site) {
    ModeResponse& mode = request.mode == Mode::te ? response.te : response.tm;
    const std::size_t at = site_index * frequencies.size() + request.frequency_index;
    const Frequency frequency(frequencies[request.frequency_index]);
    // Cagniard (1953), Geophysics 18, 605-635
    mode.log10_resistivity[at] = std::log10(std::norm(at_site.impedance) / frequency.omega_mu());
    mode.phase[at] = std::arg(at_site.impedance) * degrees_per_radian;
  };
  if (!compute_linear_response(section, input, frequencies, all_requests(sites, frequencies.size()), {}, take,
                               options)) {
    return std::nullopt;
  }
  return response;
}

}  // namespace numerics::section
