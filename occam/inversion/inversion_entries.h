// inversion_entries.h: what a user types before a run directory is inverted.
#pragma once
#include <filesystem>
#include <string>

#include "occam/inversion/run_inversion.h"

namespace Module_occam {

/// Texts as they stand in their boxes.
struct InversionEntries {
  std::string iterations = "10";  // at most so many more
  std::string target_rms = "1";
  std::string roughness_type = "1";
  bool better_search = true;
  bool robust = false;
  bool static_shifts = false;
  std::string static_shift_error = "0.1";  // decades; counts with static_shifts
  int threads = 0;                         // 0: as many as the machine has cores
};

/// What the start file of a run asks for; the defaults where it can't be read: the run itself tells why.
/// @param start_file  in the directory; empty: the one that is found there
InversionEntries proposed_entries(const std::filesystem::path& directory, const std::string& start_file);

/// Throws std::runtime_error with a sentence for an entry that isn't valid.
InversionOptions options_of(const InversionEntries& entries);

}  // namespace Module_occam
