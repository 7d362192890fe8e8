// other_names.h: a survey's file that has several names (hard links), as a snapshot of a backup has.
//
// The engine's log and journal belong to the name that a survey was opened by; by another name their rows
// are missing, and nobody there knows that the file is in use.
#pragma once
#include <filesystem>
#include <string>

namespace Module_database {

bool has_other_names(const std::filesystem::path& survey);

/// For the user: " (a hard link): /surveys/line5.mdb", or that it is in another folder.
std::string words_for_other_name(const std::filesystem::path& survey);

/// Throws dao::Error if rows of the survey may be beside another name; dao::LockedError if a process has the
/// file open there.
void refuse_log_beside_other_name(const std::filesystem::path& survey);

}  // namespace Module_database
