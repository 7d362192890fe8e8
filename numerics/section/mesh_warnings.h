// mesh_warnings.h: whether a mesh is good enough for the frequencies it is used at.
#pragma once
#include <span>
#include <string>
#include <vector>

#include "numerics/section/section.h"

namespace numerics::section {

/// Sentences for the user, none where all is well. A mesh is never refused for them: a response on it is
/// still the one that the model was fitted with.
///
/// - a first row thicker than 0.2 skin depths of the ground's surface at the highest frequency (2.6 degrees
///   there)
/// - less than 3 skin depths of the host at the lowest frequency from the last change along the line to the
///   mesh's sides, or from its top to its bottom
/// - a site at the rim of a vertical step, where TM has no meaningful value
///
/// Throws as check_input does.
/// @param site_positions  m
/// @param frequencies     Hz
std::vector<std::string> mesh_warnings(const Section& section, std::span<const double> site_positions,
                                       std::span<const double> frequencies);

}  // namespace numerics::section
