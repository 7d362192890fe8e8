// sensitivity.h: what the response changes by when a resistivity of the section changes.
//
// One more back substitution for each site instead of one response for each parameter, by reciprocity: de
// Lugao & Wannamaker (1996), Geophys. J. Int. 127, 806-810. The host is held fixed, so parameters of the end
// column that is the host are off by the share that the host's own discretisation has in the response, some
// per cent.
//
// For an inversion that improves a section; the programs don't use it yet.
#pragma once
#include <optional>
#include <span>
#include <vector>

#include "numerics/section/response.h"

namespace numerics::section {

/// Of one mode: the derivative of site s at frequency f by parameter p at [(s * frequencies + f) * parameters
/// + p].
struct ModeSensitivity {
  std::vector<double> log10_resistivity;  // decades for each decade of the parameter
  std::vector<double> phase;              // degrees for each decade of the parameter
};

struct Sensitivity {
  ModeSensitivity te;
  ModeSensitivity tm;
};

/// The parameter of a triangle that has none.
constexpr std::size_t no_parameter = static_cast<std::size_t>(-1);

/// Derivatives of the response by the log10 resistivities of groups of triangles.
/// @param parameter_index  of each triangle of the section, below `parameters` or no_parameter, as for air
/// Otherwise as compute_response.
std::optional<Sensitivity> compute_sensitivity(const Section& section,
                                               std::span<const std::size_t> parameter_index,
                                               std::size_t parameters, std::span<const double> site_positions,
                                               std::span<const double> frequencies,
                                               const ResponseOptions& options = {});

}  // namespace numerics::section
