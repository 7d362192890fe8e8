// site_history.h: what has been done to the curves of a station since they were measured, for whoever gets
// them in a file.
#pragma once
#include <optional>
#include <string>
#include <vector>

#include "core/frequencies.h"
#include "tensor/line_choice.h"
#include "tensor/line_curves.h"

namespace Module_exchange {

/// What went into the merged curves of a station.
struct StationPast {
  std::vector<std::string> sentences;    // repeats, scan rates, masks, static factors, switched off
  std::optional<double> date_collected;  // the earliest of its files, days since 30 December 1899
};

/// Needs an open survey; throws dao::Error.
StationPast station_past(const Module_tensor::LineChoice& choice, const Module_tensor::StationCurves& curves,
                         const Frequencies& frequencies);

}  // namespace Module_exchange
