#include "occam/setup/station_fit.h"

#include "numerics/rhoplus/rhoplus.h"

namespace Module_occam {

void fit_with_rhoplus(const Module_output::RhoplusSettings& settings, Module_output::RhoplusTables& tables) {
  const auto surface = settings.surface == 0 ? numerics::rhoplus::RhoplusSurface::conducting
                                             : numerics::rhoplus::RhoplusSurface::insulating;
  (void)numerics::rhoplus::rhoplus(tables.data, surface);
}

}  // namespace Module_occam
