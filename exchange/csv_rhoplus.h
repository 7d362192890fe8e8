// csv_rhoplus.h: the best fit of any layered earth to a line's curves, point by point, as a table.
//
// A row for each station, ExHy or EyHx, and frequency that was given to Rho+: the value as observed, its
// error raised to the floors, the fit, the residual (observed minus fitted, in errors; of resistivity that of
// the logarithm) and whether the value was used. Phases are those of the first quadrant whatever the sign of
// Ey. Lines end in CR LF.
#pragma once
#include <functional>
#include <optional>
#include <string>

#include "exchange/line_contents.h"
#include "output/rhoplus_settings.h"

namespace Module_exchange {

/// Whether the line has a curve to invert.
bool has_rhoplus_curves(const LineContents& line);

struct RhoplusTable {
  std::string text;
  bool stopped = false;  // there is no text then
};

/// Inverts the curves of a line, in worker threads.
/// @param rotation  azimuth of x that the tensors are turned to first; stations without one are left out then
/// @param progress  may be empty; is called with the share done, 0 to 1; false stops
RhoplusTable rhoplus_csv(const LineContents& line, std::optional<double> rotation,
                         const Module_output::RhoplusSettings& settings,
                         const std::function<bool(double)>& progress);

}  // namespace Module_exchange
