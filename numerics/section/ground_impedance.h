// ground_impedance.h: the impedance at a site from a mode's field, along the ground.
//
//   TE: Z = -i omega mu E / D        TM: Z = -D / (s H)        D = dF/dz cos a - dF/dy sin a
//
// with the total field F and the slope a of the ground. The derivative of the host is exact, that of the
// secondary field is the site's weighted sum; s in TM is that right of the node. Both are part of the
// response that models were fitted with: at the edge of a block TM jumps by the choice.
#pragma once
#include <array>
#include <cstddef>

#include "numerics/section/mode_field.h"
#include "numerics/section/site.h"

namespace numerics::section {

struct GroundImpedance {
  Complex impedance;     // ohm; E/H in TE, -E/H in TM, so that both have phases about 45 degrees
  Complex field;         // total field at the site
  Complex derivative;    // D
  Complex admittivity;   // s, of TM
  std::size_t node = 0;  // of the mesh, the site's
  struct Weight {
    std::size_t node = 0;
    double weight = 0.0;
  };
  std::array<Weight, 6> weights = {};  // of the secondary field in D
};

/// @param section, site  that the field's mesh was made from
GroundImpedance ground_impedance(const ModeField& field, const Section& section, const Site& site);

}  // namespace numerics::section
