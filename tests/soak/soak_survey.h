// soak_survey.h: the survey that a soak works on.
#pragma once
#include <string>

#include "tests/support/temporary_folder.h"

/// Makes "survey.mdb" in a folder from field files that it leaves in "field", as the last import for the
/// dialog: two lines of three stations with two repeats at two scan rates. Beside it are files that are no
/// surveys and, in "run", a finished inversion with points of a ground line. @return the survey's path
std::string make_soak_survey(const TemporaryFolder& folder);
