#include "formats/occam/occam_mesh.h"

#include <algorithm>

namespace Module_occam {

namespace {

double smallest(const std::vector<double>& sizes) {
  return sizes.empty() ? 0.0 : *std::ranges::min_element(sizes);
}

}  // namespace

double OccamMesh::min_node_width() const { return smallest(node_widths); }
double OccamMesh::min_node_height() const { return smallest(node_heights); }

}  // namespace Module_occam
