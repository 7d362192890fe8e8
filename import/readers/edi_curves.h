// edi_curves.h: from the blocks of an EDI section to the curve of one tensor element.
#pragma once
#include <cstddef>
#include <span>
#include <vector>

#include "database/reading.h"
#include "formats/edi/edi_section.h"

namespace Module_data_file {

/// Apparent resistivity, phase and their errors of an element that has an impedance but neither resistivity
/// nor phase; does nothing to any other.
///
///   resistivity = 0.2 |Z|^2 / f,   phase = atan2(Im Z, Re Z) in degrees, 360 added below -90
///   first order in the standard error s of |Z| (s^2 is the file's variance):
///   resistivity error = 2 resistivity s / |Z|,   phase error = s / |Z| in degrees
///
/// Z in mV/km/nT: Cagniard (1953), Geophysics 18, 605-635, in field units. Absent where Z is absent or f is
/// not positive.
void compute_from_impedance(formats::edi::EdiSection& section, std::size_t element);

/// How many phases there are, and how many of them lie in -180..-90.
struct QuadrantCount {
  std::size_t present = 0;
  std::size_t in_third = 0;

  [[nodiscard]] bool mostly_in_third() const { return 2 * in_third > present; }
};

/// Of phases in degrees, wrapped into -180..180; absent ones don't count.
QuadrantCount count_in_third_quadrant(std::span<const float> phases);

/// True if more than half of the phases, degrees, wrapped into -180..180, lie in -180..-90. Those of YX do
/// where the sign of Ey is turned. Absent ones don't count; of none it is false.
bool mostly_in_third_quadrant(std::span<const float> phases);

/// The phases of YX that the section has or, without a block of them, that follow from its impedance.
std::vector<float> phases_of_yx(const formats::edi::EdiSection& section);

/// Whether these are mostly in that quadrant.
bool has_turned_ey(const formats::edi::EdiSection& section);

/// Whether an element has an impedance but neither resistivity nor phase.
bool has_impedance_only(const formats::edi::EdiSection& section, std::size_t element);

/// Turns the sign of Ey: 180 degrees more on the phases of EyHx and EyHy, wrapped into -180..180, and the
/// other sign for their impedances.
void turn_ey(formats::edi::EdiSection& section);

/// The same for the curve of one element: its phases and the parts of its impedance.
void turn_sign(Module_database::Curve& curve);

/// Fills a curve with an element's fields, the copies of them that stay as they came in, and the masks that
/// follow from resistivity and phase.
void fill_curve(const formats::edi::EdiSection& section, std::size_t element, Module_database::Curve& curve);

}  // namespace Module_data_file
