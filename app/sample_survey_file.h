// sample_survey_file.h: the sample survey for people who want to try the program before they have data.
#pragma once

namespace Module_Brenlox {

/// Asks for a file, writes the field files of the sample survey into a folder beside it, makes a survey of
/// them and opens it. The survey that was open stays so until then.
/// @return true if the sample survey is open
[[nodiscard]] bool create_sample_survey();

}  // namespace Module_Brenlox
