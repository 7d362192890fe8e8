#include "occam/setup/station_fit.h"

#include "numerics/rhoplus/rhoplus.h"

namespace Module_occam {

void fit_with_rhoplus(const Module_output::RhoplusSettings& settings, Module_output::RhoplusTables& tables) {
  const auto surface =
      settings.surface == 0 ? vexmtutils::RhoplusSurface::conducting : vexmtutils::RhoplusSurface::insulating;
  (void)vexmtutils::rhoplus(tables.data, surface);
}

}  // namespace Module_occam
