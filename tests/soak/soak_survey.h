// soak_survey.h: the survey that a soak works on.
#pragma once
#include <string>

#include "tests/support/temporary_folder.h"

/// Makes "survey.mdb" in a folder from field files that it leaves in "field", as the last import for the
/// dialog: two lines of three stations with two repeats at two scan rates, and a line of five stations of
/// tensors. Beside it are files that are no surveys, an inversion that can be run ("startup") and, in "run",
/// a finished one with points of a ground line. @return the survey's path
std::string make_soak_survey(const TemporaryFolder& folder);
