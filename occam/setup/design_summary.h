// design_summary.h: the size of a new inversion in one sentence, while its entries are typed.
#pragma once
#include <string>

#include "occam/setup/inversion_inputs.h"

namespace Module_occam {

/// Sizes of the mesh and the model that the entries give for the stations of a line of the session within the
/// limits; why there is no mesh if they give none.
/// @param distances  of the line, for positions that are taken from them
std::string design_summary(const std::string& line, const InversionInputs& inputs,
                           const Module_projections::LineDistances& distances);

}  // namespace Module_occam
