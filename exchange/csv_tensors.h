// csv_tensors.h: tensors, tippers and what is computed from them, as tables.
//
// Impedance mV/km/nT, exp(+i omega t), x, y and z as the axes of each row have them, z down; the sign of Ey
// is that of the axes. A variance is that of the complex value. Angles are degrees from north. Each table
// begins with the names of its columns; one without any row is empty. Lines end in CR LF.
#pragma once
#include <optional>
#include <string>

#include "exchange/line_contents.h"

namespace Module_exchange {

/// A row for each station, frequency and element of the impedance, with its resistivity and phase.
std::string tensors_csv(const LineContents& line);
/// A row for each station, frequency and component of the tipper.
std::string tippers_csv(const LineContents& line);
/// A row for each station and frequency: phase tensor, strikes, skews, mean resistivities and depths, arrows.
/// @param rotation  azimuth of x that tensors are turned to first; none: as measured
std::string parameters_csv(const LineContents& line, std::optional<double> rotation);

// Whether such a table would have rows.
bool has_tensors(const LineContents& line);
bool has_tippers(const LineContents& line);
bool has_parameters(const LineContents& line);

}  // namespace Module_exchange
