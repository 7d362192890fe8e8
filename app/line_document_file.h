// line_document_file.h: where the PDF of a line's graphs goes.
#pragma once
#include <string>

namespace Module_Brenlox {

/// Asks for the file; suggests one beside the survey, named after the current line and data type.
/// @return an empty text if the user cancels, or after a message if there is nothing to draw
std::string ask_for_line_document();

}  // namespace Module_Brenlox
