// line_curves.h: the merged curves of all elements of a line's stations, which tensors are made from.
//
// Conventions: frequency Hz; resistivity ohm-m, without the static factor; phase degrees. The two of the
// vertical field hold the real part of the tipper in place of resistivity and its imaginary part in place of
// phase.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/frequencies.h"
#include "database/reading.h"
#include "tensor/line_choice.h"
#include "tensor/line_sources.h"

namespace Module_tensor {

struct StationCurves {
  std::int32_t StationID = 0;
  double station = 0.0;
  std::string name;                                                       // of its site; empty if it has none
  std::array<Module_database::StoredReading, curve_types.size()> merged;  // ID 0: there is none
  StationSources sources;                                                 // likewise

  [[nodiscard]] const Module_database::StoredReading& of(CurveType type) const {
    return merged[static_cast<std::size_t>(type)];
  }
  [[nodiscard]] const CurveSource& source(CurveType type) const {
    return sources[static_cast<std::size_t>(type)];
  }
};

struct LineCurves {
  LineChoice choice;
  std::vector<float> frequencies;       // of the reference type's list
  std::vector<StationCurves> stations;  // with a merged curve of any of the types, ascending
};

/// The merged curves of a line; those that are missing are computed.
/// @return 0, or -1 after a message; what was loaded by then stays
[[nodiscard]] int load_line_curves(const LineChoice& choice, const Frequencies& frequencies,
                                   LineCurves& curves);

/// Reads the curves of one station again, after an edit.
/// @return 0, or -1 after a message
[[nodiscard]] int reload_station_curves(const LineChoice& choice, const Frequencies& frequencies,
                                        StationCurves& station);

}  // namespace Module_tensor
