// inversion_log.h: what a geophysicist wants to read about an inversion.
#pragma once
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

#include "numerics/rhoplus/inversion.h"
#include "numerics/rhoplus/rhoplus.h"

namespace Module_rhoplus {

/// A text with CR LF at line ends: settings, fit with target and 95 % level, certificate, model, remarks, and
/// at the end the data with their residuals, so that a reader who cuts long texts keeps the rest.
/// @param data     the table that was inverted
/// @param details  of the same run
std::string inversion_log(std::string_view title, std::span<const numerics::rhoplus::RhoplusRow> data,
                          numerics::rhoplus::RhoplusSurface surface, const numerics::rhoplus::RhoplusRun& run,
                          const numerics::rhoplus::RhoplusInversion& details);

/// Writes a log over an earlier one; the folder has to exist.
/// @return why it is not on the disk, after the path; empty if it is. No part of a log and no earlier one is
/// left then: either would mislead.
std::string write_log(const std::filesystem::path& path, std::string_view log);

}  // namespace Module_rhoplus
