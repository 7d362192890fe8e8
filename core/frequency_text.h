// frequency_text.h: frequencies in the columns of files, long periods included.
#pragma once
#include <cstddef>
#include <string>

/// A frequency with a fixed number of decimals, and with more where that many don't give it to one part in
/// `parts`: with four, 0.01 Hz is "0.0100", but 0.00123 Hz is "0.00123" to one part in 10,000, not "0.0012".
///
/// The text is at most `width` long: a large number has fewer decimals, and a period that is too long for the
/// width as many as fit. Only digits before the point can make it longer.
/// @param frequency  Hz
std::string frequency_text(float frequency, int least_decimals, double parts, std::size_t width);
