// zonge_raw_channels.h: the lines of numbers in an MT block.
//
// A data line holds, in this order:
//
//   channel [name] station magnitude phase resistivity [IN|OUT] gain
//           [standard-error [self-potential [contact-resistance [external-gain]]]]
//
// A channel without a name has that of its row in the header's table. After a line HARMONICS, or in lines
// that begin with that word, there are harmonics of the base frequency:
//
//   channel [name] harmonic magnitude phase resistivity [harmonic magnitude phase resistivity ...]
//
// with the harmonic's number or, with a unit, its frequency. Phases are degrees unless a unit says mrad or
// rad.
#pragma once
#include <cstddef>

#include "formats/zonge/zonge_raw_account.h"
#include "formats/zonge/zonge_raw_block.h"
#include "formats/zonge/zonge_raw_line.h"

namespace formats::zonge {

/// Reads a data line; a fault goes into block and account.
void read_data_line(const RawLine& line, ZongeSurvey& survey, ZongeBlock& block, ZongeAccount& account);

/// Reads harmonics from the token `first` on.
void read_harmonic_line(const RawLine& line, std::size_t first, const ZongeSurvey& survey, ZongeBlock& block,
                        ZongeAccount& account);

/// Completes a block whose lines have all been read: names electric channels that have their magnetic field
/// ExHy and EyHx, and lists the harmonics.
void complete_channels(ZongeSurvey& survey, ZongeBlock& block, ZongeAccount& account);

}  // namespace formats::zonge
