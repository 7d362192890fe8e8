// response_file.h: the responses that an inversion leaves beside its iteration files.
#pragma once
#include <string>
#include <string_view>

#include "formats/occam/occam_response.h"

namespace Module_occam {

/// What most runs call the data file, which has sites and frequencies of responses without a header.
inline constexpr std::string_view response_header_file = "occamdat";

/// The name of the response file of an iteration file, without a folder: "RESP12.resp" for
/// "ITER12.iter", "RESP_ITER_12.out" for "ITER_12".
std::string response_file_name(std::string_view iteration_file);

/// Reads a response file. Throws Refusal or EmptyLine (text_input.h), or std::runtime_error with what is
/// wrong.
///
/// Without a header, a file holds site, frequency number, data type, a number without meaning, and three
/// values: datum, residual, misfit. What most inversion programs leave has the modelled value in place of the
/// residual; it is read as that where misfit times the error in the header file confirms it for nearly all
/// rows.
/// @param header_file  the data file for a response without a header
OccamResponse read_response_file(const std::string& path, const std::string& header_file);

}  // namespace Module_occam
