// upgrade.h: bringing an older survey up to date.
#pragma once
#include <string>
#include <vector>

namespace Module_database {

/// Adds to the open survey what an older or foreign one lacks: tables, names of components, frequency lists
/// of reference types that have readings but no list, indexes. Files carry no version: what is missing is
/// seen from the contents, and nothing is done to a current file. Throws dao::Error, and then nothing is
/// changed.
/// @return the tables that were missing
std::vector<std::string> upgrade_survey();

}  // namespace Module_database
