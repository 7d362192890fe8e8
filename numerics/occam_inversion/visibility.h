// visibility.h: which parameters of a model the data see.
#pragma once
#include <span>
#include <vector>

#include "numerics/occam_inversion/linear_models.h"

namespace numerics::occam_inversion {

/// How much all data change with each parameter: s_p^2 = sum over the data of (J_ip / e_i)^2 / area_p. Over
/// the area, so that a parameter isn't seen better for being large.
/// @param areas  m^2, of the first parameters; those behind them have no area and are left out
/// @return of each parameter with an area, 1/m
std::vector<double> sensitivities_by_area(const LinearProblem& problem, std::size_t parameters,
                                          std::span<const double> areas);

/// From 0, for what the data don't see, to 1: linear in log10 of the sensitivity between its 5th and its 20th
/// percentile.
std::vector<double> visibilities(std::span<const double> sensitivities);

}  // namespace numerics::occam_inversion
