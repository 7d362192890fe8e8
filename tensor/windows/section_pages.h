// section_pages.h: the pages with pseudo-sections in the document of a line.
#pragma once
#include "display/windows/line_document.h"

namespace Module_tensor {

/// Makes the pages of the line that is selected then: apparent resistivity and phase of both modes, and phase
/// tensor ellipses of stations that have all four elements, then the map. Sections without data are left out,
/// and all of them after a message.
/// @param positions  a line without distances has them by station numbers
Module_display_data::MakePages section_pages(Module_display_data::PositionSource positions);

}  // namespace Module_tensor
