// made_section.h: sections for tests, from node positions and a resistivity for each place: air_resistivity
// is air, sea_resistivity sea water, and triangles of one other value have one code.
#pragma once
#include <functional>
#include <string>
#include <vector>

#include "numerics/section/section.h"

/// first, then steps that grow by `growth` from `step` until `end` is passed; ascending
std::vector<double> growing_nodes(double first, double step, double growth, double end);

/// The nodes mirrored about 0 and the nodes themselves, which begin at 0.
std::vector<double> both_sides(const std::vector<double>& nodes);

/// first, first + step, ... up to and with last
std::vector<double> even_nodes(double first, double step, double last);

/// Joins ascending lists; a node that both share is in it once.
std::vector<double> joined(std::vector<double> head, const std::vector<double>& tail);

/// Steps between nodes.
std::vector<double> widths_of(const std::vector<double>& nodes);

/// A section whose cells take the resistivity of their middle.
/// @param resistivity  ohm-m, at (y, z)
numerics::section::Section section_of_cells(const std::vector<double>& node_y,
                                            const std::vector<double>& node_z,
                                            const std::function<double(double, double)>& resistivity);

/// The same with each triangle taking the resistivity of its own centroid.
numerics::section::Section section_of_triangles(const std::vector<double>& node_y,
                                                const std::vector<double>& node_z,
                                                const std::function<double(double, double)>& resistivity);

/// A section as it is drawn: for each row its cells, each with the four triangles in their order, "." for
/// air,
/// "~" for sea water and digits for ground of that code and 10, 20, 30 ... ohm-m.
numerics::section::Section drawn_section(const std::vector<double>& widths,
                                         const std::vector<double>& heights,
                                         const std::vector<std::vector<std::string>>& rows);

/// The section seen from its other side: y becomes -y.
numerics::section::Section mirrored(const numerics::section::Section& section);
