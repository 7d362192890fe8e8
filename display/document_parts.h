// document_parts.h: where the graphs of a station stand on its page of a line's document.
#pragma once
#include <cstddef>
#include <vector>

namespace Module_display_data {

/// A part of a page, in shares of its width and height from the top left corner.
struct PagePart {
  double x = 0.0;
  double y = 0.0;
  double width = 1.0;
  double height = 1.0;
};

/// The station's own graphs over the whole height on the left, then those of each scan rate beside them, up
/// to three in a row; all are of one width.
std::vector<PagePart> station_page_parts(std::size_t scan_rates);

/// Parts of one size beside each other.
std::vector<PagePart> parts_beside(std::size_t count);

}  // namespace Module_display_data
