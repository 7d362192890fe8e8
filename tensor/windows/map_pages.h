// map_pages.h: the page with maps in the document of a line.
#pragma once
#include "display/windows/line_document.h"

namespace Module_tensor {

/// Makes the page of the line that is selected then: its map at a short and at a long period, a quarter and
/// three quarters through its periods. None without tensors, tippers or places, or after a message.
std::vector<Module_display_data::DocumentPage> map_pages();

}  // namespace Module_tensor
