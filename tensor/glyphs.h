// glyphs.h: the shapes that stand for a tensor or a tipper at a place of a picture.
//
// Conventions: a point is (right, up), with north up and east to the right.
#pragma once
#include <array>
#include <optional>
#include <vector>

#include "numerics/impedance/phase_tensor.h"

namespace Module_tensor {

using GlyphPoint = std::array<double, 2>;  // right, up

/// A point of a shape that is turned, so many degrees.
GlyphPoint turned_clockwise(GlyphPoint point, double degrees);

/// The ellipse of a phase tensor: the points P u of the unit circle's u = (north, east), in units of phi_max,
/// so that the longest half axis is 1 and lies along the azimuth. A negative phi_min has the half axis of its
/// amount. (Caldwell, Bibby & Brown 2004, GJI 158, 457-469)
/// @param tensor  in axes whose x is north
/// @param points  how many, evenly around u, the first one not repeated at the end
/// @return empty where an element is unknown or P is zero
std::vector<GlyphPoint> ellipse_outline(const numerics::impedance::PhaseTensor& tensor, int points);

/// An induction arrow as far as it is drawn: a tipper of bad data may be many times the longest one of the
/// earth, and would lie across all other sites.
struct LimitedTip {
  GlyphPoint tip{};
  bool is_cut = false;
};
inline constexpr double longest_arrow = 1.0;  // of a tipper
LimitedTip limited_tip(GlyphPoint tip);

/// An arrow from (0, 0): a line to the base of its head, and the head as a triangle that begins with the tip.
struct ArrowShape {
  GlyphPoint shaft_end{};
  std::array<GlyphPoint, 3> head{};
};

/// @param tip          where it points, in the unit of the picture, pixels say
/// @param head_length  likewise; an arrow shorter than twice that gets a smaller head
/// @return nothing for an arrow without length, or one that is unknown
std::optional<ArrowShape> arrow_shape(GlyphPoint tip, double head_length);

}  // namespace Module_tensor
