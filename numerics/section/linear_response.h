// linear_response.h: what an inversion asks of a section: impedances and tippers at chosen sites, modes and
// frequencies, and how they change with each parameter, from one factorization a mode and frequency.
//
// Derivatives come from one more back substitution a site instead of one response a parameter, by
// reciprocity: de Lugao & Wannamaker (1996), Geophys. J. Int. 127, 806-810. The field of a parameter's change
// is made once a cell and used for all sites. The host is held fixed, so parameters of the end column that is
// the host are off by the share that the host's own discretisation has in the response, some per cent.
#pragma once
#include <complex>
#include <cstddef>
#include <functional>
#include <span>
#include <vector>

#include "numerics/section/checked_input.h"
#include "numerics/section/mode_mesh.h"

namespace numerics::section {

/// The parameter of a triangle that has none.
constexpr std::size_t no_parameter = static_cast<std::size_t>(-1);

/// Groups of triangles whose log10 resistivity is a parameter.
struct Parameters {
  std::span<const std::size_t> of_triangle;  // of each triangle, below `count` or no_parameter, as for air
  std::size_t count = 0;                     // 0: no derivatives are asked for
};

/// The sites at which one mode is asked for at one frequency.
struct ModeRequest {
  Mode mode = Mode::te;
  std::size_t frequency_index = 0;
  std::vector<std::size_t> site_indices;  // best from left to right
  bool tipper = false;                    // of TE, too
};

/// Response of one site, mode and frequency. The spans live as long as the call that is given them.
struct SiteResponse {
  /// ohm: E/H in TE, -E/H in TM, so that both have phases about 45 degrees
  Complex impedance;
  /// Hz/Hy, z down: -(dE/dy) / (dE/dz) of the TE field; 0 unless asked for
  Complex tipper;
  std::span<const Complex> impedance_change;  // of ln impedance for a decade of each parameter
  std::span<const Complex> tipper_change;     // of the tipper for a decade of each parameter
};

/// Called for each site of each request, from several threads at once.
using TakeSiteResponse =
    std::function<void(const ModeRequest& request, std::size_t site_index, const SiteResponse& response)>;

/// @param input   of the section, from check_input
/// @param frequencies  Hz
/// @return false if `options.progress` asked to stop
/// Throws std::invalid_argument for parameters that don't fit the section, std::runtime_error if a value
/// isn't finite.
bool compute_linear_response(const Section& section, const CheckedInput& input,
                             std::span<const double> frequencies, std::span<const ModeRequest> requests,
                             const Parameters& parameters, const TakeSiteResponse& take,
                             const ResponseOptions& options = {});

}  // namespace numerics::section
