// j_format.h: the J format of magnetotelluric transfer functions (Jones 1994), also as processing programs
// write it.
//
// Comments, options of the head, the site's name, then blocks of one component each: resistivities and phases
// (RXY ...), impedances (ZXY ...) or tippers (TZX, TZY). A first column above 0 is a period in s, one below 0
// a frequency in Hz; -999 is absent, and a resistivity at or below 0 belongs to a rejected point.
#pragma once
#include <string_view>

#include "core/line_reader.h"
#include "formats/file_report.h"
#include "formats/transfer_function/transfer_function.h"

namespace formats::j_format {

/// Reads a file. Impedances of files whose unit is ohm, or which say so beside resistivities of field units,
/// come as mV/km/nT. Errors of resistivity and phase are halves of their limits. What can't be read is in the
/// report; its failure says why there is nothing, or that the file is cut off.
transfer_function::TransferFunction read_j_format(LineReader& lines, FileReport& report);

/// Whether the lines that follow one another are a type of block and its count: what a file of this format is
/// known by.
bool begins_block(std::string_view line, std::string_view following);

}  // namespace formats::j_format
