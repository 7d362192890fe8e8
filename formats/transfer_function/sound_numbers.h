// sound_numbers.h: what every parser of transfer functions promises of its numbers, whatever stands in the
// file.
#pragma once
#include <cstddef>
#include <string_view>

#include "formats/transfer_function/transfer_function.h"

namespace formats::transfer_function {

/// A file with more is damaged, or no file of transfer functions: memory must not grow with it.
inline constexpr std::size_t most_points = 200'000;
inline constexpr std::string_view too_many_points_text = "the file has more than 200,000 points";

/// Whether a number can be the frequency of a point: above 0 and within what a reading stores, so that its
/// period is one, too.
bool is_frequency(double number);

/// The place of a site from degrees; a longitude may count from 0 to 360. 0 N, 0 E is what programs write
/// without a place.
/// @return false, and the site is as before, if the numbers are no place on the earth
bool take_place(Site& site, double latitude, double longitude);

/// Makes NaN of what can't be meant: of values that aren't finite or beyond the mark of absent ones (1e30),
/// of errors and variances that aren't above 0. Programs print 0 for an error that they don't know.
void drop_unsound_numbers(TransferFunction& function);

}  // namespace formats::transfer_function
