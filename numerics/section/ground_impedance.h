// ground_impedance.h: the impedance at a site from a mode's field.
//
// The vertical derivative at the ground is the host's own, exact, plus that of a parabola through the
// secondary field at the surface and the two node rows below; resistivity in TM is that right of the node.
// Both are part of the response that models were fitted with: at the edge of a block TM jumps by the choice.
#pragma once
#include <array>
#include <cstddef>

#include "numerics/section/mode_field.h"
#include "numerics/section/section.h"

namespace numerics::section {

struct GroundImpedance {
  Complex impedance;   // ohm; E/H in TE, -E/H in TM, so that both have phases about 45 degrees
  Complex field;       // total field at the site
  Complex derivative;  // its d/dz
  std::array<double, 3> weights = {};  // of the secondary field at the surface and the two rows below in d/dz
  std::array<std::size_t, 3> nodes = {};  // those nodes
};

/// @param site  of the section that the field's mesh was made from
GroundImpedance ground_impedance(const ModeField& field, const SurfaceNode& site);

}  // namespace numerics::section
