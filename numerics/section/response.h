// response.h: the magnetotelluric response of a two-dimensional section on its own mesh, by finite
// elements.
//
// The scheme is that of the inversion the models come from, choices of discretisation included: the response
// of a finished run comes out as the inversion left it. See section.h for the section, mode_field.h for the
// method; de Groot-Hedlin & Constable (1990), Geophysics 55, 1613-1624, for the inversion.
#pragma once
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "numerics/section/checked_input.h"

namespace numerics::section {

/// One mode at all sites: value of site s at frequency f at [s * frequencies + f].
struct ModeResponse {
  std::vector<double> log10_resistivity;  // log10 ohm-m, apparent
  std::vector<double> phase;              // degrees, -180 to 180, 45 over a uniform earth; never folded
};

struct Response {
  ModeResponse te;
  ModeResponse tm;
};

/// The TE and TM response at sites on the surface.
///
/// @param site_positions  m, as for check_input
/// @param frequencies     Hz, any order
/// @return nothing if `progress` asked to stop
/// Throws as check_input does, and std::runtime_error if a value isn't finite.
std::optional<Response> compute_response(const Section& section, std::span<const double> site_positions,
                                         std::span<const double> frequencies,
                                         const ResponseOptions& options = {});

}  // namespace numerics::section
