// z_file.h: transfer functions with full error covariances, as robust processing programs leave them (.zmm,
// .zrr, .zss).
//
// The file holds what the channels measured: functions of Hx and Hy for each further channel, the inverse
// power of the magnetic signals and the covariance of the residuals, for each band. Azimuths of the channels
// are relative to the declination, magnetic north.
#pragma once
#include "core/line_reader.h"
#include "formats/file_report.h"
#include "formats/transfer_function/transfer_function.h"

namespace formats::z_file {

/// Reads a file. Values are in orthogonal axes with x along Hx, variances follow from the
/// covariances (Eisel & Egbert 2001, GJI 144, 65-82). A period that two decimation levels have comes twice. A
/// band that isn't whole is left out; of a file that is cut off the bands before count, and the failure says
/// so. Dipoles laid out the other way round are left as the file has them. What can't be read is in the
/// report; its failure says why there is nothing.
transfer_function::TransferFunction read_z_file(LineReader& lines, FileReport& report);

/// Whether a text line is one of the first that such a file has.
bool begins_z_file(std::string_view line);

}  // namespace formats::z_file
