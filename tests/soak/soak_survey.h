// soak_survey.h: the survey that a soak works on, and what must hold for it after any number of steps.
#pragma once
#include <filesystem>
#include <string>

/// Makes "survey.mdb" in a folder from field files that it leaves in "field": two lines of three stations
/// with two repeats at two scan rates. A few files that are no surveys stand beside it. @return the survey's
/// path
std::string make_soak_survey(const std::filesystem::path& folder);

/// Looks into the open survey: damage of the file, lengths of the stored arrays, and whether recalculation
/// finds averages and merged curves as they are. @return what is wrong; empty if nothing is
std::string fault_of_open_survey();
