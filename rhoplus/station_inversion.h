// station_inversion.h: the one-dimensional inversion of a station's merged curve.
#pragma once
#include <cstdint>
#include <filesystem>
#include <string>

#include "numerics/rhoplus/rhoplus.h"
#include "output/rhoplus.h"

namespace Module_rhoplus {

using Module_database::ReadingKey;
using Module_database::StoredReading;

/// What was inverted and what came of it.
struct StationInversion {
  StoredReading merged;  // ID 0: the station has none
  float scale = 1.0F;    // on its resistivities: static factor and resistivity scale, as the settings ask for
  Module_output::RhoplusTables tables;  // with the model's response, once the run has filled it
  numerics::rhoplus::RhoplusRun run;    // status rhoplus_not_run where there was nothing to invert
  std::string log;                      // text of the run's log
};

/// Where the files of a line's inversions stand: below the survey's folder "NRRef", "RRef" or "XRef" by
/// reference type, and in it a folder named like the line. Characters of the line that would lead elsewhere
/// become "_".
std::filesystem::path run_directory(const std::string& database_file, std::int32_t reference_type,
                                    const std::string& line);

/// Inverts the merged curve of a key with the settings in force. Writes control file and log into the run
/// directory, which is made if it is missing.
/// @param frequencies of the key's reference type
/// @return 0, also where there was nothing to invert; -1 after a message
[[nodiscard]] int invert_station(const ReadingKey& key, const Frequencies& frequencies,
                                 StationInversion& result);

/// The same without files, for callers that print the result.
[[nodiscard]] int invert_station_in_memory(const ReadingKey& key, const Frequencies& frequencies,
                                           StationInversion& result);

}  // namespace Module_rhoplus
