// field_conditions.h: what the made surveys have in common: where on the earth they lie, and how strong the
// natural field is.
#pragma once
#include <cstdint>

#include "samples/edi_text.h"

namespace Module_samples {

/// Relative standard deviation of an impedance: a floor, and the weak natural field of the dead band.
/// @param frequency Hz
double noise_level(double frequency);

/// Puts a section so far north and east of the surveys' origin, in m. Its latitude and longitude are those of
/// a receiver that is put down for a moment, off by less than a metre.
/// @param line_number  seeds the receiver's error with the station
void locate(double north, double east, std::uint64_t seed, std::uint32_t line_number, double station,
            EdiSection& section);

}  // namespace Module_samples
