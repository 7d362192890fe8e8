// occam_data.h: the sites of a two-dimensional inversion.
#pragma once
#include <string>
#include <vector>

namespace Module_occam {

/// The sites of a data file.
struct OccamData {
  std::string title;
  std::vector<std::string> site_names;
  std::vector<float> site_offsets;  // m along the line

  [[nodiscard]] int site_count() const { return static_cast<int>(site_offsets.size()); }
};

}  // namespace Module_occam
