// section_masks.h: masking from a pseudo-section.
#pragma once
#include "tensor/section_points.h"

namespace Module_tensor {

/// Masks what a point was made from, or where it is masked, lets all of that count again: resistivity or
/// phase of a reading, or of both off-diagonal readings where the point comes from tensors. One command to be
/// undone.
/// @param station  index of the line
[[nodiscard]] Module_averaged_data::Edit toggle_section_point(const LineTensors& line, std::size_t station,
                                                              const SectionPoint& point,
                                                              SectionQuantity quantity);

}  // namespace Module_tensor
