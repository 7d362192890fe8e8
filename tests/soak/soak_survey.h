// soak_survey.h: the survey that a soak works on.
#pragma once
#include <string>

#include "import/import_choices.h"
#include "tests/support/temporary_folder.h"

/// Where line, event and scan rate stand in the names of the field files.
Module_data_file::DecodeTable soak_decode_table();

/// Makes "survey.mdb" in a folder from field files that it leaves in "field": two lines of three stations
/// with two repeats at two scan rates. Beside it are files
/// that are no surveys and, in "run", a finished inversion with points of a ground line. @return the survey's
/// path
std::string make_soak_survey(const TemporaryFolder& folder);
