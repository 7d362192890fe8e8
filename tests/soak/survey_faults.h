// survey_faults.h: what must hold for the open survey after any number of steps.
#pragma once
#include <string>

/// Looks into the open survey with a connection of its own, which sees what others would: damage of the file,
/// lengths of the stored arrays, rows that refer to rows that there are not, whether the graphs show masks,
/// flags and values as they are stored, and whether recalculation finds averages and merged curves as they
/// are. @return what is wrong; empty if nothing is
std::string fault_of_open_survey();
