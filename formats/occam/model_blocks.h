// model_blocks.h: from the lists of a model file to the blocks of a model on its mesh.
#pragma once
#include <span>
#include <vector>

#include "formats/occam/occam_model.h"

namespace Module_occam {

/// Builds codes, blocks and node positions. Throws std::runtime_error if the layers don't fit the mesh or the
/// mesh has more than max_nodes node lines either way.
/// @param layers  their first_block is set here
OccamModel build_model(OccamMesh mesh, std::vector<OccamLayer> layers, double binding_offset);

/// The node line nearest to each site, as an index of node_x, but never an edge of a block of the first
/// layer: a site lies inside its block. no_site_node for a site beyond the last node.
/// @param site_offsets  m along the line, in ascending order: the search never goes back to the left
std::vector<std::int32_t> place_sites(const OccamModel& model, std::span<const float> site_offsets);

/// True if two sites share a node; no_site_node doesn't count.
bool sites_share_node(std::span<const std::int32_t> site_node);

}  // namespace Module_occam
