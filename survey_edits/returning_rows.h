// returning_rows.h: rows on the shelf made fit for a survey that was changed since they were taken out.
//
// Counters are given out again: a row whose number another one has now gets a new number, with all that
// refers to it. What the survey has again by itself, from a file that was imported again, isn't put back
// beside it.
#pragma once
#include <string>
#include <vector>

#include "database/reading.h"

namespace Module_survey_edits {

/// Drops from the shelf what came from files that were imported again since. Throws dao::Error.
/// @return the names of these files
std::vector<std::string> drop_files_imported_again();

/// Gives rows on the shelf new numbers where theirs are taken, and points their readings at stations and
/// locations that the survey has again. Throws dao::Error.
void fit_to_survey();

/// Takes the derived rows on the shelf for those of the survey which they were before; one that the user has
/// set since stays as it is. Throws dao::Error.
void exchange_derived_rows();

/// The keys of all readings on the shelf. Throws dao::Error.
std::vector<Module_database::ReadingKey> keys_on_shelf();

}  // namespace Module_survey_edits
