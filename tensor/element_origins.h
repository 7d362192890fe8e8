// element_origins.h: whether all elements of a tensor were found in the same way.
#pragma once
#include <optional>

#include "tensor/line_curves.h"

namespace Module_tensor {

/// A file may have resistivities of two elements, often edited and rounded, and only impedances of the
/// others.
struct MixedOrigins {
  bool diagonals_from_impedances = false;  // else the off-diagonal elements are
  double difference = 0.0;  // of the other elements' |Z| from those of their impedances: median, relative
};

/// Nothing where all elements have one origin, or readings bring no impedances beside their resistivities.
std::optional<MixedOrigins> mixed_origins(const StationCurves& curves);

}  // namespace Module_tensor
