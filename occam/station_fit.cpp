#include "occam/station_fit.h"

#include <bit>
#include <span>

#include "platform/vexmtutils/rhoplus/rhoplus.h"

namespace Module_occam {

void fit_with_rhoplus(const Module_output::RhoplusSettings& settings, Module_output::RhoplusTables& tables) {
  std::vector<vexmtutils::RhoplusRow> rows;
  rows.reserve(tables.data.size());
  for (const auto& row : tables.data) {
    rows.push_back(std::bit_cast<vexmtutils::RhoplusRow>(row));
  }
  const auto surface =
      settings.surface == 0 ? vexmtutils::RhoplusSurface::conducting : vexmtutils::RhoplusSurface::insulating;
  (void)vexmtutils::rhoplus(rows, surface);
  for (std::size_t row = 0; row < rows.size(); ++row) {
    tables.data[row][Module_output::rhoplus_model_resistivity] = rows[row].model_resistivity;
    tables.data[row][Module_output::rhoplus_model_phase] = rows[row].model_phase;
  }
}

}  // namespace Module_occam
