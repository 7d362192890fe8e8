// inversion_log.h: what a geophysicist wants to read about an inversion.
#pragma once
#include <span>
#include <string>
#include <string_view>

#include "numerics/rhoplus/inversion.h"

namespace numerics::rhoplus {

/// A text with CR LF at line ends: settings, fit with target and 95 % level, certificate, model, remarks, and
/// at the end the data with their residuals, so that a reader who cuts long texts keeps the rest.
std::string inversion_log(std::string_view title, std::span<const RhoplusDatum> data, bool conducting,
                          const RhoplusInversion& inversion);

}  // namespace numerics::rhoplus
