// station_fit.h: the one-dimensional fit that errors of a new inversion depend on.
#pragma once
#include "output/rhoplus_data.h"

namespace Module_occam {

/// Fits a station's rows with Rho+ and puts the fitted resistivity and phase into them. They stay no_data
/// if Rho+ finds nothing to fit.
/// @param settings  for the condition at the surface
void fit_with_rhoplus(const Module_output::RhoplusSettings& settings, Module_output::RhoplusTables& tables);

}  // namespace Module_occam
