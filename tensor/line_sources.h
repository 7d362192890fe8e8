// line_sources.h: what the readings behind the merged curves of a line say.
#pragma once
#include <array>
#include <functional>
#include <map>
#include <optional>
#include <span>

#include "tensor/curve_source.h"
#include "tensor/line_choice.h"

namespace Module_tensor {

using StationSources = std::array<CurveSource, curve_types.size()>;  // in the order of curve_types

/// The frequencies, Hz ascending, of the merged curve of a station and type; none: not wanted.
using FrequenciesOf = std::function<std::span<const float>(double station, std::size_t type)>;

/// Goes through the repeats of a line, or of one of its stations, that are in use, and through curves that
/// came averaged. Needs an open survey; throws dao::Error.
/// @return by station
std::map<double, StationSources> read_sources(const LineChoice& choice, std::optional<double> station,
                                              const FrequenciesOf& frequencies_of);

}  // namespace Module_tensor
