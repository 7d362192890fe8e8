// design_summary.h: the size of a new inversion in a sentence or two, while its entries are typed.
#pragma once
#include <span>
#include <string>

#include "occam/setup/inversion_inputs.h"
#include "occam/setup/mode_counts.h"

namespace Module_occam {

/// Sizes of the mesh, the model and the data that the entries give for the stations of a line of the session
/// within the limits; why there is no mesh if they give none.
/// @param distances  of the line, for positions that are taken from them
/// @param counts     of the line's data in the modes of the inversion; empty where they aren't known
std::string design_summary(const std::string& line, const InversionInputs& inputs,
                           const Module_projections::LineDistances& distances,
                           std::span<const ModeCount> counts);

}  // namespace Module_occam
